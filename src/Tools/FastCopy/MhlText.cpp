#include "Tools/FastCopy/MhlText.h"

#include "Core/Printable.h"
#include "Core/ValidText.h"
#include "Platform/Host.h"
#include "Tools/FastCopy/SumsText.h"
#include "Tools/FastCopy/XmlReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fmt/format.h>

namespace vh::copy {

namespace {

struct Element {
    HashAlgorithm algorithm;
    std::string_view name;
    bool isLittleEndian = false;
};
/// The strongest first; of an algorithm that has several the first is written.
constexpr std::array elements{Element{HashAlgorithm::sha256, "sha256"}, Element{HashAlgorithm::md5, "md5"},
                              Element{HashAlgorithm::xxhash64, "xxhash64be"},
                              Element{HashAlgorithm::xxhash64, "xxhash64", true}};

size_t rankOf(HashAlgorithm algorithm) {
    return static_cast<size_t>(std::ranges::find(elements, algorithm, &Element::algorithm) -
                               elements.begin());
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// The digits of a number with its bytes the other way round.
std::string turned(std::string_view hex) {
    std::string out;
    for (size_t at = hex.size(); at >= 2; at -= 2)
        out += hex.substr(at - 2, 2);
    return out;
}

class MhlParser {
public:
    explicit MhlParser(std::string_view text) : xml_(text) {}

    std::vector<ManifestEntry> entries() {
        try {
            while (takePiece()) {
            }
        } catch (const ManifestError& error) {
            throw ManifestError(xml_.where() + error.what());
        }
        return std::move(entries_);
    }

private:
    static constexpr size_t rootDepth = 1, fileDepth = 2, fieldDepth = 3;

    bool takePiece() {
        switch (xml_.next()) {
        case XmlReader::Piece::start:
            begin();
            return true;
        case XmlReader::Piece::text:
            content_ += xml_.text();
            return true;
        case XmlReader::Piece::end:
            end();
            return true;
        case XmlReader::Piece::finished:
            return false;
        }
        return false;
    }

    void begin() {
        content_.clear();
        if (xml_.depth() == rootDepth)
            checkRoot();
        isInFile_ = xml_.depth() == fileDepth ? xml_.name() == "hash" : isInFile_;
        if (isInFile_ && xml_.depth() == fileDepth) {
            entry_ = {};
            hasHash_ = false;
        }
    }

    void checkRoot() const {
        if (xml_.name() != "hashlist")
            throw ManifestError("<" + printable(xml_.name()) + "> begins no media hash list");
        if (const std::string version = xml_.attribute("version"); !version.starts_with("1."))
            throw ManifestError("version \"" + printable(version) +
                                "\" of media hash lists cannot be read, only version 1");
    }

    void end() {
        if (!isInFile_)
            return;
        if (xml_.depth() == fieldDepth - 1)
            takeField();
        else if (xml_.depth() == fileDepth - 1)
            finishFile();
    }

    void takeField() {
        if (xml_.name() == "file")
            entry_.relative = pathBelow(content_);
        else if (xml_.name() == "size")
            entry_.bytes = size();
        else if (const auto found = std::ranges::find(elements, xml_.name(), &Element::name);
                 found != elements.end())
            takeHash(*found);
    }

    int64_t size() const {
        const std::string_view digits = trimmed(content_);
        int64_t bytes = -1;
        const auto [rest, failed] = std::from_chars(digits.data(), digits.data() + digits.size(), bytes);
        if (failed != std::errc() || rest != digits.data() + digits.size() || bytes < 0)
            throw ManifestError("no size: " + printable(digits.substr(0, 20)));
        return bytes;
    }

    void takeHash(const Element& element) {
        auto hash = hashText(element.algorithm, trimmed(content_));
        if (!hash)
            throw ManifestError("no " + std::string(titleOf(element.algorithm)) +
                                " checksum: " + printable(trimmed(content_).substr(0, 80)));
        if (hasHash_ && rankOf(entry_.algorithm) < rankOf(element.algorithm))
            return;
        hasHash_ = true;
        entry_.algorithm = element.algorithm;
        entry_.hash = element.isLittleEndian ? turned(*hash) : std::move(*hash);
    }

    void finishFile() {
        if (entry_.relative.empty())
            throw ManifestError("a <hash> without its <file>");
        if (!hasHash_)
            throw ManifestError("no checksum of a kind that is known here (sha256, md5, "
                                "xxhash64be, xxhash64) for " +
                                printable(entry_.relative));
        entries_.push_back(std::move(entry_));
        isInFile_ = false;
    }

    XmlReader xml_;
    std::vector<ManifestEntry> entries_;
    ManifestEntry entry_;
    std::string content_; ///< of the innermost element so far
    bool isInFile_ = false;
    bool hasHash_ = false;
};

} // namespace

bool fitsMhl(std::string_view path) {
    return isXmlText(path);
}

std::string mhlText(const std::vector<ManifestEntry>& entries, Date start, Date end) {
    std::string text = fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<hashlist version=\"1.1\">\n"
                                   "  <creatorinfo>\n"
                                   "    <username>{}</username>\n"
                                   "    <hostname>{}</hostname>\n"
                                   "    <tool>Varnholt</tool>\n"
                                   "    <startdate>{}</startdate>\n"
                                   "    <finishdate>{}</finishdate>\n"
                                   "  </creatorinfo>\n",
                                   xmlEscaped(validText(userName())), xmlEscaped(validText(hostName())),
                                   iso8601(start), iso8601(end));
    const std::string hashDate = iso8601(end);
    for (const ManifestEntry& entry : entries) {
        const std::string_view element = elements[rankOf(entry.algorithm)].name;
        text += fmt::format("  <hash>\n    <file>{}</file>\n", xmlEscaped(entry.relative));
        if (entry.bytes)
            text += fmt::format("    <size>{}</size>\n", *entry.bytes);
        if (entry.modified)
            text += fmt::format("    <lastmodificationdate>{}</lastmodificationdate>\n",
                                iso8601(*entry.modified));
        text += fmt::format("    <{0}>{1}</{0}>\n    <hashdate>{2}</hashdate>\n  </hash>\n", element,
                            entry.hash, hashDate);
    }
    return text + "</hashlist>\n";
}

std::vector<ManifestEntry> parseMhl(std::string_view text) {
    try {
        return MhlParser(text).entries();
    } catch (const XmlError& error) {
        throw ManifestError(error.what());
    }
}

} // namespace vh::copy
