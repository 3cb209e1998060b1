#include "Platform/macOS/XpcValues.h"

#include "Platform/Posix/ServiceText.h"
#include "Platform/macOS/CodeRequirement.h"

#include <CoreFoundation/CoreFoundation.h>

namespace vh {

namespace {

std::optional<ServiceValue> readValue(xpc_object_t object, char kind) {
    const xpc_type_t type = xpc_get_type(object);
    if (kind == 'b' && type == XPC_TYPE_BOOL)
        return xpc_bool_get_value(object);
    if (kind == 'x' && type == XPC_TYPE_INT64)
        return xpc_int64_get_value(object);
    if (kind == 's' && type == XPC_TYPE_STRING && xpc_string_get_length(object) <= mostServiceBytes) {
        std::string text(xpc_string_get_string_ptr(object), xpc_string_get_length(object));
        return isServiceText(text) ? std::optional<ServiceValue>(std::move(text)) : std::nullopt;
    }
    if (kind == 'y' && type == XPC_TYPE_DATA && xpc_data_get_length(object) <= mostServiceBytes)
        return ServiceBytes{std::string(static_cast<const char*>(xpc_data_get_bytes_ptr(object)),
                                        xpc_data_get_length(object))};
    return std::nullopt;
}

Xpc objectOf(const ServiceValue& value, char kind) {
    if (const auto* truth = std::get_if<bool>(&value); truth != nullptr && kind == 'b')
        return ownXpc(xpc_bool_create(*truth));
    if (const auto* number = std::get_if<int64_t>(&value); number != nullptr && kind == 'x')
        return ownXpc(xpc_int64_create(*number));
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && kind == 's')
        return isServiceText(*text) ? ownXpc(xpc_string_create(text->c_str())) : nullptr;
    if (const auto* data = std::get_if<ServiceBytes>(&value); data != nullptr && kind == 'y')
        return data->bytes.size() <= mostServiceBytes
                   ? ownXpc(xpc_data_create(data->bytes.data(), data->bytes.size()))
                   : nullptr;
    return nullptr;
}

} // namespace

Xpc ownXpc(xpc_object_t object) {
    return {object, [](xpc_object_t each) {
                if (each != nullptr)
                    xpc_release(each);
            }};
}

Xpc holdXpc(xpc_object_t object) {
    return ownXpc(xpc_retain(object));
}

std::optional<ServiceValues> readValues(xpc_object_t array, std::string_view kinds) {
    if (array == nullptr || xpc_get_type(array) != XPC_TYPE_ARRAY ||
        xpc_array_get_count(array) != kinds.size())
        return std::nullopt;
    ServiceValues values;
    for (size_t i = 0; i < kinds.size(); ++i) {
        auto value = readValue(xpc_array_get_value(array, i), kinds[i]);
        if (!value)
            return std::nullopt;
        values.push_back(std::move(*value));
    }
    return values;
}

Xpc arrayOf(std::string_view kinds, const ServiceValues& values) {
    if (kinds.size() != values.size())
        return nullptr;
    Xpc array = ownXpc(xpc_array_create(nullptr, 0));
    for (size_t i = 0; i < kinds.size(); ++i) {
        const Xpc object = objectOf(values[i], kinds[i]);
        if (!object)
            return nullptr;
        xpc_array_append_value(array.get(), object.get());
    }
    return array;
}

std::string teamID() {
    const auto value = static_cast<CFStringRef>(
        CFBundleGetValueForInfoDictionaryKey(CFBundleGetMainBundle(), CFSTR("AppTeamID")));
    char text[64] = {};
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID() ||
        !CFStringGetCString(value, text, sizeof text, kCFStringEncodingUTF8))
        return {};
    return text;
}

bool requireSigned(xpc_connection_t connection, std::string_view identifier) {
    return xpc_connection_set_peer_code_signing_requirement(
               connection, codeRequirement(identifier, teamID()).c_str()) == 0;
}

} // namespace vh
