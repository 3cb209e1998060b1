#include "Core/Message.h"

#include "Core/ByteFormat.h"
#include "Core/Texts.h"

namespace vh {

namespace {

/// Words a message; an unknown text throws or stands for itself.
class Wording {
public:
    enum class Unknown { refused, itself };
    Wording(const Texts& texts, Unknown unknown) : texts_(texts), unknown_(unknown) {}

    /// Nothing when it was refused. Sentences are parted by a space whatever parts other messages.
    std::optional<std::string> of(const Messages& messages, std::string_view between) const {
        std::string all;
        for (const Message& each : messages) {
            const auto words = of(each);
            if (!words)
                return std::nullopt;
            all.append(all.empty() ? "" : all.back() == '.' ? " " : between).append(*words);
        }
        return all;
    }

    std::optional<std::string> of(const Message& message) const {
        if (message.key.empty())
            return literal(message);
        std::vector<TextArgument> arguments;
        for (const auto& [name, argument] : message.arguments) {
            auto value = std::visit([this](const auto& each) { return valueOf(each); }, argument.value);
            if (!value)
                return std::nullopt;
            arguments.push_back({name, std::move(*value)});
        }
        return unknown_ == Unknown::refused ? texts_.find(message.key, arguments)
                                            : texts_.text(message.key, arguments);
    }

private:
    static std::optional<std::string> literal(const Message& message) {
        const auto text = message.arguments.find("text");
        const auto* words =
            text == message.arguments.end() ? nullptr : std::get_if<std::string>(&text->second.value);
        return words ? std::optional(*words) : std::nullopt;
    }

    static std::optional<TextValue> valueOf(const std::string& text) { return text; }
    static std::optional<TextValue> valueOf(int64_t number) { return number; }
    std::optional<TextValue> valueOf(ByteCount size) const { return sizeText(size.bytes, texts_.language()); }
    std::optional<TextValue> valueOf(const Messages& list) const { return of(list, ", "); }

    const Texts& texts_;
    const Unknown unknown_;
};

} // namespace

MessageArgument::MessageArgument(int64_t number) : value(number) {}
MessageArgument::MessageArgument(std::string text) : value(std::move(text)) {}
MessageArgument::MessageArgument(std::string_view text) : value(std::string(text)) {}
MessageArgument::MessageArgument(const char* text) : value(std::string(text)) {}
MessageArgument::MessageArgument(ByteCount size) : value(size) {}
MessageArgument::MessageArgument(const MessageArgument&) = default;
MessageArgument::MessageArgument(MessageArgument&&) noexcept = default;
MessageArgument& MessageArgument::operator=(const MessageArgument&) = default;
MessageArgument& MessageArgument::operator=(MessageArgument&&) noexcept = default;
MessageArgument::~MessageArgument() = default;
MessageArgument::MessageArgument(Message message) : value(Messages{std::move(message)}) {}
MessageArgument::MessageArgument(Messages messages) : value(std::move(messages)) {}

bool MessageArgument::operator==(const MessageArgument& other) const {
    return value == other.value;
}

std::string worded(const Message& message, const Texts& texts) {
    return Wording(texts, Wording::Unknown::itself).of(message).value_or(message.key);
}

std::string worded(const Messages& messages, const Texts& texts) {
    return Wording(texts, Wording::Unknown::itself).of(messages, " ").value_or("");
}

std::vector<std::string> linesOf(const Messages& messages, const Texts& texts) {
    std::vector<std::string> lines;
    for (const Message& each : messages)
        lines.push_back(worded(each, texts));
    return lines;
}

std::optional<std::string> tryWorded(const Messages& messages, const Texts& texts) {
    return Wording(texts, Wording::Unknown::refused).of(messages, " ");
}

} // namespace vh
