#include "Mail/MailHeaders.h"

#include "Core/Base64.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh::mail {

namespace {

/// Bytes of text in one encoded word: as base64 they stay, with what stands around them and the name of the header
/// before the first, within 76 characters.
constexpr size_t bytesPerWord = 39;
/// A longer line of plain text would have to be folded where it has no space.
constexpr size_t longestPlain = 70;

bool isPrintableAscii(char c) {
    return c >= 0x20 && c < 0x7F;
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::string encodedWord(std::string_view text) {
    return fmt::format("=?UTF-8?B?{}?=", base64(std::as_bytes(std::span(text))));
}

bool isAsciiText(std::string_view text) {
    return std::ranges::all_of(text, isPrintableAscii);
}

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

std::string percentEncoded(std::string_view bytes) {
    std::string out;
    for (const char c : bytes)
        if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
            c == '.' || c == '_')
            out += c;
        else
            out += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return out;
}

} // namespace

std::string headerText(std::string_view text) {
    if (isAsciiText(text) && text.size() <= longestPlain && text.find("=?") == std::string_view::npos)
        return std::string(text);
    std::string out;
    while (!text.empty()) {
        size_t end = std::min(bytesPerWord, text.size());
        // A character is never cut in two.
        while (end < text.size() && end > 1 && isContinuation(text[end]))
            --end;
        out += (out.empty() ? "" : "\r\n ") + encodedWord(text.substr(0, end));
        text.remove_prefix(end);
    }
    return out;
}

std::string mailbox(std::string_view name, const std::string& address) {
    if (name.empty())
        return address;
    const bool isPlain = isAsciiText(name) && name.size() <= longestPlain;
    return fmt::format("{} <{}>", isPlain ? quoted(name) : headerText(name), address);
}

std::string addressList(const std::vector<std::string>& addresses) {
    return fmt::format("{}", fmt::join(addresses, ",\r\n "));
}

std::string attachmentDisposition(std::string_view fileName) {
    if (isAsciiText(fileName))
        return "Content-Disposition: attachment; filename=" + quoted(fileName);
    return "Content-Disposition: attachment; filename*=UTF-8''" + percentEncoded(fileName);
}

std::string withMailLineEnds(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || text[i] == '\r')
            out += "\r\n";
        else
            out += text[i];
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
    }
    return out;
}

bool breaksHeader(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return (c >= 0 && c < 0x20) || c == 0x7F; });
}

} // namespace vh::mail
