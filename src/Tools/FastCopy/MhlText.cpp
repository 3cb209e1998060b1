#include "Tools/FastCopy/MhlText.h"

#include "Core/Printable.h"
#include "Core/ValidText.h"
#include "Core/XmlText.h"
#include "Platform/Host.h"
#include "Tools/FastCopy/SumsText.h"

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

/// Bytes of a path or a checksum; what is longer is neither.
constexpr size_t longestField = 64u << 10;

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

class MhlParser : public XmlHandler {
public:
    std::vector<ManifestEntry> entries() { return std::move(entries_); }

    void start(std::string_view name, const Attributes& attributes, size_t line) override {
        at(line, [&] {
            content_.clear();
            if (++depth_ == rootDepth)
                checkRoot(name, attributes);
            if (depth_ != fileDepth)
                return;
            isInFile_ = name == "hash";
            entry_ = {};
            hasHash_ = false;
        });
    }
    void text(std::string_view piece) override {
        if (isInFile_ && content_.size() < longestField)
            content_ += piece;
    }
    void end(std::string_view name, size_t line) override {
        at(line, [&] {
            const size_t depth = depth_--;
            if (isInFile_ && depth == fieldDepth)
                takeField(name);
            else if (isInFile_ && depth == fileDepth)
                finishFile();
        });
    }

private:
    static constexpr size_t rootDepth = 1, fileDepth = 2, fieldDepth = 3;

    template <class Work>
    static void at(size_t line, Work work) {
        try {
            work();
        } catch (const ManifestError& error) {
            throw ManifestError(atLine(line, error.message()));
        }
    }

    static void checkRoot(std::string_view name, const Attributes& attributes) {
        if (name != "hashlist")
            throw ManifestError({"fast-copy.list.no-hash-list", {{"element", printable(name)}}});
        const auto version = attributes.find("version");
        if (version == attributes.end() || !version->second.starts_with("1."))
            throw ManifestError(
                {"fast-copy.list.version",
                 {{"version", version == attributes.end() ? "" : printable(version->second)}}});
    }

    void takeField(std::string_view name) {
        if (content_.size() >= longestField)
            throw ManifestError({"fast-copy.list.too-long", {}});
        if (name == "file")
            entry_.relative = pathBelow(content_);
        else if (name == "size")
            entry_.bytes = size();
        else if (const auto found = std::ranges::find(elements, name, &Element::name);
                 found != elements.end())
            takeHash(*found);
    }

    int64_t size() const {
        const std::string_view digits = trimmed(content_);
        int64_t bytes = -1;
        const auto [rest, failed] = std::from_chars(digits.data(), digits.data() + digits.size(), bytes);
        if (failed != std::errc() || rest != digits.data() + digits.size() || bytes < 0)
            throw ManifestError({"fast-copy.list.no-size", {{"text", printable(digits.substr(0, 20))}}});
        return bytes;
    }

    void takeHash(const Element& element) {
        auto hash = hashText(element.algorithm, trimmed(content_));
        if (!hash)
            throw ManifestError({"fast-copy.list.no-checksum",
                                 {{"kind", titleOf(element.algorithm)},
                                  {"text", printable(trimmed(content_).substr(0, 80))}}});
        if (hasHash_ && rankOf(entry_.algorithm) < rankOf(element.algorithm))
            return;
        hasHash_ = true;
        entry_.algorithm = element.algorithm;
        entry_.hash = element.isLittleEndian ? turned(*hash) : std::move(*hash);
    }

    void finishFile() {
        if (entry_.relative.empty())
            throw ManifestError({"fast-copy.list.no-file", {}});
        if (!hasHash_)
            throw ManifestError({"fast-copy.list.unknown-kinds", {{"path", printable(entry_.relative)}}});
        entries_.push_back(std::move(entry_));
        isInFile_ = false;
    }

    std::vector<ManifestEntry> entries_;
    ManifestEntry entry_;
    std::string content_; ///< of the innermost element so far
    size_t depth_ = 0;
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
    MhlParser parser;
    try {
        readXml(text, parser);
    } catch (const XmlError& error) {
        throw ManifestError(
            atLine(error.line, {"fast-copy.list.no-xml", {{"reason", std::string(error.what())}}}));
    }
    return parser.entries();
}

} // namespace vh::copy
