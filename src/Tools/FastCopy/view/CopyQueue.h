#pragma once

#include "Tools/FastCopy/CopyJob.h"
#include "Tools/FastCopy/CopyWork.h"
#include "Tools/FastCopy/work/DiskCopy.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <vector>

namespace vh {
struct DiskFacts;
class Texts;
} // namespace vh

namespace vh::app {

class AppContext;

/// What copying needs of its surroundings. All of it blocks and is called off the main thread.
struct CopyDependencies {
    using Control = std::shared_ptr<copy::CopyControl>;
    std::function<copy::CopyResult(const copy::CopyRequest&, const Texts&, const Control&,
                                   const std::function<void(const copy::CopyProgress&)>&, const CancelToken&)>
        copyFiles;
    std::function<automation::DiskCopyResult(const automation::DiskCopyRequest&, const Texts&, const Control&,
                                             const std::function<void(const automation::DiskCopyProgress&)>&,
                                             const CancelToken&)>
        copyDisk;
    std::function<std::vector<DiskFacts>()> disks;
    /// Why no disk can be read here, for people; empty when one can.
    std::function<std::string(const Texts&)> diskBlocker;

    /// That of this machine; the context outlives it.
    static CopyDependencies of(AppContext& context);
};

/// The copies of this window: those that wait, run, and are over. Each that runs has a thread of its own; how far it is
/// comes back a few times a second. Main thread. Going, it stops all that runs and waits for its end.
class CopyQueue : public QObject {
    Q_OBJECT
public:
    CopyQueue(AppContext& context, CopyDependencies dependencies);
    ~CopyQueue() override;

    const std::vector<copy::CopyJob>& jobs() const { return jobs_; }
    const copy::CopyJob* job(const Uuid& id) const;
    bool isActive() const; ///< one runs or waits

    void setRunTogether(bool together);
    /// Its identifier and number are given here.
    void enqueue(copy::CopyJob job);
    void togglePause(const Uuid& id, size_t destination);
    /// Takes a destination out for good; without any left the job is stopped.
    void remove(const Uuid& id, size_t destination);
    /// One that waits is taken off the list, one that runs is asked to stop.
    void stop(const Uuid& id);
    /// One that is over or waits.
    void takeOff(const Uuid& id);
    void clearFinished();

signals:
    void changed();
    /// One is over: by its end, not by being taken off.
    void ended(const copy::CopyJob& job);

private:
    struct Work;
    copy::CopyJob* find(const Uuid& id);
    void pump();
    void start(copy::CopyJob& job);
    void startFiles(copy::CopyJob& job, Work& work);
    void startDisk(copy::CopyJob& job, Work& work);
    void measure(const copy::CopyJob& job, Work& work);
    void finishFiles(const Uuid& id, std::future<copy::CopyResult> result);
    void finishDisk(const Uuid& id, std::future<automation::DiskCopyResult> result);
    void conclude(copy::CopyJob& job);
    void collect();

    AppContext& context_;
    const CopyDependencies dependencies_;
    bool together_ = false;
    int lastNumber_ = 0;
    std::vector<copy::CopyJob> jobs_;
    QTimer collecting_;
    std::map<Uuid, std::unique_ptr<Work>> works_; ///< of those that are not over
};

} // namespace vh::app
