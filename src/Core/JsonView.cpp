#include "Core/JsonView.h"

#include <bit>
#include <cmath>
#include <simdjson.h>

namespace vh {

using simdjson::dom::element;
using simdjson::dom::element_type;

DecodeError::DecodeError(std::string reason)
    : std::runtime_error(reason), reason_(std::move(reason)), text_(reason_) {}

void DecodeError::within(std::string_view step) {
    const bool needsDot = !place_.empty() && place_.front() != '[';
    place_ = std::string(step) + (needsDot ? "." : "") + place_;
    text_ = place_ + ": " + reason_;
}

struct JsonDocument::Parser {
    simdjson::dom::parser parser;
};

namespace {

template <class Place>
element at(const Place& place) {
    static_assert(sizeof(Place) == sizeof(element) && std::is_trivially_copyable_v<element>);
    return std::bit_cast<element>(place);
}

/// Doubles above this no longer tell neighbouring integers apart.
constexpr double largestExactDouble = 9007199254740992.0;

template <class T>
std::optional<T> wanted(simdjson::simdjson_result<T> result) {
    if (result.error())
        return std::nullopt;
    return result.value_unsafe();
}

} // namespace

JsonDocument::JsonDocument(size_t mostDepth) : parser_(std::make_unique<Parser>()) {
    constexpr size_t firstRoom = 4096; // it grows with the texts
    if (mostDepth != usualDepth && parser_->parser.allocate(firstRoom, mostDepth))
        throw std::bad_alloc();
}
JsonDocument::~JsonDocument() = default;

JsonView JsonDocument::parse(std::string_view text) {
    auto result = parser_->parser.parse(text.data(), text.size());
    if (result.error())
        throw DecodeError(simdjson::error_message(result.error()));
    return JsonView(std::bit_cast<JsonView::Place>(result.value_unsafe()));
}

JsonKind JsonView::kind() const {
    switch (at(place_).type()) {
    case element_type::ARRAY:
        return JsonKind::array;
    case element_type::OBJECT:
        return JsonKind::object;
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        return JsonKind::number;
    case element_type::STRING:
        return JsonKind::text;
    case element_type::BOOL:
        return JsonKind::boolean;
    case element_type::NULL_VALUE:
        break;
    }
    return JsonKind::null;
}

std::optional<bool> JsonView::boolean() const {
    return wanted(at(place_).get_bool());
}

std::optional<int64_t> JsonView::integer() const {
    if (auto exact = wanted(at(place_).get_int64()))
        return exact;
    const auto real = at(place_).type() == element_type::DOUBLE ? number() : std::nullopt;
    if (real && std::trunc(*real) == *real && std::abs(*real) <= largestExactDouble)
        return static_cast<int64_t>(*real);
    return std::nullopt;
}

std::optional<uint64_t> JsonView::unsignedInteger() const {
    if (auto exact = wanted(at(place_).get_uint64()))
        return exact;
    const auto whole = integer();
    return whole && *whole >= 0 ? std::optional<uint64_t>(*whole) : std::nullopt;
}

std::optional<double> JsonView::number() const {
    return wanted(at(place_).get_double());
}
std::optional<std::string_view> JsonView::text() const {
    return wanted(at(place_).get_string());
}

size_t JsonView::size() const {
    size_t count = 0;
    const auto value = at(place_);
    if (auto array = wanted(value.get_array()))
        for ([[maybe_unused]] auto each : *array)
            ++count;
    else if (auto object = wanted(value.get_object()))
        for ([[maybe_unused]] auto each : *object)
            ++count;
    return count;
}

std::optional<JsonView> JsonView::find(std::string_view key) const {
    const auto object = wanted(at(place_).get_object());
    if (!object)
        return std::nullopt;
    const auto member = object->at_key(key);
    if (member.error())
        return std::nullopt;
    return JsonView(std::bit_cast<Place>(member.value_unsafe()));
}

void JsonView::forEachElement(const std::function<void(size_t, JsonView)>& visit) const {
    size_t index = 0;
    if (auto array = wanted(at(place_).get_array()))
        for (auto each : *array)
            visit(index++, JsonView(std::bit_cast<Place>(each)));
}

void JsonView::forEachMember(const std::function<void(std::string_view, JsonView)>& visit) const {
    if (auto object = wanted(at(place_).get_object()))
        for (auto [key, value] : *object)
            visit(key, JsonView(std::bit_cast<Place>(value)));
}

} // namespace vh
