#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vh::copy {

/// Why a text is no XML that is read here; what() names the line.
class XmlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the XML of a list, piece by piece: elements, attributes and text in UTF-8. Comments and processing instructions
/// are passed over. Document types are refused, and with them every entity but the five of XML itself. The text must
/// outlive the reader.
class XmlReader {
public:
    explicit XmlReader(std::string_view text);

    enum class Piece { start, end, text, finished };
    /// Goes on to the next piece. Throws XmlError.
    Piece next();

    std::string_view name() const { return name_; } ///< of the element that starts or ends
    const std::string& text() const { return value_; }
    /// Of the element that starts; empty when it has none of that name.
    std::string attribute(std::string_view name) const;
    /// How many elements are open, with the one that starts, without the one that ended.
    size_t depth() const { return open_.size(); }
    /// "Line 7: ", for messages about the present piece.
    std::string where() const;

private:
    [[noreturn]] void refuse(const std::string& why) const;
    bool takes(std::string_view word);
    std::string_view takeUntil(std::string_view end);
    std::string_view takeName();
    void skipBlanks();
    void readAttributes();
    Piece readStart();
    Piece readEnd();
    std::string decoded(std::string_view raw) const;
    void appendReference(std::string& out, std::string_view name) const;

    std::string_view all_;
    std::string_view rest_;
    std::string_view name_;
    std::string value_;
    std::vector<std::pair<std::string_view, std::string>> attributes_;
    std::vector<std::string_view> open_;
    bool sawRoot_ = false;
    bool endsAtOnce_ = false; ///< the element that started was "<name/>"
};

/// Whether XML can hold it at all: valid UTF-8 without control characters but tab and line ends.
bool isXmlText(std::string_view text);
/// With everything escaped that has a meaning in XML.
std::string xmlEscaped(std::string_view text);

} // namespace vh::copy
