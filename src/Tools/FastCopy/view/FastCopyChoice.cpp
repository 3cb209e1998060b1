// What is chosen, as the view shows it, and what is wrong with it.

#include "Core/Printable.h"
#include "Tools/FastCopy/view/FastCopyViewModel.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"

#include <algorithm>
#include <utility>

namespace vh::app {

namespace {

const QString separator = QStringLiteral(" · ");

/// "sdb · 64 GB", or the size alone where the disk has no other name.
QString diskText(const AppTexts& texts, const std::string& bsdName, const std::string& name, int64_t bytes) {
    const QString size = texts.sizeText(bytes);
    return bsdName == name ? size : qtText(printable(bsdName)) + separator + size;
}

} // namespace

std::vector<std::string> FastCopyViewModel::sourcePaths() const {
    std::vector<std::string> paths;
    for (const copy::CopySource& each : sources_)
        if (const auto* path = std::get_if<std::string>(&each))
            paths.push_back(*path);
    return paths;
}

std::vector<std::string> FastCopyViewModel::realSourcePaths() const {
    std::vector<std::string> paths = sourcePaths();
    for (std::string& each : paths)
        each = realPath(each);
    return paths;
}

std::string FastCopyViewModel::realPath(const std::string& path) const {
    const PlaceFacts* const facts = places_.at(path);
    return facts && facts->exists ? facts->realPath : path;
}

const copy::RescueDisk* FastCopyViewModel::disk() const {
    for (const copy::CopySource& each : sources_)
        if (const auto* found = std::get_if<copy::RescueDisk>(&each))
            return found;
    return nullptr;
}

QString FastCopyViewModel::faultOfSource(size_t row) const {
    const auto* path = std::get_if<std::string>(&sources_[row]);
    if (!path)
        return sources_.size() > 1 ? context_.texts().text("copy-page.fault.disk-alone") : QString();
    const PlaceFacts* const facts = places_.at(*path);
    return facts && !facts->exists ? context_.texts().text("copy-page.fault.gone") : QString();
}

QString FastCopyViewModel::faultOfDestination(size_t row) const {
    const AppTexts& texts = context_.texts();
    const PlaceFacts* const facts = places_.at(destinations_[row]);
    if (facts && !facts->exists)
        return texts.text("copy-page.fault.gone");
    if (facts && !facts->isFolder)
        return texts.text("copy-page.fault.no-folder");
    if (facts && !facts->isWritable)
        return texts.text("copy-page.fault.read-only");
    const std::string real = realPath(destinations_[row]);
    for (size_t other = 0; other < row; ++other)
        if (realPath(destinations_[other]) == real)
            return texts.text("copy-page.fault.same");
    switch (copy::faultOf(real, realSourcePaths())) {
    case copy::PlaceFault::insideSource:
        return texts.text("copy-page.fault.inside");
    case copy::PlaceFault::holdsSource:
        return options_.conflict == copy::CopyConflict::rename ? QString()
                                                               : texts.text("copy-page.fault.holds");
    default:
        return {};
    }
}

std::optional<FastCopyViewModel::Need> FastCopyViewModel::needOf(size_t destination) const {
    if (!plan_ || sources_.empty())
        return std::nullopt;
    Need need{plan_->bytes, plan_->bytes};
    const PlaceFacts* const facts = places_.at(destinations_[destination]);
    if (!facts)
        return need;
    need.together = 0;
    for (const std::string& each : destinations_)
        if (const PlaceFacts* const other = places_.at(each); other && other->device == facts->device)
            need.together += plan_->bytes;
    return need;
}

QVariantMap FastCopyViewModel::destinationRow(size_t row) const {
    const AppTexts& texts = context_.texts();
    const PlaceFacts* const facts = places_.at(destinations_[row]);
    const auto need = needOf(row);
    const bool isKnown = facts && facts->free && facts->total;
    const bool isTight = isKnown && need && need->together > *facts->free;
    const auto size = [&](int64_t bytes) {
        return texts.sizeText(bytes).toStdString();
    };
    QString text;
    if (!facts)
        text = texts.text("copy-page.looking");
    else if (facts->exists && !isKnown)
        text = texts.text("copy-page.free.unknown");
    else if (isTight)
        text = texts.text("copy-page.free.tight",
                          {{"need", size(need->together)}, {"free", size(*facts->free)}});
    else if (isKnown)
        text = need ? texts.text("copy-page.free.need",
                                 {{"need", size(need->bytes)}, {"free", size(*facts->free)}})
                    : texts.text("copy-page.free", {{"free", size(*facts->free)}});
    const auto share = [&](int64_t bytes) {
        return isKnown ? std::clamp(double(bytes) / double(*facts->total), 0.0, 1.0) : -1.0;
    };
    const CopyWords words(context_);
    return {{QStringLiteral("name"), words.placeName(destinations_[row])},
            {QStringLiteral("path"), words.placePath(destinations_[row])},
            {QStringLiteral("text"), text},
            {QStringLiteral("fault"), faultOfDestination(row)},
            {QStringLiteral("isMissing"), facts && !facts->exists},
            {QStringLiteral("isTight"), isTight},
            {QStringLiteral("used"), isKnown ? share(*facts->total - *facts->free) : -1.0},
            {QStringLiteral("need"), need ? share(need->together) : 0.0}};
}

QVariantMap FastCopyViewModel::sourceRow(size_t row) const {
    const CopyWords words(context_);
    const auto* path = std::get_if<std::string>(&sources_[row]);
    const auto* whole = std::get_if<copy::RescueDisk>(&sources_[row]);
    const PlaceFacts* const facts = path ? places_.at(*path) : nullptr;
    return {
        {QStringLiteral("name"), words.sourceName(sources_[row])},
        {QStringLiteral("path"), path ? words.placePath(*path)
                                      : diskText(context_.texts(), whole->bsdName, whole->name, whole->size)},
        {QStringLiteral("icon"), whole                       ? QStringLiteral("externaldrive")
                                 : facts && !facts->isFolder ? QStringLiteral("doc")
                                                             : QStringLiteral("folder")},
        {QStringLiteral("isDisk"), whole != nullptr},
        {QStringLiteral("fault"), faultOfSource(row)},
    };
}

void FastCopyViewModel::tellChosen() {
    QVariantList from, to;
    for (size_t row = 0; row < sources_.size(); ++row)
        from << sourceRow(row);
    for (size_t row = 0; row < destinations_.size(); ++row)
        to << destinationRow(row);
    if (from != std::exchange(sourceRows_, from))
        emit sourcesChanged();
    if (to != std::exchange(destinationRows_, to))
        emit destinationsChanged();
    emit chosenChanged();
}

QString FastCopyViewModel::planText() const {
    if (sources_.empty())
        return {};
    if (!plan_)
        return planning_.isBusy() ? context_.texts().text("copy-page.measuring") : QString();
    return CopyWords(context_).amount(hasDisk() ? std::nullopt : std::optional(plan_->fileCount),
                                      plan_->bytes);
}

QString FastCopyViewModel::largestText() const {
    if (!plan_ || hasDisk() || plan_->fileCount == 0)
        return {};
    const AppTexts& texts = context_.texts();
    return texts.text("copy-page.largest", {{"folders", plan_->folderCount},
                                            {"size", texts.sizeText(plan_->largestFile).toStdString()}});
}

QString FastCopyViewModel::blocker() const {
    const AppTexts& texts = context_.texts();
    if (sources_.empty())
        return destinations_.empty() ? QString() : texts.text("copy-page.blocker.sources");
    if (destinations_.empty())
        return texts.text("copy-page.blocker.destinations");
    const CopyWords words(context_);
    const auto about = [&](const QString& name, const QString& fault) {
        return texts.text("copy-page.blocker.fault",
                          {{"name", name.toStdString()}, {"fault", fault.toStdString()}});
    };
    for (size_t row = 0; row < sources_.size(); ++row)
        if (const QString fault = faultOfSource(row); !fault.isEmpty())
            return about(words.sourceName(sources_[row]), fault);
    for (size_t row = 0; row < destinations_.size(); ++row)
        if (const QString fault = faultOfDestination(row); !fault.isEmpty())
            return about(words.placeName(destinations_[row]), fault);
    return lacksHelper() ? qtText(printable(diskBlocker_)) : QString();
}

QVariantList FastCopyViewModel::disks() const {
    const AppTexts& texts = context_.texts();
    const auto detailOf = [&](const DiskFacts& disk) {
        const QString text = diskText(texts, disk.bsdName, disk.name, disk.bytes);
        return disk.holdsSystem || disk.mountPoints.empty()
                   ? text // where it is seen is what it is known by
                   : text + separator + CopyWords(context_).placePath(disk.mountPoints.front());
    };
    QVariantList list;
    for (const DiskFacts& each : disks_)
        list << QVariantMap{
            {QStringLiteral("value"), qtText(printable(each.bsdName))},
            {QStringLiteral("title"), qtText(printable(each.name))},
            {QStringLiteral("detail"), detailOf(each)},
            {QStringLiteral("fault"),
             each.holdsSystem ? texts.text("copy-page.fault.system-disk") : QString()},
        };
    return list;
}

} // namespace vh::app
