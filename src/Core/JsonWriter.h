#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vh {

/// A value that JSON has no form for.
class EncodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class JsonStyle { compact, pretty };

/// Writes one JSON document as calls come; the caller keeps the calls in a legal order.
class JsonWriter {
public:
    explicit JsonWriter(JsonStyle style = JsonStyle::compact) : style_(style) {}

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);

    /// Any bytes. What is not UTF-8 is written in the reversible form of Core/JsonText.h.
    void text(std::string_view bytes);
    void integer(int64_t value);
    void unsignedInteger(uint64_t value);
    /// The shortest form that reads back as the same double. Throws EncodeError for what is not finite.
    void number(double value);
    void boolean(bool value);
    void null();

    std::string take() { return std::move(out_); }

private:
    void open(char bracket);
    void close(char bracket);
    void separate();
    void newLine();

    JsonStyle style_;
    std::string out_;
    size_t depth_ = 0;
    bool first_ = true;
    bool afterKey_ = false;
};

} // namespace vh
