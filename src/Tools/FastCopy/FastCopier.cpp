#include "Tools/FastCopy/FastCopier.h"

#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyDestination.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/CopyRun.h"
#include "Tools/FastCopy/CopyVerification.h"
#include "Tools/FastCopy/LargeFile.h"
#include "Tools/FastCopy/SmallFiles.h"

#include <chrono>
#include <filesystem>
#include <thread>

namespace vh::copy {

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

/// How often a copy that waits for paused destinations looks again.
constexpr milliseconds whilePaused{200};

std::string realPath(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? path : real.string();
}

bool isInside(const std::string& path, const std::string& folder) {
    return (path + '/').starts_with(folder.ends_with('/') ? folder : folder + '/');
}

void refuseWhatCannotBegin(const std::vector<std::string>& sources,
                           const std::vector<std::string>& destinations) {
    for (const std::string& destination : destinations) {
        std::error_code error;
        if (!fs::is_directory(destination, error))
            throw CopyError::destinationMissing(destination);
        for (const std::string& source : sources) {
            const bool isFolder = fs::is_directory(source, error);
            // Written so, or reached through a link.
            if (isFolder &&
                (isInside(destination, source) || isInside(realPath(destination), realPath(source))))
                throw CopyError::destinationInsideSource(destination);
        }
    }
}

/// One copy from its first item to its last.
class Copying {
public:
    Copying(CopyRun& run, CopyLanes& lanes) : run_(run), lanes_(lanes) {
        for (const std::string& path : run.destinations())
            destinations_.push_back(std::make_unique<CopyDestination>(path, run.options()));
    }

    void copyAll() {
        SmallFiles small(run_, destinations_, lanes_);
        for (size_t item = 0; item < run_.items().size() && !run_.isStopped(); ++item)
            process(item, run_.takersOf(item), small);
        small.finish();
        copyDeferred(small);
        if (run_.options().keepsMetadata() && !run_.isStopped())
            finishFolders();
    }

private:
    void process(size_t item, const std::vector<size_t>& takers, SmallFiles& small) {
        if (takers.empty())
            return;
        if (const CopyItem& each = run_.items()[item]; each.isFolder || each.size <= SmallFiles::largest)
            return small.add(item, takers);
        small.finish();
        copyLargeFile(run_, destinations_, lanes_, item, takers);
    }

    void copyDeferred(SmallFiles& small) {
        while (!run_.isStopped()) {
            const CopyRun::Turn turn = run_.nextDeferred();
            if (!turn.takers.empty()) {
                process(turn.item, turn.takers, small);
                continue;
            }
            small.finish();
            if (!run_.hasDeferred())
                return;
            run_.emit(CopyRun::Emit::forced, {});
            std::this_thread::sleep_for(whilePaused);
        }
        small.finish();
    }

    /// What lands in a folder changes its times, so it gets its own when all is there.
    void finishFolders() {
        std::vector<size_t> all(destinations_.size());
        for (size_t each = 0; each < all.size(); ++each)
            all[each] = each;
        std::vector<std::vector<std::string>> problems(all.size());
        lanes_.run(all, [&](size_t destination) {
            for (size_t item = run_.items().size(); item-- > 0;)
                if (const CopyItem& each = run_.items()[item];
                    each.isFolder && !run_.control().isRemoved(destination))
                    if (std::string problem = destinations_[destination]->finishFolder(each);
                        !problem.empty())
                        problems[destination].push_back(each.relative + ": " + problem);
        });
        for (const size_t destination : all)
            for (const std::string& each : problems[destination])
                run_.addProblem(destination, each);
    }

    CopyRun& run_;
    CopyLanes& lanes_;
    std::vector<std::unique_ptr<CopyDestination>> destinations_;
};

} // namespace

CopyPlan FastCopier::plan(const std::vector<std::string>& sources, const CancelToken& cancel) {
    return planOf(itemsOf(sources, cancel).items);
}

CopyReport FastCopier::copy(const std::vector<std::string>& sources,
                            const std::vector<std::string>& destinations, const CopyOptions& options,
                            const std::function<void(const CopyProgress&)>& progress,
                            const CancelToken& beforeBeginning, CopyProofs* /*proofs*/) {
    refuseWhatCannotBegin(sources, destinations);
    CopyRun run(itemsOf(sources, beforeBeginning), destinations, options, *control_, progress);
    CopyLanes lanes(destinations.size() + 1, threads_); // one more for hashing the source
    try {
        Copying(run, lanes).copyAll();
    } catch (const SystemError& error) {
        throw CopyError::io(error.what());
    }
    if (options.verifies() && !run.isStopped())
        verify(run, lanes);
    run.emit(CopyRun::Emit::forced, {});
    return run.finish();
}

} // namespace vh::copy
