#pragma once

#include "Core/Base64.h"
#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/JsonText.h"
#include "Core/JsonView.h"
#include "Core/JsonWriter.h"
#include "Core/Uuid.h"

#include <concepts>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// JSON of every type that is described (Core/Describe.h) and of what such types are made of. Keys are written in
/// sorted order, optional members only when set; a missing key and null read as an unset optional.
namespace vh {

template <class T>
struct Codec;

template <class T>
std::string encodeJson(const T& value, JsonStyle style = JsonStyle::compact) {
    JsonWriter writer(style);
    Codec<T>::write(writer, value);
    return writer.take();
}

/// Throws DecodeError.
template <class T>
T decodeJson(JsonView view) {
    return Codec<T>::read(view);
}
template <class T>
T decodeJson(std::string_view text) {
    JsonDocument document;
    return Codec<T>::read(document.parse(text));
}

namespace detail {

[[noreturn]] void failKind(std::string_view wanted, JsonView found);
[[noreturn]] void failMissing(std::string_view key);
[[noreturn]] void failRawValue(std::string_view raw);
[[noreturn]] void failUnion();
std::string indexStep(size_t index);

/// Runs a piece of reading and says on the way out of a DecodeError where it happened.
template <class Read>
auto readWithin(std::string_view step, Read read) {
    try {
        return read();
    } catch (DecodeError& error) {
        error.within(step);
        throw;
    }
}

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class Owner, class Value>
void readField(const Field<Owner, Value>& field, JsonView object, Owner& into) {
    const auto member = object.find(field.name);
    if (!member) {
        if (field.reading == Reading::required && !IsOptional<Value>::value)
            failMissing(field.name);
        return;
    }
    try {
        into.*field.member = readWithin(field.name, [&] { return Codec<Value>::read(*member); });
    } catch (const DecodeError&) {
        if (field.reading != Reading::forgiving)
            throw;
    }
}

template <class Owner, class Value>
void writeField(const Field<Owner, Value>& field, JsonWriter& out, const Owner& from) {
    const auto& value = from.*field.member;
    if constexpr (IsOptional<Value>::value)
        if (!value)
            return;
    out.key(field.name);
    Codec<Value>::write(out, value);
}

template <DescribedRecord T, size_t... I>
void writeSorted(JsonWriter& out, const T& value, std::index_sequence<I...>) {
    constexpr auto& table = describe<T>;
    (writeField(std::get<table.sorted[I]>(table.fields), out, value), ...);
}

template <class Alternative>
void writeCase(JsonWriter& out, const Alternative& value) {
    if constexpr (std::is_empty_v<Alternative>) {
        out.beginObject();
        out.endObject();
    } else {
        Codec<Alternative>::write(out, value);
    }
}

template <class Alternative>
Alternative readCase(JsonView view) {
    if constexpr (std::is_empty_v<Alternative>) {
        if (view.kind() != JsonKind::object)
            failKind("an object", view);
        return {};
    } else {
        return Codec<Alternative>::read(view);
    }
}

} // namespace detail

template <DescribedRecord T>
struct Codec<T> {
    static void write(JsonWriter& out, const T& value) {
        out.beginObject();
        constexpr size_t count = describe<T>.sorted.size();
        detail::writeSorted(out, value, std::make_index_sequence<count>());
        out.endObject();
    }
    static T read(JsonView view) {
        if (view.kind() != JsonKind::object)
            detail::failKind("an object", view);
        T value{};
        std::apply([&](const auto&... field) { (detail::readField(field, view, value), ...); },
                   describe<T>.fields);
        return value;
    }
};

template <DescribedEnumeration E>
struct Codec<E> {
    static void write(JsonWriter& out, E value) {
        if constexpr (std::same_as<RawValue<E>, int>)
            out.integer(rawValue(value));
        else
            out.text(rawValue(value));
    }
    static E read(JsonView view) {
        std::optional<E> value;
        if constexpr (std::same_as<RawValue<E>, int>) {
            const auto raw = view.integer();
            if (raw && std::in_range<int>(*raw))
                value = fromRaw<E>(static_cast<int>(*raw));
        } else if (const auto raw = view.text()) {
            value = fromRaw<E>(*raw);
        }
        if (!value)
            value = describe<E>.fallback;
        if (!value)
            detail::failRawValue(view.text().value_or("(not a text)"));
        return *value;
    }
};

/// A tagged union is an object with exactly one key, the case's name, whose value holds the case's fields.
template <class... Alternatives>
struct Codec<std::variant<Alternatives...>> {
    using Union = std::variant<Alternatives...>;
    static_assert(Described<Union>, "say its cases with taggedUnion");
    static_assert(std::is_same_v<typename detail::DescriptionOf<Union>::Type, Union>,
                  "the cases stand in another order than the alternatives");

