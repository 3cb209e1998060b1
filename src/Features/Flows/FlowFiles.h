#pragma once

#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowRun.h"
#include "Platform/GrowingFile.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::flows {

struct CompanyFlow;

/// The flows of one folder as they were read last. Not for sharing between threads.
class FlowFolder {
public:
    FlowFolder(std::string path, bool isCompany) : path_(std::move(path)), isCompany_(isCompany) {}

    /// Reads what changed since; true when that was anything. A folder that is not there has no flows.
    bool refresh();
    /// By identifier.
    std::vector<CompanyFlow> flows() const;
    /// What cannot be read, the folder itself if need be; files under a name that no flow has are taken for that too.
    std::vector<std::string> damaged() const;
    bool contains(const Uuid& id) const;

    std::string fileOf(const Uuid& id) const { return path_ + "/" + id.text() + ".json"; }
    std::string runsFileOf(const Uuid& id) const { return path_ + "/" + id.text() + ".runs.json"; }
    const std::string& path() const { return path_; }

private:
    struct Known {
        FileStamp stamp;
        std::shared_ptr<const CompanyFlow> flow; ///< nothing: damaged
    };
    std::shared_ptr<const CompanyFlow> read(const std::string& file, const Uuid& id) const;
    std::map<Uuid, Known> look(std::set<std::string>& misnamed) const;

    const std::string path_;
    const bool isCompany_;
    bool isUnreadable_ = false;
    std::map<Uuid, Known> known_;
    std::set<std::string> misnamed_;
};

/// The identifier in a name "<uuid><suffix>" as this program writes it; nothing for any other name.
std::optional<Uuid> idOfName(std::string_view name, std::string_view suffix);

/// Those that can be read; none when there is no such file.
std::vector<FlowRun> readRuns(const std::string& file);
/// The newest that can be read. Of a long file only its beginning is.
std::optional<FlowRun> readLastRun(const std::string& file);
/// The one of that identifier, without what the others say.
std::optional<FlowRun> readRun(const std::string& file, const Uuid& id);

/// What was written down of a run while it went on.
std::optional<FlowRun> readRunNote(const std::string& file);
void writeRunNote(const std::string& file, const FlowRun& run);
void addToRunNote(const std::string& file, const Uuid& node, const FlowNodeResult& result);

} // namespace vh::flows
