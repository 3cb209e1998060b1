#include "Features/Flows/FlowFiles.h"

#include "Core/Codec.h"
#include "Features/Flows/NodesStore.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>

namespace vh::flows {

std::optional<Uuid> idOfName(std::string_view name, std::string_view suffix) {
    constexpr size_t length = 36;
    if (name.size() != length + suffix.size() || !name.ends_with(suffix))
        return std::nullopt;
    const auto id = Uuid::parse(name.substr(0, length));
    return id && id->text() == name.substr(0, length) ? id : std::nullopt;
}

bool FlowFolder::refresh() {
    std::map<Uuid, Known> now;
    std::set<std::string> misnamed;
    bool isUnreadable = false;
    try {
        now = look(misnamed);
    } catch (const SystemError&) {
        isUnreadable = true;
    }
    const bool isSame = isUnreadable == isUnreadable_ && misnamed == misnamed_ &&
                        std::ranges::equal(now, known_, [](const auto& a, const auto& b) {
                            return a.first == b.first && a.second.stamp == b.second.stamp;
                        });
    isUnreadable_ = isUnreadable;
    known_ = std::move(now);
    misnamed_ = std::move(misnamed);
    return !isSame;
}

std::map<Uuid, FlowFolder::Known> FlowFolder::look(std::set<std::string>& misnamed) const {
    std::map<Uuid, Known> now;
    if (!statusOf(path_))
        return now;
    FolderReader reader(path_);
    while (const auto entry = reader.next()) {
        const auto id = idOfName(entry->name, ".json");
        if (entry->type != FileType::file)
            continue;
        if (!id) {
            if (entry->name.ends_with(".json") && !entry->name.ends_with(".runs.json"))
                misnamed.emplace(entry->name);
            continue;
        }
        const auto stamp = stampOf(fileOf(*id));
        if (!stamp)
            continue; // gone by now
        const auto before = known_.find(*id);
        now[*id] =
            before != known_.end() && before->second.stamp == *stamp
                ? before->second
                : Known{*stamp, stamp->byteSize > NodesStore::largestFile ? nullptr : read(fileOf(*id), *id)};
    }
    return now;
}

std::shared_ptr<const CompanyFlow> FlowFolder::read(const std::string& file, const Uuid& id) const {
    try {
        const std::string text = readFile(file);
        auto flow = isCompany_ ? decodeJson<CompanyFlow>(text) : CompanyFlow{decodeJson<Flow>(text), ""};
        // Saved under its own name it would be there twice.
        return flow.flow.id == id ? std::make_shared<const CompanyFlow>(std::move(flow)) : nullptr;
    } catch (const DecodeError&) {
        return nullptr;
    } catch (const SystemError&) {
        return nullptr;
    }
}

std::vector<CompanyFlow> FlowFolder::flows() const {
    std::vector<CompanyFlow> all;
    for (const auto& [id, known] : known_)
        if (known.flow)
            all.push_back(*known.flow);
    return all;
}

std::vector<std::string> FlowFolder::damaged() const {
    std::vector<std::string> files;
    if (isUnreadable_)
        files.push_back(path_);
    for (const auto& [id, known] : known_)
        if (!known.flow)
            files.push_back(fileOf(id));
    for (const std::string& name : misnamed_)
        files.push_back(path_ + "/" + name);
    return files;
}

bool FlowFolder::contains(const Uuid& id) const {
    const auto found = known_.find(id);
    return found != known_.end() && found->second.flow;
}

namespace {

/// Those in a text that `isWanted`.
std::vector<FlowRun> runsIn(const std::string& text, const std::function<bool(JsonView)>& isWanted) {
    std::vector<FlowRun> runs;
    try {
        JsonDocument document;
        const JsonView root = document.parse(text);
        if (root.kind() == JsonKind::array)
            root.forEachElement([&](size_t, JsonView each) {
                try {
                    if (isWanted(each))
                        runs.push_back(decodeJson<FlowRun>(each));
                } catch (const DecodeError&) {
                    // A run of a version that says more than this one knows hides no other.
                }
            });
    } catch (const DecodeError&) {
        return {};
    }
    return runs;
}

/// A list with the first run of the file alone; empty when it does not end where our own writing ends one.
std::string firstRunIn(const std::string& file) {
    constexpr size_t blockBytes = 64u << 10;
    constexpr std::string_view end = "\n  }"; // no text in JSON holds a line feed
    const SourceFile source(file, SourceFile::Attributes::left);
    std::string text;
    for (size_t known = 0;; known = text.size()) {
        text.resize(known + blockBytes);
        text.resize(known + source.readAt(static_cast<int64_t>(known), std::span(text).subspan(known)));
        if (const size_t at = text.find(end, known - std::min(known, end.size())); at != std::string::npos)
            return text.substr(0, at + end.size()) + "]";
        if (text.size() < known + blockBytes)
            return {};
    }
}

} // namespace

std::vector<FlowRun> readRuns(const std::string& file) {
    const auto text = readFileIfPresent(file);
    return text ? runsIn(*text, [](JsonView) { return true; }) : std::vector<FlowRun>();
}

std::optional<FlowRun> readLastRun(const std::string& file) {
    if (!statusOf(file))
        return std::nullopt;
    auto runs = runsIn(firstRunIn(file), [](JsonView) { return true; });
    if (runs.empty())
        runs = readRuns(file);
    return runs.empty() ? std::nullopt : std::optional(std::move(runs.front()));
}

std::optional<FlowRun> readRun(const std::string& file, const Uuid& id) {
    const auto text = readFileIfPresent(file);
    auto runs = text ? runsIn(*text,
                              [&](JsonView each) {
                                  const auto own = each.find("id");
                                  return own && decodeJson<Uuid>(*own) == id;
                              })
                     : std::vector<FlowRun>();
    return runs.empty() ? std::nullopt : std::optional(std::move(runs.front()));
}

namespace {

/// A line of a note after its first, which is the run itself.
struct NotedResult {
    Uuid node;
    FlowNodeResult result;
};

} // namespace

} // namespace vh::flows

namespace vh {
template <>
inline constexpr auto describe<flows::NotedResult> = record(field("node", &flows::NotedResult::node),
                                                            field("result", &flows::NotedResult::result));
} // namespace vh

namespace vh::flows {

std::optional<FlowRun> readRunNote(const std::string& file) {
    const auto text = readFileIfPresent(file);
    if (!text)
        return std::nullopt;
    std::optional<FlowRun> run;
    for (size_t start = 0; start < text->size();) {
        const size_t end = std::min(text->find('\n', start), text->size());
        const auto line = std::string_view(*text).substr(start, end - start);
        start = end + 1;
        try {
            if (!run) {
                run = decodeJson<FlowRun>(line);
                continue;
            }
            NotedResult noted = decodeJson<NotedResult>(line);
            run->results.insert_or_assign(noted.node, std::move(noted.result));
        } catch (const DecodeError&) {
            if (!run)
                return std::nullopt;
        }
    }
    return run;
}

void writeRunNote(const std::string& file, const FlowRun& run) {
    writeFileAtomically(file, encodeJson(run) + "\n");
}

void addToRunNote(const std::string& file, const Uuid& node, const FlowNodeResult& result) {
    appendToFile(file, encodeJson(NotedResult{node, result}) + "\n");
}

} // namespace vh::flows