    static void write(JsonWriter& out, const Union& value) {
        out.beginObject();
        out.key(caseName(value));
        std::visit([&](const auto& alternative) { detail::writeCase(out, alternative); }, value);
        out.endObject();
    }
    static Union read(JsonView view) {
        std::optional<Union> value;
        if (view.kind() != JsonKind::object)
            detail::failKind("an object", view);
        if (view.size() == 1)
            std::apply([&](const auto&... each) { (readIfNamed(each, view, value), ...); },
                       describe<Union>.cases);
        if (!value)
            detail::failUnion();
        return std::move(*value);
    }

private:
    template <class Alternative>
    static void readIfNamed(const UnionCase<Alternative>& each, JsonView view, std::optional<Union>& value) {
        if (const auto fields = view.find(each.name))
            value = detail::readWithin(each.name, [&] { return detail::readCase<Alternative>(*fields); });
    }
};

template <>
struct Codec<bool> {
    static void write(JsonWriter& out, bool value) { out.boolean(value); }
    static bool read(JsonView view);
};

template <std::integral T>
struct Codec<T> {
    static void write(JsonWriter& out, T value) {
        if constexpr (std::is_signed_v<T>)
            out.integer(value);
        else
            out.unsignedInteger(value);
    }
    static T read(JsonView view) {
        const auto value = [&] {
            if constexpr (std::is_signed_v<T>)
                return view.integer();
            else
                return view.unsignedInteger();
        }();
        if (!value || !std::in_range<T>(*value))
            detail::failKind("a whole number in range", view);
        return static_cast<T>(*value);
    }
};

template <>
struct Codec<double> {
    static void write(JsonWriter& out, double value) { out.number(value); }
    static double read(JsonView view);
};

template <>
struct Codec<std::string> {
    static void write(JsonWriter& out, const std::string& value) { out.text(value); }
    static std::string read(JsonView view);
};

/// Constants of the program can be written; what is read must be owned by somebody.
template <>
struct Codec<std::string_view> {
    static void write(JsonWriter& out, std::string_view value) { out.text(value); }
};

template <>
struct Codec<Uuid> {
    static void write(JsonWriter& out, const Uuid& value) { out.text(value.text()); }
    static Uuid read(JsonView view);
};

template <>
struct Codec<Date> {
    static void write(JsonWriter& out, Date value) { out.text(iso8601(value)); }
    static Date read(JsonView view);
};

template <>
struct Codec<Bytes> {
    static void write(JsonWriter& out, const Bytes& value) { out.text(base64(value)); }
    static Bytes read(JsonView view);
};

template <class T>
struct Codec<std::optional<T>> {
    static void write(JsonWriter& out, const std::optional<T>& value) {
        if (value)
            Codec<T>::write(out, *value);
        else
            out.null();
    }
    static std::optional<T> read(JsonView view) {
        return view.isNull() ? std::nullopt : std::optional<T>(Codec<T>::read(view));
    }
};

/// A member that is a tree of its own type.
template <class T>
struct Codec<std::unique_ptr<T>> {
    static void write(JsonWriter& out, const std::unique_ptr<T>& value) { Codec<T>::write(out, *value); }
    static std::unique_ptr<T> read(JsonView view) { return std::make_unique<T>(Codec<T>::read(view)); }
};

namespace detail {

template <class List>
void writeList(JsonWriter& out, const List& list) {
    out.beginArray();
    for (const auto& each : list)
        Codec<typename List::value_type>::write(out, each);
    out.endArray();
}

template <class T, class Add>
void readList(JsonView view, Add add) {
    if (view.kind() != JsonKind::array)
        failKind("an array", view);
    view.forEachElement([&](size_t index, JsonView each) {
        try {
            add(index, Codec<T>::read(each));
        } catch (DecodeError& error) {
            error.within(indexStep(index));
            throw;
        }
    });
}

} // namespace detail

template <class T>
struct Codec<std::vector<T>> {
    static void write(JsonWriter& out, const std::vector<T>& value) { detail::writeList(out, value); }
    static std::vector<T> read(JsonView view) {
        std::vector<T> value;
        detail::readList<T>(view, [&](size_t, T each) { value.push_back(std::move(each)); });
        return value;
    }
};

template <class T>
struct Codec<std::set<T>> {
    static void write(JsonWriter& out, const std::set<T>& value) { detail::writeList(out, value); }
    static std::set<T> read(JsonView view) {
        std::set<T> value;
        detail::readList<T>(view, [&](size_t, T each) { value.insert(std::move(each)); });
        return value;
    }
};

template <class Value>
struct Codec<std::map<std::string, Value>> {
    using Map = std::map<std::string, Value>;
    static void write(JsonWriter& out, const Map& map) {
        out.beginObject();
        for (const auto& [key, value] : map) {
            out.key(key);
            Codec<Value>::write(out, value);
        }
        out.endObject();
    }
    static Map read(JsonView view) {
        if (view.kind() != JsonKind::object)
            detail::failKind("an object", view);
        Map map;
        view.forEachMember([&](std::string_view key, JsonView value) {
            map.insert_or_assign(bytesOfJsonText(key),
                                 detail::readWithin(key, [&] { return Codec<Value>::read(value); }));
        });
        return map;
    }
};

/// A map whose keys are no texts is an array of alternating keys and values.
template <class Key, class Value>
struct Codec<std::map<Key, Value>> {
    using Map = std::map<Key, Value>;
    static void write(JsonWriter& out, const Map& map) {
        out.beginArray();
        for (const auto& [key, value] : map) {
            Codec<Key>::write(out, key);
            Codec<Value>::write(out, value);
        }
        out.endArray();
    }
    static Map read(JsonView view) {
        if (view.kind() != JsonKind::array || view.size() % 2 != 0)
            detail::failKind("an array of alternating keys and values", view);
        Map map;
        std::optional<Key> key;
        view.forEachElement([&](size_t index, JsonView each) {
            detail::readWithin(detail::indexStep(index), [&] {
                if (index % 2 == 0)
                    key = Codec<Key>::read(each);
                else
                    map.insert_or_assign(*key, Codec<Value>::read(each));
            });
        });
        return map;
    }
};

} // namespace vh
