#include "Platform/Linux/service/BusValues.h"

#include "Platform/Posix/ServiceText.h"

#include <algorithm>

namespace vh {

namespace {

std::optional<ServiceValue> readText(sd_bus_message* message) {
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message, 's', &text) <= 0)
        return std::nullopt;
    const std::string_view view(text);
    return view.size() <= mostServiceBytes ? std::optional<ServiceValue>(std::string(view)) : std::nullopt;
}

std::optional<ServiceValue> readBytes(sd_bus_message* message) {
    const void* bytes = nullptr;
    size_t size = 0;
    if (sd_bus_message_read_array(message, 'y', &bytes, &size) <= 0 || size > mostServiceBytes)
        return std::nullopt;
    return ServiceBytes{size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size)};
}

std::optional<ServiceValue> readValue(sd_bus_message* message, char kind) {
    int truth = 0;
    int64_t number = 0;
    switch (kind) {
    case 'b':
        return sd_bus_message_read_basic(message, 'b', &truth) > 0 ? std::optional<ServiceValue>(truth != 0)
                                                                   : std::nullopt;
    case 'x':
        return sd_bus_message_read_basic(message, 'x', &number) > 0 ? std::optional<ServiceValue>(number)
                                                                    : std::nullopt;
    case 's':
        return readText(message);
    case 'y':
        return readBytes(message);
    default:
        return std::nullopt;
    }
}

bool appendValue(sd_bus_message* message, char kind, const ServiceValue& value) {
    if (const auto* truth = std::get_if<bool>(&value); truth != nullptr && kind == 'b')
        return sd_bus_message_append(message, "b", int(*truth)) >= 0;
    if (const auto* number = std::get_if<int64_t>(&value); number != nullptr && kind == 'x')
        return sd_bus_message_append_basic(message, 'x', number) >= 0;
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && kind == 's')
        return isServiceText(*text) && sd_bus_message_append_basic(message, 's', text->c_str()) >= 0;
    if (const auto* data = std::get_if<ServiceBytes>(&value); data != nullptr && kind == 'y')
        return data->bytes.size() <= mostServiceBytes &&
               sd_bus_message_append_array(message, 'y', data->bytes.data(), data->bytes.size()) >= 0;
    return false;
}

} // namespace

std::string signatureOf(std::string_view kinds) {
    std::string signature;
    for (const char kind : kinds)
        signature += kind == 'y' ? std::string("ay") : std::string(1, kind);
    return signature;
}

std::optional<ServiceValues> readValues(sd_bus_message* message, std::string_view kinds) {
    if (sd_bus_message_has_signature(message, signatureOf(kinds).c_str()) <= 0)
        return std::nullopt;
    ServiceValues values;
    for (const char kind : kinds) {
        auto value = readValue(message, kind);
        if (!value)
            return std::nullopt;
        values.push_back(std::move(*value));
    }
    return values;
}

bool appendValues(sd_bus_message* message, std::string_view kinds, const ServiceValues& values) {
    return std::ranges::equal(kinds, values, [&](char kind, const ServiceValue& value) {
        return appendValue(message, kind, value);
    });
}

} // namespace vh
