#include "Tools/FastCopy/SumsText.h"

#include "Core/Printable.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace vh::copy {

namespace {

/// Far beyond the longest path there is.
constexpr size_t longestLine = 64u << 10;
/// What a message cites of a line.
constexpr size_t mostCited = 60;

struct Kind {
    HashAlgorithm algorithm;
    std::string_view tag; ///< in front of "(<path>) = <hash>"
    size_t digits;
};
constexpr std::array kinds{Kind{HashAlgorithm::sha256, "SHA256", 64}, Kind{HashAlgorithm::md5, "MD5", 32},
                           Kind{HashAlgorithm::xxhash64, "XXH64", 16}};

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string unescaped(std::string_view name) {
    std::string plain;
    for (size_t at = 0; at < name.size(); ++at) {
        if (name[at] != '\\') {
            plain += name[at];
            continue;
        }
        switch (++at < name.size() ? name[at] : '\0') {
        case 'n':
            plain += '\n';
            break;
        case 'r':
            plain += '\r';
            break;
        case '\\':
            plain += '\\';
            break;
        default:
            throw ManifestError({"fast-copy.list.backslash", {}});
        }
    }
    return plain;
}

struct Parts {
    HashAlgorithm algorithm;
    std::string hash;
    std::string_view name;
};

/// "<hash>  <path>" or "<hash> *<path>".
std::optional<Parts> plainParts(std::string_view line) {
    const auto digits = static_cast<size_t>(std::ranges::find_if_not(line, isHex) - line.begin());
    const auto kind = std::ranges::find(kinds, digits, &Kind::digits);
    if (kind == kinds.end() || line.size() < digits + 3 || line[digits] != ' ' ||
        (line[digits + 1] != ' ' && line[digits + 1] != '*'))
        return std::nullopt;
    return Parts{kind->algorithm, *hashText(kind->algorithm, line.substr(0, digits)),
                 line.substr(digits + 2)};
}

/// "SHA256 (<path>) = <hash>".
std::optional<Parts> taggedParts(std::string_view line) {
    for (const Kind& kind : kinds) {
        const size_t open = kind.tag.size() + 2, behind = line.rfind(") = ");
        if (!line.starts_with(kind.tag) || !line.substr(kind.tag.size()).starts_with(" (") ||
            behind == std::string_view::npos || behind < open)
            continue;
        if (auto hash = hashText(kind.algorithm, line.substr(behind + 4)))
            return Parts{kind.algorithm, std::move(*hash), line.substr(open, behind - open)};
    }
    return std::nullopt;
}

ManifestEntry entryOf(std::string_view line) {
    if (line.size() > longestLine)
        throw ManifestError({"fast-copy.list.too-long", {}});
    if (line.find('\0') != std::string_view::npos)
        throw ManifestError({"fast-copy.list.zero-byte", {}});
    const bool isEscaped = line.starts_with('\\');
    const std::string_view rest = line.substr(isEscaped ? 1 : 0);
    auto parts = plainParts(rest);
    if (!parts)
        parts = taggedParts(rest);
    if (!parts)
        throw ManifestError({"fast-copy.list.no-entry", {{"line", printable(line.substr(0, mostCited))}}});
    ManifestEntry entry;
    entry.relative = pathBelow(isEscaped ? unescaped(parts->name) : std::string(parts->name));
    entry.algorithm = parts->algorithm;
    entry.hash = std::move(parts->hash);
    return entry;
}

} // namespace

std::string sumLine(HashAlgorithm algorithm, std::string_view hash, std::string_view path) {
    // Readers of XXH64 lists learnt late to read what is escaped, so there only what would break the line is.
    const bool isEscaped = algorithm == HashAlgorithm::xxhash64
                               ? path.find('\n') != std::string_view::npos || path.ends_with('\r')
                               : path.find_first_of("\n\r\\") != std::string_view::npos;
    std::string line = (isEscaped ? "\\" : "") + std::string(hash) + "  ";
    for (const char c : path)
        if (isEscaped && c == '\n')
            line += "\\n";
        else if (isEscaped && c == '\r')
            line += "\\r";
        else if (isEscaped && c == '\\')
            line += "\\\\";
        else
            line += c;
    return line + '\n';
}

Message atLine(size_t line, Message what) {
    return {"fast-copy.list.at-line", {{"line", line}, {"reason", std::move(what)}}};
}

std::vector<ManifestEntry> parseSums(std::string_view text) {
    std::vector<ManifestEntry> entries;
    for (size_t number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.empty() || line.starts_with('#'))
            continue;
        try {
            entries.push_back(entryOf(line));
        } catch (const ManifestError& error) {
            throw ManifestError(atLine(number, error.message()));
        }
    }
    return entries;
}

std::string pathBelow(std::string_view path) {
    const auto refuse = [&](const char* why) {
        throw ManifestError({why, {{"path", printable(path.substr(0, mostCited))}}});
    };
    if (path.starts_with('/'))
        refuse("fast-copy.list.absolute");
    std::string clean;
    for (std::string_view rest = path; !rest.empty();) {
        const size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view part = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (part == "..")
            refuse("fast-copy.list.leads-out");
        if (part.empty() || part == ".")
            continue;
        clean += (clean.empty() ? "" : "/") + std::string(part);
    }
    if (clean.empty())
        refuse("fast-copy.list.no-name");
    return clean;
}

std::optional<std::string> hashText(HashAlgorithm algorithm, std::string_view text) {
    const auto kind = std::ranges::find(kinds, algorithm, &Kind::algorithm);
    if (text.size() != kind->digits || !std::ranges::all_of(text, isHex))
        return std::nullopt;
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'F')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

} // namespace vh::copy
