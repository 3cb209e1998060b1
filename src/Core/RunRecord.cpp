#include "Core/RunRecord.h"

#include <charconv>
#include <sstream>

namespace vh {

namespace {

template <class Map>
auto valueIn(const Map& map, std::string_view key) -> std::optional<typename Map::mapped_type> {
    const auto found = map.find(std::string(key));
    return found == map.end() ? std::nullopt : std::optional(found->second);
}

std::optional<int64_t> wholeNumber(const std::string& text) {
    int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

/// A number out of range, as a foreign line may hold, is none.
std::optional<int64_t> wholeNumber(double value) {
    constexpr double limit = 9223372036854775808.0;
    return value >= -limit && value < limit ? std::optional(static_cast<int64_t>(value)) : std::nullopt;
}

/// The detail if it is a whole number, else the first of the metrics that is there.
std::optional<int64_t> count(const RunRecord& record, RunDetail detail,
                             std::initializer_list<RunMetric> metrics) {
    if (const auto text = record.detail(detail))
        if (const auto value = wholeNumber(*text))
            return value;
    for (const RunMetric metric : metrics)
        if (const auto value = record.metric(metric))
            return wholeNumber(*value);
    return std::nullopt;
}

} // namespace

std::optional<double> RunRecord::metric(RunMetric which) const {
    return valueIn(metrics, rawValue(which));
}

std::optional<std::string> RunRecord::detail(RunDetail which) const {
    return details ? valueIn(*details, rawValue(which)) : std::nullopt;
}

std::optional<int64_t> RunRecord::files() const {
    return count(*this, RunDetail::files, {RunMetric::filesCopied, RunMetric::filesRemoved});
}

std::optional<int64_t> RunRecord::bytes() const {
    return count(*this, RunDetail::bytes,
                 {RunMetric::bytesCopied, RunMetric::freedBytes, RunMetric::bytesImaged});
}

std::optional<std::map<std::string, std::string>> rawDetails(const RunDetails& details) {
    std::map<std::string, std::string> raw;
    for (const auto& [detail, text] : details)
        if (!text.empty())
            raw.emplace(rawValue(detail), text);
    return raw.empty() ? std::nullopt : std::optional(std::move(raw));
}

std::string joinList(const std::vector<std::string>& items) {
    std::string joined;
    for (const auto& item : items)
        joined += (&item == &items.front() ? "" : "\n") + item;
    return joined;
}

std::vector<std::string> splitList(const std::string& joined) {
    std::vector<std::string> items;
    std::istringstream lines(joined);
    for (std::string line; std::getline(lines, line);)
        items.push_back(line);
    return items;
}

} // namespace vh
