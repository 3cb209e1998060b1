#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>

/// How a type says once what it is made of. Beside the type stands one line:
///
///     template <> inline constexpr auto vh::describe<Point> = record(field("x", &Point::x), field("y", &Point::y));
///     template <> inline constexpr auto vh::describe<Tone> = enumeration<Tone>({{Tone::good, "good"}, …});
///     template <> inline constexpr auto vh::describe<Step> =
///         taggedUnion(unionCase<Wait>("wait"), unionCase<Copy>("copy"));    // using Step = std::variant<Wait, Copy>
///
/// JSON in both directions (Core/Codec.h), raw values and lists of cases all come from it.
namespace vh {

template <class T>
inline constexpr auto describe = nullptr;

template <class T>
concept Described = !std::is_same_v<std::remove_cvref_t<decltype(describe<T>)>, std::nullptr_t>;

// ---- records

enum class Reading {
    required, ///< a missing or wrong value is an error; for an optional member only a wrong one is
    missing,  ///< a missing value leaves the member as the default constructor made it
    forgiving ///< so does a value that cannot be decoded
};

template <class Owner, class Value>
struct Field {
    using OwnerType = Owner;
    std::string_view name;
    Value Owner::*member;
    Reading reading = Reading::required;

    constexpr Field mayBeMissing() const { return {name, member, Reading::missing}; }
    constexpr Field forgiving() const { return {name, member, Reading::forgiving}; }
};

template <class Owner, class Value>
constexpr Field<Owner, Value> field(std::string_view name, Value Owner::*member) {
    return {name, member};
}

template <class... Fields>
struct Record {
    std::tuple<Fields...> fields;
    std::array<size_t, sizeof...(Fields)> sorted; ///< indices of the fields by name, the order in JSON
};

template <class... Fields>
constexpr auto record(Fields... fields) {
    constexpr size_t count = sizeof...(Fields);
    const std::array<std::string_view, count> names{fields.name...};
    std::array<size_t, count> order{};
    for (size_t i = 0; i < count; ++i) {
        size_t at = i;
        for (; at > 0 && names[i] < names[order[at - 1]]; --at)
            order[at] = order[at - 1];
        order[at] = i;
    }
    return Record<Fields...>{{fields...}, order};
}

// ---- enumerations

template <class E, class Raw>
struct EnumerationRow {
    E value;
    Raw raw;
};

template <class E, class Raw, size_t N>
struct Enumeration {
    using RawType = Raw;
    std::array<EnumerationRow<E, Raw>, N> rows;
    std::optional<E> fallback;

    /// What an unknown raw value is read as, for enumerations that newer versions may extend.
    constexpr Enumeration otherwise(E value) const { return {rows, value}; }
};

template <class E, size_t N>
constexpr auto enumeration(const EnumerationRow<E, std::string_view> (&rows)[N]) {
    return Enumeration<E, std::string_view, N>{std::to_array(rows), std::nullopt};
}

/// Enumerations whose raw values are whole numbers.
template <class E, size_t N>
constexpr auto numberedEnumeration(const EnumerationRow<E, int> (&rows)[N]) {
    return Enumeration<E, int, N>{std::to_array(rows), std::nullopt};
}

namespace detail {
template <class T>
struct IsEnumeration : std::false_type {};
template <class E, class Raw, size_t N>
struct IsEnumeration<Enumeration<E, Raw, N>> : std::true_type {};
template <class T>
struct IsRecord : std::false_type {};
template <class... F>
struct IsRecord<Record<F...>> : std::true_type {};
template <class T>
using DescriptionOf = std::remove_cvref_t<decltype(describe<T>)>;
} // namespace detail

template <class T>
concept DescribedEnumeration = detail::IsEnumeration<detail::DescriptionOf<T>>::value;
template <class T>
concept DescribedRecord = detail::IsRecord<detail::DescriptionOf<T>>::value;

template <DescribedEnumeration E>
using RawValue = typename detail::DescriptionOf<E>::RawType;

/// The stored name (or number) of a case.
template <DescribedEnumeration E>
constexpr RawValue<E> rawValue(E value) {
    for (const auto& row : describe<E>.rows)
        if (row.value == value)
            return row.raw;
    return {};
}

/// The case of a raw value, nothing for an unknown one.
template <DescribedEnumeration E>
constexpr std::optional<E> fromRaw(RawValue<E> raw) {
    for (const auto& row : describe<E>.rows)
        if (row.raw == raw)
            return row.value;
    return std::nullopt;
}

/// All cases, in the order of their description.
template <DescribedEnumeration E>
constexpr auto allCases() {
    std::array<E, describe<E>.rows.size()> cases{};
    for (size_t i = 0; i < cases.size(); ++i)
        cases[i] = describe<E>.rows[i].value;
    return cases;
}

// ---- tagged unions

template <class Alternative>
struct UnionCase {
    using Type = Alternative;
    std::string_view name;
};

/// A case whose fields are those of Alternative's record; a field named "_0" is an unlabelled one. An empty struct
/// needs no description.
template <class Alternative>
constexpr UnionCase<Alternative> unionCase(std::string_view name) {
    return {name};
}

template <class... Alternatives>
struct TaggedUnion {
    using Type = std::variant<Alternatives...>;
    std::tuple<UnionCase<Alternatives>...> cases;
};

/// The cases in the order of the variant's alternatives.
template <class... Alternatives>
constexpr auto taggedUnion(UnionCase<Alternatives>... cases) {
    return TaggedUnion<Alternatives...>{{cases...}};
}

/// The name of the case that a tagged union holds.
template <class... Alternatives>
constexpr std::string_view caseName(const std::variant<Alternatives...>& value) {
    constexpr auto names = std::apply([](auto... each) { return std::array{each.name...}; },
                                      describe<std::variant<Alternatives...>>.cases);
    return names[value.index()];
}

} // namespace vh
