#include "Tools/FastCopy/work/CopyAction.h"

#include "Core/Texts.h"
#include "Platform/PathParts.h"
#include "Tools/FastCopy/CopyWork.h"

#include <set>

namespace vh::copy {

namespace {

/// The items at the top of what landed, a path a line.
std::string landedItems(const CopyReport& report) {
    std::string lines;
    std::set<std::string> known;
    for (const CopiedFile& file : report.files) {
        if (file.state == CopiedFileState::failed)
            continue;
        const std::string item = joinPath(file.destination, file.place().substr(0, file.place().find('/')));
        if (known.insert(item).second)
            lines += item + "\n";
    }
    return lines;
}

} // namespace

RunRecord runCopyAction(const automation::AutomationDependencies& dependencies,
                        const automation::ActionRequest& request, const JobControl& control) {
    CopyRequest copy{.sources = request.sources,
                     .destinations = {request.payload.at("folder")},
                     .trigger = request.trigger,
                     .details = request.details};
    copy.options.conflict = CopyConflict::rename;
    copy.options.links = CopyLinks::asLinks;
    copy.options.createDestinations = true;
    const auto tell = [&](const CopyProgress& progress) {
        const auto total = static_cast<double>(progress.bytesTotal);
        control.report(total > 0 ? static_cast<double>(progress.bytesDone) / total : -1,
                       progress.currentFile);
    };
    CopyResult result = runCopy(copy, copyStateFolder(dependencies.folders), dependencies.runs,
                                dependencies.texts(), std::make_shared<CopyControl>(), tell, control.cancel);
    auto& details = result.record.details ? *result.record.details : result.record.details.emplace();
    details[std::string(rawValue(RunDetail::output))] = landedItems(result.report);
    return std::move(result.record);
}

} // namespace vh::copy
