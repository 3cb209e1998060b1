#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vh {

/// Why a text is no XML that is read here; what() is the parser's reason, in English.
class XmlError : public std::runtime_error {
public:
    XmlError(size_t atLine, const std::string& reason) : std::runtime_error(reason), line(atLine) {}
    const size_t line; ///< from 1
};

/// Who is told what stands in a text, piece by piece, in UTF-8.
class XmlHandler {
public:
    virtual ~XmlHandler() = default;
    using Attributes = std::map<std::string, std::string, std::less<>>;
    /// `line` is where it stands, from 1.
    virtual void start(std::string_view name, const Attributes& attributes, size_t line) = 0;
    virtual void end(std::string_view name, size_t line) = 0;
    /// A piece of what an element holds.
    virtual void text(std::string_view piece) = 0;
};

/// Reads a whole text, which may come from anybody: document types are refused, and with them every entity but the five
/// of XML itself; elements lie at most 100 deep. Throws XmlError, and whatever the handler throws.
void readXml(std::string_view text, XmlHandler& handler);

/// Whether XML can hold it at all: valid UTF-8 without control characters but tab and line ends.
bool isXmlText(std::string_view text);
/// With everything escaped that has a meaning in XML.
std::string xmlEscaped(std::string_view text);

} // namespace vh
