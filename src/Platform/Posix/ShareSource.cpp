#include "Platform/MountWatcher.h"

namespace vh {

namespace {

std::string_view afterLast(std::string_view text, char separator) {
    const size_t at = text.rfind(separator);
    return at == std::string_view::npos ? text : text.substr(at + 1);
}

/// "user:password@host:port" without all but the host; an address of IPv6 without its brackets.
std::string hostIn(std::string_view authority) {
    authority = afterLast(authority, '@');
    if (authority.starts_with('['))
        return std::string(authority.substr(1, authority.find(']') - 1));
    return std::string(authority.substr(0, authority.find(':')));
}

std::string withoutSlashes(std::string_view path) {
    while (path.starts_with('/'))
        path.remove_prefix(1);
    while (path.ends_with('/'))
        path.remove_suffix(1);
    return std::string(path);
}

/// "host/share"
ShareSource fromAuthorityAndPath(std::string_view text) {
    const size_t slash = std::min(text.find('/'), text.size());
    ShareSource source{hostIn(text.substr(0, slash)), withoutSlashes(text.substr(slash))};
    return source.host.empty() ? ShareSource{} : source;
}

} // namespace

ShareSource parseShareSource(std::string_view source) {
    if (const size_t scheme = source.find("://"); scheme != std::string_view::npos)
        return fromAuthorityAndPath(source.substr(scheme + 3));
    if (source.starts_with("//"))
        return fromAuthorityAndPath(source.substr(2));
    const size_t bracket = source.find("]:");
    const size_t colon = bracket != std::string_view::npos ? bracket + 1 : source.find(':');
    if (colon == std::string_view::npos || source.find('/') < colon)
        return {};
    const std::string host = hostIn(source.substr(0, colon));
    std::string_view path = source.substr(colon + 1);
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return host.empty() ? ShareSource{} : ShareSource{host, std::string(path)};
}

} // namespace vh
