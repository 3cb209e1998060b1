#include "Core/Codec.h"

#include <fmt/format.h>

namespace vh {

namespace detail {

namespace {

std::string_view nameOf(JsonKind kind) {
    switch (kind) {
    case JsonKind::null:
        return "null";
    case JsonKind::boolean:
        return "a boolean";
    case JsonKind::number:
        return "a number";
    case JsonKind::text:
        return "a text";
    case JsonKind::array:
        return "an array";
    case JsonKind::object:
        return "an object";
    }
    return "";
}

} // namespace

void failKind(std::string_view wanted, JsonView found) {
    throw DecodeError(fmt::format("Expected {} but found {}.", wanted, nameOf(found.kind())));
}

void failMissing(std::string_view key) {
    throw DecodeError(fmt::format("No value for the key \"{}\".", key));
}

void failRawValue(std::string_view raw) {
    throw DecodeError(fmt::format("Unknown value \"{}\".", raw));
}

void failUnion() {
    throw DecodeError("Invalid number of keys found, expected one.");
}

std::string indexStep(size_t index) {
    return fmt::format("[{}]", index);
}

} // namespace detail

bool Codec<bool>::read(JsonView view) {
    const auto value = view.boolean();
    if (!value)
        detail::failKind("a boolean", view);
    return *value;
}

double Codec<double>::read(JsonView view) {
    const auto value = view.number();
    if (!value)
        detail::failKind("a number", view);
    return *value;
}

std::string Codec<std::string>::read(JsonView view) {
    const auto value = view.text();
    if (!value)
        detail::failKind("a text", view);
    return bytesOfJsonText(*value);
}

Uuid Codec<Uuid>::read(JsonView view) {
    const auto text = view.text();
    const auto value = text ? Uuid::parse(*text) : std::nullopt;
    if (!value)
        detail::failKind("a UUID", view);
    return *value;
}

Date Codec<Date>::read(JsonView view) {
    const auto text = view.text();
    const auto value = text ? parseIso8601(*text) : std::nullopt;
    if (!value)
        detail::failKind("an ISO 8601 date", view);
    return *value;
}

Bytes Codec<Bytes>::read(JsonView view) {
    const auto text = view.text();
    auto value = text ? parseBase64(*text) : std::nullopt;
    if (!value)
        detail::failKind("base64 data", view);
    return std::move(*value);
}

} // namespace vh
