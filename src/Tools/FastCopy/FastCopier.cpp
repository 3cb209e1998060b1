#include "Tools/FastCopy/FastCopier.h"

#include "Core/ErrorMessage.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyDestination.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/CopyProofs.h"
#include "Tools/FastCopy/CopyRun.h"
#include "Tools/FastCopy/CopySources.h"
#include "Tools/FastCopy/CopyVerification.h"
#include "Tools/FastCopy/LargeFile.h"
#include "Tools/FastCopy/SmallFiles.h"
#include "Tools/FastCopy/TakenUp.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <thread>

namespace vh::copy {

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

/// How often a copy that waits for paused destinations looks again.
constexpr milliseconds whilePaused{200};

std::string realPath(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    return error ? path : real.string();
}

enum class Missing { refused, made };

void refuseWhatCannotBegin(const std::vector<std::string>& sources,
                           const std::vector<std::string>& destinations, Missing missing) {
    for (const std::string& destination : destinations) {
        std::error_code error;
        if (!fs::is_directory(destination, error) && missing == Missing::refused)
            throw CopyError::destinationMissing(destination);
        for (const std::string& source : sources) {
            const bool isFolder = fs::is_directory(source, error);
            // Written so, or reached through a link.
            if (isFolder &&
                (isAtOrBelow(destination, source) || isAtOrBelow(realPath(destination), realPath(source))))
                throw CopyError::destinationInsideSource(destination);
        }
    }
}

void makeMissing(const std::vector<std::string>& destinations) {
    for (const std::string& destination : destinations) {
        std::error_code error;
        fs::create_directories(destination, error);
        if (error)
            throw CopyError::io(SystemError(error.value(), destination));
    }
}

/// Two of these would have one name in a destination.
bool haveOneName(const CopyItems& found) {
    std::set<std::string> names;
    return std::ranges::any_of(found.sources, [&](const CopyItems::Source& each) {
        return !names.insert(found.items[each.item].name).second;
    });
}

/// One copy from its first item to its last.
class Copying {
public:
    Copying(CopyRun& run, CopyLanes& lanes, CopyProofs* proofs)
        : run_(run), lanes_(lanes),
          sources_(run.found(), run.options().keepsMetadata() ? SourceFile::Attributes::read
                                                              : SourceFile::Attributes::left),
          small_(run, sources_, destinations_, lanes), large_(run, sources_, destinations_, lanes) {
        const bool mayMeet = haveOneName(run.found());
        for (size_t each = 0; each < run.destinations().size(); ++each)
            destinations_.push_back(std::make_unique<CopyDestination>(run, each, proofs, mayMeet));
        if (proofs && !proofs->isEmpty())
            takenUp_.emplace(run, *proofs);
    }

    void copyAll() {
        for (size_t item = 0; item < run_.items().size() && !run_.isStopped(); ++item)
            process(item, run_.takersOf(item));
        small_.finish();
        copyDeferred();
        if (run_.options().keepsMetadata())
            finishFolders();
        for (size_t each = 0; each < destinations_.size(); ++each)
            if (!run_.control().isRemoved(each) && !destinations_[each]->isStillThere())
                run_.addProblem(each,
                                atPath(run_.destinations()[each], {"fast-copy.problem.folder-gone", {}}));
    }

private:
    void process(size_t item, std::vector<size_t> takers) {
        const CopyItem& each = run_.items()[item];
        if (takenUp_ && each.kind == CopyItem::Kind::file)
            std::erase_if(takers, [&](size_t taker) { return takenUp_->takeUp(item, taker); });
        if (takers.empty())
            return;
        if (each.isFolder() || each.size <= SmallFiles::largest)
            return small_.add(item, takers);
        small_.finish();
        large_.copy(item, takers);
    }

    void copyDeferred() {
        while (!run_.isStopped()) {
            const CopyRun::Turn turn = run_.nextDeferred();
            if (!turn.takers.empty()) {
                process(turn.item, turn.takers);
                continue;
            }
            small_.finish();
            if (!run_.hasDeferred())
                return;
            run_.emit(CopyRun::Emit::forced, {});
            std::this_thread::sleep_for(whilePaused);
        }
        small_.finish();
    }

    /// What lands in a folder changes its times, so it gets its own when all is there, or when nothing more comes.
    void finishFolders() {
        std::vector<size_t> all;
        for (size_t each = 0; each < destinations_.size(); ++each)
            if (!run_.control().isRemoved(each))
                all.push_back(each);
        std::vector<Messages> problems(destinations_.size());
        lanes_.run(all, [&](size_t destination) {
            for (size_t item = run_.items().size(); item-- > 0;)
                if (run_.items()[item].isFolder())
                    finishFolder(item, destination, problems[destination]);
        });
        for (const size_t each : all)
            for (const Message& problem : problems[each])
                run_.addProblem(each, problem);
    }

    void finishFolder(size_t item, size_t destination, Messages& problems) {
        const std::string relative = run_.relativeOf(item);
        const auto problem = destinations_[destination]->finishFolder(relative, run_.found().pathOf(item));
        if (problem && !run_.isStopped()) // a stopped copy has not made all folders
            problems.push_back(atPath(relative, *problem));
    }

    CopyRun& run_;
    CopyLanes& lanes_;
    CopySources sources_;
    std::vector<std::unique_ptr<CopyDestination>> destinations_;
    SmallFiles small_;
    LargeFiles large_;
    std::optional<TakenUp> takenUp_;
};

/// What hashes may be missing: better known before the first byte.
void refuseWithoutHash(const CopyOptions& options) {
    try {
        if (options.verifies())
            ContentHash{options.algorithm};
    } catch (const std::runtime_error& error) {
        throw CopyError::io(error);
    }
}

} // namespace

CopyPlan FastCopier::plan(const std::vector<std::string>& sources, CopyLinks links,
                          const CancelToken& cancel) {
    return planOf(itemsOf(sources, links, cancel).items);
}

CopyReport FastCopier::copy(const std::vector<std::string>& sources,
                            const std::vector<std::string>& destinations, const CopyOptions& options,
                            const std::function<void(const CopyProgress&)>& progress,
                            const CancelToken& beforeBeginning, CopyProofs* proofs) {
    refuseWhatCannotBegin(sources, destinations,
                          options.createDestinations ? Missing::made : Missing::refused);
    refuseWithoutHash(options);
    if (!options.verifies())
        proofs = nullptr;
    CopyItems found = itemsOf(sources, options.links, beforeBeginning);
    if (options.createDestinations)
        makeMissing(destinations);
    CopyRun run(std::move(found), destinations, options, *control_, progress);
    CopyLanes lanes(destinations.size() + 1, threads_); // one more for hashing the source
    Copying(run, lanes, proofs).copyAll();
    if (options.verifies() && !run.isStopped())
        verify(run, lanes, proofs);
    run.emit(CopyRun::Emit::forced, {});
    if (proofs && !run.isStopped())
        proofs->forget();
    return run.finish();
}

} // namespace vh::copy
