#include "Tools/FastCopy/XmlReader.h"

#include "Core/Printable.h"
#include "Core/ValidText.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace vh::copy {

namespace {

constexpr size_t deepest = 32;
constexpr std::string_view blanks = " \t\r\n";

bool isNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

void appendUtf8(std::string& out, uint32_t c) {
    const auto tail = [&](int shift) {
        out += static_cast<char>(0x80 | (c >> shift & 0x3F));
    };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

/// The characters of XML 1.0.
bool isXmlChar(uint32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) || (c >= 0xE000 && c < 0xFFFE) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

} // namespace

XmlReader::XmlReader(std::string_view text) : all_(text), rest_(text) {
    if (!isXmlText(text))
        throw XmlError("The text holds bytes that XML in UTF-8 cannot hold");
}

std::string XmlReader::where() const {
    return fmt::format("Line {}: ", 1 + std::ranges::count(all_.substr(0, all_.size() - rest_.size()), '\n'));
}

void XmlReader::refuse(const std::string& why) const {
    throw XmlError(where() + why);
}

std::string XmlReader::attribute(std::string_view name) const {
    const auto found = std::ranges::find(attributes_, name, &std::pair<std::string_view, std::string>::first);
    return found == attributes_.end() ? std::string() : found->second;
}

XmlReader::Piece XmlReader::next() {
    if (endsAtOnce_) {
        endsAtOnce_ = false;
        open_.pop_back();
        return Piece::end;
    }
    for (;;) {
        if (open_.empty())
            skipBlanks();
        if (rest_.empty()) {
            if (!open_.empty())
                refuse("the text ends inside of <" + printable(open_.back()) + ">");
            if (!sawRoot_)
                refuse("nothing in it");
            return Piece::finished;
        }
        if (takes("<?"))
            takeUntil("?>");
        else if (takes("<!--"))
            takeUntil("-->");
        else if (!open_.empty() && takes("<![CDATA["))
            return value_ = takeUntil("]]>"), Piece::text;
        else if (rest_.starts_with("<!"))
            refuse("a document type, which is not read");
        else if (takes("</"))
            return readEnd();
        else if (takes("<"))
            return readStart();
        else if (open_.empty())
            refuse("text outside of the elements");
        else {
            value_ = decoded(rest_.substr(0, rest_.find('<')));
            rest_.remove_prefix(std::min(rest_.find('<'), rest_.size()));
            return Piece::text;
        }
    }
}

bool XmlReader::takes(std::string_view word) {
    if (!rest_.starts_with(word))
        return false;
    rest_.remove_prefix(word.size());
    return true;
}

std::string_view XmlReader::takeUntil(std::string_view end) {
    const size_t at = rest_.find(end);
    if (at == std::string_view::npos)
        refuse("no " + std::string(end) + " follows");
    const std::string_view taken = rest_.substr(0, at);
    rest_.remove_prefix(at + end.size());
    return taken;
}

std::string_view XmlReader::takeName() {
    const auto size = static_cast<size_t>(std::ranges::find_if_not(rest_, isNameChar) - rest_.begin());
    if (size == 0)
        refuse("a name is missing");
    const std::string_view name = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return name;
}

void XmlReader::skipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
}

XmlReader::Piece XmlReader::readStart() {
    if (open_.empty() && sawRoot_)
        refuse("a second outermost element");
    if (open_.size() == deepest)
        refuse("elements too deep in one another");
    sawRoot_ = true;
    name_ = takeName();
    open_.push_back(name_);
    readAttributes();
    endsAtOnce_ = takes("/");
    if (!takes(">"))
        refuse("<" + printable(name_) + "> is not closed by >");
    return Piece::start;
}

void XmlReader::readAttributes() {
    attributes_.clear();
    for (skipBlanks(); !rest_.empty() && isNameChar(rest_.front()); skipBlanks()) {
        const std::string_view name = takeName();
        skipBlanks();
        const bool hasValue = takes("=");
        skipBlanks();
        const char quote = rest_.empty() ? '\0' : rest_.front();
        if (!hasValue || (quote != '"' && quote != '\''))
            refuse("the value of " + printable(name) + " is missing");
        rest_.remove_prefix(1);
        attributes_.emplace_back(name, decoded(takeUntil({&quote, 1})));
    }
}

XmlReader::Piece XmlReader::readEnd() {
    name_ = takeName();
    skipBlanks();
    if (!takes(">") || open_.empty() || open_.back() != name_)
        refuse("</" + printable(name_) + "> closes nothing");
    open_.pop_back();
    return Piece::end;
}

std::string XmlReader::decoded(std::string_view raw) const {
    std::string out;
    for (size_t at = raw.find('&'); at != std::string_view::npos; at = raw.find('&')) {
        const size_t end = raw.find(';', at);
        if (end == std::string_view::npos)
            refuse("an & that stands for nothing");
        out += raw.substr(0, at);
        appendReference(out, raw.substr(at + 1, end - at - 1));
        raw.remove_prefix(end + 1);
    }
    return out += raw;
}

void XmlReader::appendReference(std::string& out, std::string_view name) const {
    constexpr std::pair<std::string_view, char> known[] = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& [word, meaning] : known)
        if (name == word) {
            out += meaning;
            return;
        }
    const bool isHex = name.starts_with("#x");
    const std::string_view digits = name.substr(std::min<size_t>(isHex ? 2 : 1, name.size()));
    uint32_t number = 0;
    const auto [end, failed] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, isHex ? 16 : 10);
    if (!name.starts_with('#') || failed != std::errc() || end != digits.data() + digits.size() ||
        !isXmlChar(number))
        refuse("&" + printable(name.substr(0, 20)) + "; is not known");
    appendUtf8(out, number);
}

bool isXmlText(std::string_view text) {
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
    };
    return std::ranges::none_of(text, isControl) && text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos && validText(text) == text;
}

std::string xmlEscaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '\t':
        case '\n':
        case '\r': // as they are, a reader may make them one another
            out += fmt::format("&#{};", static_cast<int>(c));
            break;
        default:
            out += c;
        }
    return out;
}

} // namespace vh::copy
