#include "Features/Flows/work/FlowFolders.h"

#include "Features/Flows/NodesStore.h"
#include "Platform/Blank.h"
#include "Platform/SystemError.h"

namespace vh::automation {

namespace {

constexpr std::chrono::seconds tryAgain{30};

std::string withHome(std::string_view typed, const std::string& home) {
    const std::string path(trimmed(typed));
    return path == "~" || path.starts_with("~/") ? home + path.substr(1) : path;
}

/// Of the folder itself where the path is a link to it.
std::optional<FileIdentity> folderAt(const std::string& path) {
    return identityOf(path + "/.");
}

} // namespace

FlowFolders::FlowFolders(const AutomationDependencies& dependencies, flows::NodesStore& store,
                         Arrived arrived)
    : dependencies_(dependencies), store_(store), arrived_(std::move(arrived)) {}

void FlowFolders::refresh() {
    troubles_.clear();
    const auto wanted = this->wanted();
    std::erase_if(watched_, [&](const auto& entry) {
        const auto& [flow, watched] = entry;
        const auto found = wanted.find(flow);
        return found == wanted.end() || watched.arrivals->isGone() ||
               watched.arrivals->settings() != found->second ||
               watched.folder != folderAt(found->second.folder);
    });
    for (const auto& [flow, settings] : wanted)
        if (!watched_.contains(flow))
            watch(flow, settings);
    if (wanted.empty())
        again_.reset();
    else if (!again_)
        again_ = dependencies_.loop.every(tryAgain, [this] { refresh(); });
}

std::map<Uuid, flows::OnNewFiles> FlowFolders::wanted() const {
    std::map<Uuid, flows::OnNewFiles> wanted;
    const auto add = [&](const flows::Flow& flow) {
        const flows::FlowTrigger* start = flow.start();
        const auto* files = start ? std::get_if<flows::OnNewFiles>(start) : nullptr;
        if (!files || !flows::isFilledIn(*start, flow.id))
            return;
        auto& settings = wanted[flow.id] = *files;
        settings.folder = withHome(files->folder, dependencies_.folders.home);
    };
    for (const flows::Flow& flow : store_.flows())
        add(flow);
    for (const flows::CompanyFlow& each : store_.companyFlows())
        add(each.flow);
    return wanted;
}

void FlowFolders::watch(const Uuid& flow, const flows::OnNewFiles& settings) {
    try {
        auto folder = folderAt(settings.folder);
        auto arrivals = std::make_unique<flows::FolderArrivals>(
            dependencies_.loop, settings,
            [this, flow, path = settings.folder](const std::vector<std::string>& files) {
                return arrived_(flow, files, path);
            },
            dependencies_.clock);
        watched_.insert_or_assign(flow, Watched{std::move(arrivals), std::move(folder)});
    } catch (const SystemError& error) {
        troubles_.push_back(dependencies_.texts().text("nodes.trouble.folder", {{"reason", error.what()}}));
    }
}

} // namespace vh::automation
