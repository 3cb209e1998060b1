#pragma once

#include "Core/Base64.h"
#include "Features/Flows/Flow.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Goes over all that a person may fill in on a node, as the node's types describe themselves. The visitor is called
/// with leaf(key, value) for every value, timeOfDay(key, hour, minute) for a time, and choose(key, union) for what has
/// several cases, which gives true when there is no more to see; isDone() ends the walk.
namespace vh::flows {

struct FieldKey {
    std::string path;
    std::string_view last;
};

template <class Union>
std::vector<std::string> caseNames() {
    std::vector<std::string> names;
    if constexpr (std::is_same_v<Union, FlowTrigger>)
        for (const FlowTriggerKind kind : allCases<FlowTriggerKind>())
            names.emplace_back(rawValue(kind));
    else
        std::apply([&](const auto&... each) { (names.emplace_back(each.name), ...); }, describe<Union>.cases);
    return names;
}

/// The case of that name with nothing filled in.
template <class Union>
std::optional<Union> caseNamed(std::string_view name) {
    std::optional<Union> found;
    std::apply(
        [&](const auto&... each) {
            ((each.name == name ? void(found = typename std::remove_cvref_t<decltype(each)>::Type{})
                                : void()),
             ...);
        },
        describe<Union>.cases);
    return found;
}

namespace detail {

template <class T>
inline constexpr bool isUnion = false;
template <class... Alternatives>
inline constexpr bool isUnion<std::variant<Alternatives...>> = true;

/// Presets and passwords are no fields.
template <class T>
inline constexpr bool isSecret = std::is_same_v<T, Bytes> || std::is_same_v<T, std::optional<Bytes>> ||
                                 std::is_same_v<T, std::optional<std::string>>;

template <class T, class Visitor>
void walkValue(const std::string& path, std::string_view name, T& value, Visitor& visitor);

template <class T, class Visitor>
void walkRecord(const std::string& path, T& record, Visitor& visitor) {
    if constexpr (std::is_same_v<T, DailySchedule> || std::is_same_v<T, WeeklySchedule>) {
        if constexpr (std::is_same_v<T, WeeklySchedule>)
            visitor.leaf({path + ".weekday", "weekday"}, record.weekday);
        if (!visitor.isDone())
            visitor.timeOfDay({path + ".time", "time"}, record.hour, record.minute);
    } else if constexpr (DescribedRecord<T>) {
        std::apply(
            [&](const auto&... field) { (walkValue(path, field.name, record.*field.member, visitor), ...); },
            describe<T>.fields);
    }
}

template <class T, class Visitor>
void walkValue(const std::string& path, std::string_view name, T& value, Visitor& visitor) {
    if (visitor.isDone())
        return;
    // What has no label of its own is called like what it is in.
    const std::string own = name == "_0" ? path : path + "." + std::string(name);
    if constexpr (isUnion<T>) {
        if (visitor.choose({own + ".kind", "kind"}, value))
            return;
        const std::string inner = own + "." + std::string(caseName(value));
        std::visit([&](auto& each) { walkRecord(inner, each, visitor); }, value);
    } else if constexpr (DescribedRecord<T>) {
        walkRecord(own, value, visitor);
    } else if constexpr (!isSecret<T>) {
        visitor.leaf({own, std::string_view(own).substr(own.rfind('.') + 1)}, value);
    }
}

} // namespace detail

template <class Visitor>
void walkFields(FlowNodeKind& kind, Visitor& visitor) {
    const std::string path(caseName(kind));
    std::visit([&](auto& node) { detail::walkRecord(path, node, visitor); }, kind);
}

} // namespace vh::flows
