#include "Core/JsonWriter.h"

#include "Core/JsonText.h"

#include <charconv>
#include <cmath>

namespace vh {

namespace {

template <class Number>
void appendNumber(std::string& out, Number value) {
    char digits[40];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    out.append(digits, end);
}

} // namespace

void JsonWriter::newLine() {
    if (style_ == JsonStyle::pretty)
        out_.append(1, '\n').append(2 * depth_, ' ');
}

void JsonWriter::separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!first_)
        out_ += ',';
    if (depth_ > 0)
        newLine();
    first_ = false;
}

void JsonWriter::open(char bracket) {
    separate();
    out_ += bracket;
    ++depth_;
    first_ = true;
}

void JsonWriter::close(char bracket) {
    --depth_;
    if (!first_)
        newLine();
    out_ += bracket;
    first_ = false;
}

void JsonWriter::key(std::string_view name) {
    separate();
    appendJsonText(out_, name);
    out_ += style_ == JsonStyle::pretty ? ": " : ":";
    afterKey_ = true;
}

void JsonWriter::text(std::string_view bytes) {
    separate();
    appendJsonText(out_, bytes);
}

void JsonWriter::integer(int64_t value) {
    separate();
    appendNumber(out_, value);
}

void JsonWriter::unsignedInteger(uint64_t value) {
    separate();
    appendNumber(out_, value);
}

void JsonWriter::number(double value) {
    if (!std::isfinite(value))
        throw EncodeError("A number that is not finite has no JSON form.");
    separate();
    appendNumber(out_, value);
}

void JsonWriter::boolean(bool value) {
    separate();
    out_ += value ? "true" : "false";
}

void JsonWriter::null() {
    separate();
    out_ += "null";
}

} // namespace vh
