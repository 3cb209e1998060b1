#include "HelperKit/HelperClient.h"
#include "Platform/WholeDisks.h"
#include "Tools/FastCopy/view/CopyQueue.h"
#include "app/AppContext.h"
#include "app/Session.h"

namespace vh::app {

CopyDependencies CopyDependencies::of(AppContext& context) {
    Session& session = context.session();
    return {
        [&context, &session](const copy::CopyRequest& request, const Texts& texts, const Control& control,
                             const std::function<void(const copy::CopyProgress&)>& progress,
                             const CancelToken& cancel) {
            return copy::runCopy(request, copy::copyStateFolder(session.folders()), context.runStores(),
                                 texts, control, progress, cancel);
        },
        [&context, &session](const automation::DiskCopyRequest& request, const Texts& texts,
                             const Control& control,
                             const std::function<void(const automation::DiskCopyProgress&)>& progress,
                             const CancelToken& cancel) {
            return automation::runDiskCopy(request, automation::DeviceJobs::of(session.helper()),
                                           session.folders(), context.runStores(), texts, control, progress,
                                           cancel);
        },
        wholeDisks,
        [&session](const Texts& texts) {
            return automation::DeviceJobs::of(session.helper()).blocker(texts);
        },
    };
}

} // namespace vh::app
