#pragma once

#include "Core/Codec.h"
#include "Core/Message.h"

namespace vh {

/// The argument's value alone: a message within a message needs the codec of the message itself.
template <>
struct Codec<MessageArgument> {
    static void write(JsonWriter& out, const MessageArgument& argument) {
        Codec<MessageArgument::Value>::write(out, argument.value);
    }
    static MessageArgument read(JsonView view) {
        return std::visit([](auto value) { return MessageArgument(std::move(value)); },
                          Codec<MessageArgument::Value>::read(view));
    }
};

} // namespace vh
