#pragma once

#include "Core/Texts.h"
#include "Tools/FastCopy/CopyJob.h"
#include "app/RecordListModel.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <span>

namespace vh::app {

class AppContext;

/// One job of the copy queue as a view shows it.
struct CopyJobRow {
    QString id;
    QString title;  ///< what goes where, in a few words
    QString from;   ///< of that, what
    QString detail; ///< how much it is, and how it is copied
    QString icon;
    QString state; ///< a CopyJob::State by its name
    QString stateTitle;
    QString outcome; ///< of one that is over, as colours and shapes go by; else empty
    bool isActive = false;
    bool isOver = false;
    bool isStopping = false;
    QString rateText;
    QString leftText;
    QString currentFile;
    QString line; ///< what became of it
    /// {index, name, path, state, stateTitle, fraction, text}: `state` is "waits", "runs", "paused", "verifies", "full",
    /// "good", "faulty" or "ended"; those that were removed are not among them.
    QVariantList lanes;

    bool operator==(const CopyJobRow&) const = default;
    const QString& key() const { return id; }
    static std::span<const RecordListModel<CopyJobRow>::Role> roles();
};

/// Copies in words. Cheap to make.
class CopyWords {
public:
    explicit CopyWords(AppContext& context) : context_(context) {}

    /// "Day 12 → 3 places"
    QString jobTitle(const copy::CopyJob& job) const;
    QString sourceName(const copy::CopySource& source) const;
    QString placeName(const std::string& path) const;
    QString placePath(const std::string& path) const;
    /// "1,204 files · 12.4 GB"
    QString amount(std::optional<int64_t> files, int64_t bytes) const;
    CopyJobRow row(const copy::CopyJob& job) const;

    /// What has to be said before what became of it; empty where all is well.
    QString headline(const copy::CopyJob& job) const;
    QString endLine(const copy::CopyJob& job) const;
    /// What is said in passing when nothing runs any more.
    QString toast(const copy::CopyJob& job) const;
    QString outcomeOf(const copy::CopyJob& job) const;

private:
    QString text(std::string_view key, const std::vector<TextArgument>& arguments = {}) const;
    QString namesOf(const copy::CopyJob& job) const;
    QString detail(const copy::CopyJob& job) const;
    QString stateTitle(const copy::CopyJob& job) const;
    QVariantMap lane(const copy::CopyJob& job, size_t index) const;
    QString laneState(const copy::CopyJob& job, size_t index) const;
    QString laneText(const copy::CopyJob& job, size_t index, const QString& state) const;

    AppContext& context_;
};

} // namespace vh::app
