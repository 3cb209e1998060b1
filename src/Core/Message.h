#pragma once

#include "Core/Describe.h"

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh {

class Texts;
struct Message;
using Messages = std::vector<Message>;

/// A size that is worded as one, such as "8.4 GB".
struct ByteCount {
    int64_t bytes = 0;
    bool operator==(const ByteCount&) const = default;
};

/// What stands for a named argument of a message. Messages are worded one by one and parted by commas.
struct MessageArgument {
    using Value = std::variant<std::string, int64_t, ByteCount, Messages>;

    MessageArgument(int64_t number);
    template <std::integral T>
    MessageArgument(T number) : MessageArgument(static_cast<int64_t>(number)) {}
    MessageArgument(std::string text);
    MessageArgument(std::string_view text);
    MessageArgument(const char* text);
    MessageArgument(ByteCount size);
    MessageArgument(Message message);
    MessageArgument(Messages messages);
    // Defined where Message is whole: libraries may look at a list's elements as soon as it is copied.
    MessageArgument(const MessageArgument&);
    MessageArgument(MessageArgument&&) noexcept;
    MessageArgument& operator=(const MessageArgument&);
    MessageArgument& operator=(MessageArgument&&) noexcept;
    ~MessageArgument();

    bool operator==(const MessageArgument& other) const;

    Value value;
};

/// A sentence for people before it is worded in a language: the dotted key of a text and its arguments. One without a
/// key is its argument "text", words that are the same in every language.
struct Message {
    std::string key;
    std::map<std::string, MessageArgument> arguments;

    static Message literal(std::string text) { return {{}, {{"text", std::move(text)}}}; }
    bool operator==(const Message&) const = default;
};

template <>
inline constexpr auto describe<ByteCount> = record(field("_0", &ByteCount::bytes));
template <>
inline constexpr auto describe<MessageArgument::Value> = taggedUnion(unionCase<std::string>("text"),
                                                                     unionCase<int64_t>("count"),
                                                                     unionCase<ByteCount>("bytes"),
                                                                     unionCase<Messages>("messages"));
template <>
inline constexpr auto describe<Message> = record(field("key", &Message::key),
                                                 field("arguments", &Message::arguments).mayBeMissing());

/// In the language of `texts`; a key that nobody knows stands for itself.
std::string worded(const Message& message, const Texts& texts);
/// The sentences of a paragraph.
std::string worded(const Messages& messages, const Texts& texts);
/// Each by itself.
std::vector<std::string> linesOf(const Messages& messages, const Texts& texts);
/// Nothing when a text is unknown, or the arguments are not those that it takes.
std::optional<std::string> tryWorded(const Messages& messages, const Texts& texts);

} // namespace vh
