#include "Tools/FolderSync/SyncEngine.h"

#include "Core/ErrorMessage.h"
#include "Platform/FileIdentity.h"
#include "Platform/PathParts.h"
#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"
#include "Tools/FolderSync/SyncApply.h"
#include "Tools/FolderSync/SyncNames.h"

#include <algorithm>
#include <filesystem>
#include <future>

namespace vh::sync {

namespace {

using Item = SyncIndex::Item;
using Kind = SyncAction::Kind;

constexpr auto closeDates = std::chrono::seconds(2);

bool isClose(Date one, Date other) {
    return std::chrono::abs(one - other) < closeDates;
}

/// One comparison of two indexes.
class Comparison {
public:
    Comparison(const SyncIndex& source, bool deletes, const SyncEngine::SameContents& sameContents)
        : source_(source), deletes_(deletes), sameContents_(sameContents) {}

    SyncPlan of(const SyncIndex& destination) {
        auto there = destination.items().begin();
        const auto end = destination.items().end();
        for (const Item& item : source_.items()) {
            for (; there != end && SyncIndex::comesBefore(there->relative, item.relative); ++there)
                addExtraneous(*there);
            const bool isThere = there != end && there->relative == item.relative;
            add(item, isThere ? &*there++ : nullptr);
        }
        for (; there != end; ++there)
            addExtraneous(*there);
        std::ranges::sort(plan_.actions, {}, &SyncAction::relativePath);
        std::ranges::sort(removals_, {}, &SyncAction::relativePath);
        std::ranges::move(removals_, std::back_inserter(plan_.actions));
        for (const SyncIndex::Unreadable& each : source_.unreadable())
            plan_.unreadable.push_back(atPath(each.relative, each.reason));
        if (source_.leftOut() != SyncLeftOut())
            plan_.leftOut = source_.leftOut();
        return std::move(plan_);
    }

private:
    void add(const Item& item, const Item* there) {
        if (item.type == SyncIndex::Type::folder) {
            if (!there)
                act(Kind::mkdir, item, 0);
            else if (there->type == SyncIndex::Type::folder && !isClose(item.modified, there->modified))
                plan_.folders.emplace_back(item.relative);
        } else if (!there || there->type == SyncIndex::Type::folder) {
            act(Kind::copy, item, item.size);
        } else if (isSame(item, *there)) {
            ++plan_.unchanged;
        } else {
            act(Kind::update, item, item.size);
        }
    }

    bool isSame(const Item& item, const Item& there) const {
        if (item.type != there.type)
            return false;
        if (item.type == SyncIndex::Type::link)
            return item.link == there.link;
        if (item.size != there.size)
            return false;
        if (isClose(item.modified, there.modified))
            return true;
        return sameContents_ && sameContents_(item.relative);
    }

    void act(Kind kind, const Item& item, int64_t bytes) {
        plan_.actions.push_back({kind, std::string(item.relative), bytes});
    }

    void addExtraneous(const Item& there) {
        if (!deletes_ || (!removals_.empty() && isBelow(there.relative, removals_.back().relativePath)) ||
            isUnknown(there.relative))
            return;
        removals_.push_back({Kind::remove, std::string(there.relative), there.size});
    }

    /// Whether the source may hold it unseen.
    bool isUnknown(std::string_view relative) const {
        return std::ranges::any_of(source_.unreadable(), [&](const SyncIndex::Unreadable& each) {
            return relative == each.relative || isBelow(relative, each.relative);
        });
    }

    const SyncIndex& source_;
    const bool deletes_;
    const SyncEngine::SameContents& sameContents_;
    SyncPlan plan_;
    std::vector<SyncAction> removals_;
};

std::string realPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

void refuseMissing(const std::string& folder) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw SyncError::missing(folder);
}

/// With a slash at its end.
std::string rootOf(const std::string& folder) {
    std::string path = realPath(folder);
    return path.ends_with('/') ? path : path + '/';
}

SyncPlan::Roots rootsAt(const std::string& source, const std::string& destination) {
    return {identityOf(source + "/."), identityOf(destination + "/.")};
}

/// Throws SystemError when other folders than those of the plan lie there by now, as after a disk was taken away.
void refuseOthers(const SyncPlan& plan, const std::string& source, const std::string& destination) {
    if (!plan.roots)
        return;
    const SyncPlan::Roots now = rootsAt(source, destination);
    if (now != *plan.roots)
        throw SystemError(now.source != plan.roots->source ? source : destination,
                          "another folder than the one that was compared lies there now");
}

} // namespace

SyncPlan SyncEngine::plan(const SyncIndex& source, const SyncIndex& destination, bool deleteExtraneous,
                          const SameContents& sameContents) {
    return Comparison(source, deleteExtraneous, sameContents).of(destination);
}

void SyncEngine::check(const SyncPair& pair) {
    refuseMissing(pair.source);
    refuseMissing(pair.destination);
    const std::string source = rootOf(pair.source), destination = rootOf(pair.destination);
    if (source.starts_with(destination) || destination.starts_with(source) ||
        identityOf(source) == identityOf(destination)) // by another mount of it
        throw SyncError::nested();
}

SyncPlan SyncEngine::plan(const SyncPair& pair, const CancelToken& cancel) {
    check(pair);
    const std::string source = rootOf(pair.source), destination = rootOf(pair.destination);
    const SyncPlan::Roots roots = rootsAt(source, destination);
    auto theirs = std::async(std::launch::async, indexOf, std::cref(destination), std::cref(cancel));
    SyncIndex ours = indexOf(source, cancel);
    SyncIndex there = theirs.get();
    if (isCaseBlind(destination, there))
        matchCaseBlind(ours, there);
    SameContents sameContents;
    if (pair.compareContents)
        sameContents = [&](std::string_view relative) {
            cancel.throwIfCancelled();
            return fileEqual(source + std::string(relative), destination + std::string(relative));
        };
    SyncPlan plan = SyncEngine::plan(ours, there, pair.deleteExtraneous, sameContents);
    plan.roots = roots;
    refuseOthers(plan, source, destination); // what a disk leaves behind that goes meanwhile is empty
    return plan;
}

SyncResult SyncEngine::apply(const SyncPlan& plan, const SyncPair& pair, const Steering& steering) {
    const std::string source = realPath(pair.source), destination = realPath(pair.destination);
    SyncApply work(source, destination, steering);
    refuseOthers(plan, source, destination);
    return work.run(plan);
}

bool SyncEngine::fileEqual(const std::string& one, const std::string& other) {
    constexpr size_t blockBytes = 1u << 20;
    try {
        const SourceFile first(one, SourceFile::Attributes::left);
        const SourceFile second(other, SourceFile::Attributes::left);
        std::string mine(blockBytes, '\0'), theirs(blockBytes, '\0');
        for (int64_t offset = 0;; offset += blockBytes) {
            const std::string_view here(mine.data(), first.readAt(offset, mine));
            const std::string_view there(theirs.data(), second.readAt(offset, theirs));
            if (here != there)
                return false;
            if (here.size() < blockBytes)
                return true;
        }
    } catch (const SystemError&) {
        return false;
    }
}

} // namespace vh::sync
