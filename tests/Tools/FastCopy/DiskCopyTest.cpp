#include "Tools/FastCopy/work/DiskCopy.h"

#include "HelperKit/HelperClient.h"
#include "Platform/Files.h"
#include "support/FakeRootService.h"
#include "support/LoopDisk.h"
#include "support/SmallDisk.h"
#include "support/TestDependencies.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace vh::automation {
namespace {

namespace fs = std::filesystem;
using copy::CopyControl;
using helper::DeviceJobPhase;
using helper::DeviceJobStatus;
using helper::HelperClientError;
using testing::HasSubstr;
using vh::test::LoopDisk;
using End = DiskCopyResult::End;

constexpr int64_t bytes = 3 << 20;

/// A stick that a made-up helper images; a test says how.
class DiskCopy : public testing::Test {
protected:
    DiskCopy() {
        for (const char* name : {"/one", "/two", "/three"}) {
            fs::create_directories(dependencies.folders.home + name);
            request.destinations.push_back(dependencies.folders.home + name);
        }
    }
    /// A helper that makes the image at once, and tells it in these steps.
    DeviceJobs helper(std::vector<DeviceJobStatus> steps) {
        DeviceJobs jobs;
        jobs.blocker = [](const Texts&) {
            return std::string();
        };
        jobs.start = [this](const helper::DeviceJobSpec& spec) {
            EXPECT_EQ(spec.device, "/dev/sdx");
            started = spec.destination;
            writeFileAtomically(started, std::string(bytes, 'd'));
            return std::string("job");
        };
        jobs.status = [this, steps](const std::string&) {
            return steps.at(std::min(polls++, steps.size() - 1));
        };
        jobs.cancel = [this](const std::string&) {
            return ++cancelled > 0;
        };
        jobs.disks = [this] {
            return std::vector{disk};
        };
        jobs.unmount = [](const DiskFacts&) {
        };
        jobs.interval = {};
        return jobs;
    }
    static DeviceJobStatus step(DeviceJobPhase phase) {
        DeviceJobStatus status{phase, bytes, bytes, 0, {}, {}, {}};
        if (phase == DeviceJobPhase::done)
            status.sha256 = sum;
        return status;
    }
    DeviceJobs goodHelper() { return helper({step(DeviceJobPhase::copying), step(DeviceJobPhase::done)}); }
    DiskCopyResult run(const DeviceJobs& jobs,
                       const std::function<void(const DiskCopyProgress&)>& progress = {}) {
        request.disk = sourceOf(disk);
        return runDiskCopy(request, jobs, dependencies.folders,
                           {dependencies.log, dependencies.files, dependencies.journals}, Texts(Language::en),
                           control, progress);
    }

    inline static const std::string sum = "3d8cd4ef3ac5ba0d6b8d6dcf55bd0a38ccd5c87c4cf08a2a0ab5a6a1f0d5e4f1";
    vh::test::TempDir folder;
    test::TestDependencies dependencies{folder.path()};
    DiskFacts disk{"sdx", "/dev/sdx", "Fast Stick/2", bytes};
    DiskCopyRequest request;
    std::shared_ptr<CopyControl> control = std::make_shared<CopyControl>();
    std::string started;
    size_t polls = 0;
    int cancelled = 0;
};

TEST_F(DiskCopy, EndsAsAnImageWithItsHashInEveryPlaceAndOneRecord) {
    request.options.verify = true;
    std::vector<bool> phases;
    const DiskCopyResult result = run(goodHelper(), [&](const DiskCopyProgress& progress) {
        if (phases.empty() || phases.back() != progress.further.has_value())
            phases.push_back(progress.further.has_value());
    });
    const std::string name =
        imageNameOf(request.disk, dependencies.log.now(), LocalCalendar()); // as the wall shows it here
    EXPECT_EQ(imageNameOf(request.disk, dependencies.log.now(), LocalCalendar("UTC")),
              "Fast-Stick-2-20260301-1200.img");
    ASSERT_EQ(result.end, End::imaged) << result.message;
    EXPECT_EQ(result.message, "The image of Fast Stick/2 is complete.");
    EXPECT_EQ(result.imagePath, fs::canonical(request.destinations[0]) / name);
    EXPECT_EQ(phases, (std::vector{false, true}));
    for (const std::string& place : request.destinations) {
        EXPECT_EQ(readFile(place + "/" + name), std::string(bytes, 'd'));
        EXPECT_EQ(readFile(place + "/" + name + ".sha256"), sum + "  " + name + "\n");
    }
    EXPECT_EQ(result.further->totalVerified(), 4);
    const RunRecord& record = result.record;
    EXPECT_EQ(dependencies.log.all(), std::vector{record});
    EXPECT_EQ(record.outcome, Outcome::success);
    EXPECT_EQ(record.metric(RunMetric::bytesImaged), bytes);
    EXPECT_EQ(record.metric(RunMetric::badBlocks), 0);
    EXPECT_THAT(record.summary, HasSubstr("its SHA-256 beside it. 4 files copied to 2 places"));
    const auto rows = dependencies.files.rows(record.id);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0], (RunFileRow{"/dev/sdx", result.imagePath, bytes, "copied", sum}));
}

TEST_F(DiskCopy, SaysWhatIsNotWhole) {
    auto holes = step(DeviceJobPhase::done);
    holes.badBlocks = 2;
    DeviceJobs jobs = helper({holes});
    const auto start = jobs.start;
    jobs.start = [start](const helper::DeviceJobSpec& spec) {
        fs::create_directories(spec.destination + ".sha256/in-the-way");
        return start(spec);
    };
    const DiskCopyResult result = run(jobs);
    EXPECT_EQ(result.end, End::imaged);
    EXPECT_EQ(result.badBlocks, 2);
    EXPECT_EQ(result.message,
              "2 blocks of Fast Stick/2 could not be read; zeros stand for them in the image.");
    EXPECT_THAT(result.sidecarFailure, HasSubstr("The image is there, but its hash could not be written"));
    EXPECT_EQ(result.record.outcome, Outcome::warning);
    EXPECT_THAT(result.record.summary, HasSubstr("without its SHA-256 beside it. 2 blocks"));
    EXPECT_EQ(result.further->totalWritten(), 3) << "the image in three places";
}

TEST_F(DiskCopy, SaysBeforeItBeginsWhatKeepsItFromBeginning) {
    const std::string home = dependencies.folders.home;
    const vh::test::TmpfsMount small(1 << 20);
    ASSERT_TRUE(small) << "needs the right to mount";
    struct Case {
        const char* name;
        std::function<void(DiskFacts&, DiskCopyRequest&)> change;
        std::string message;
    };
    const Case cases[]{
        {"gone", [](auto& now, auto&) { now.bsdName = "sdy"; }, "Fast Stick/2 is no longer connected."},
        {"system", [](auto& now, auto&) { now.holdsSystem = true; }, "holds the running system"},
        {"built upon",
         [](auto& now, auto&) {
             now.users = {"dm-0", "swap"};
         },
         "in use by dm-0, swap"},
        {"mounted",
         [](auto& now, auto&) {
             now.isMounted = true;
             now.mountPoints = {"/media/x"};
         },
         "is mounted at /media/x"},
        {"onto itself",
         [&](auto& now, auto& asked) {
             now.isMounted = true;
             now.mountPoints = {small.path()};
             asked.unmount = true;
             asked.destinations.push_back(small.path());
         },
         "Choose a folder on another disk."},
        {"nowhere", [&](auto&, auto& asked) { asked.destinations[1] = home + "/none"; },
         "Destination folder not found: " + home + "/none"},
        {"not allowed", [](auto&, auto& asked) { asked.destinations[0] = "/etc"; },
         "An image is written only to home folders, mounted disks and temporary folders, not to /etc."},
        {"small", [](auto& now, auto&) { now.bytes = int64_t{1} << 60; }, "and 1.2 EB are needed."},
    };
    for (const Case& each : cases) {
        DiskFacts now = disk;
        DiskCopyRequest asked = request;
        asked.disk = sourceOf(disk);
        each.change(now, asked);
        DeviceJobs jobs = goodHelper();
        jobs.disks = [&] {
            return std::vector{now};
        };
        const auto result = runDiskCopy(asked, jobs, dependencies.folders,
                                        {dependencies.log, dependencies.files, dependencies.journals},
                                        Texts(Language::en), control);
        EXPECT_EQ(result.end, End::failed) << each.name;
        EXPECT_THAT(result.message, HasSubstr(each.message)) << each.name;
        EXPECT_EQ(result.record.outcome, Outcome::failed) << each.name;
        EXPECT_EQ(started, "") << each.name;
    }
    EXPECT_EQ(run(goodHelper()).end, End::imaged);
    EXPECT_THAT(run(goodHelper()).message, HasSubstr("exists already. Nothing was replaced."));
}

TEST_F(DiskCopy, WithoutAHelperItSaysWhatToDo) {
    vh::test::FakeRootService service;
    const auto registration = std::make_shared<vh::test::FakeRegistration>();
    registration->now = HelperRegistrationStatus::notRegistered;
    helper::HelperClient client({[&] { return service.open(); }, registration, dependencies.defaults, "1",
                                 std::chrono::milliseconds(0)});
    DeviceJobs jobs = DeviceJobs::throughHelper(client);
    jobs.disks = [this] {
        return std::vector{disk};
    };
    EXPECT_THAT(run(jobs).message, HasSubstr("varnholt helper register"));
    // What the helper says no to reaches the person in its words; one that is anew knows no job.
    registration->now = HelperRegistrationStatus::enabled;
    jobs.interval = {};
    const auto refusal = [](const char* text) {
        return vh::test::FakeRootService::reply(ServiceRefusal{"badJobSpec", text});
    };
    service.on("StartDeviceJob", refusal("Bad device job: no"));
    EXPECT_EQ(run(jobs).message, "Bad device job: no");
    jobs.start = [this](const helper::DeviceJobSpec& spec) {
        started = spec.destination;
        writeFileAtomically(started + ".varnholt-partial", "half");
        return std::string("job");
    };
    service.on("DeviceJobStatus", refusal("Unknown job: job"));
    EXPECT_THAT(run(jobs).message, HasSubstr("was restarted"));
    EXPECT_TRUE(fs::is_empty(request.destinations[0]));
}

TEST_F(DiskCopy, StoppedItEndsTheJobAndCopiesNothingOn) {
    for (const bool byRemoval : {false, true}) {
        control = std::make_shared<CopyControl>();
        cancelled = 0;
        DeviceJobs jobs = helper({});
        jobs.status = [&](const std::string&) {
            return step(cancelled > 0 ? DeviceJobPhase::cancelled : DeviceJobPhase::copying);
        };
        const auto start = jobs.start;
        jobs.start = [&](const helper::DeviceJobSpec& spec) {
            start(spec);
            fs::remove(spec.destination); // it is not there before it is whole
            return std::string("job");
        };
        const DiskCopyResult result =
            run(jobs, [&](const auto&) { byRemoval ? control->remove(0) : control->cancel(); });
        EXPECT_EQ(cancelled, 1);
        EXPECT_EQ(result.end, End::stopped);
        EXPECT_EQ(result.record.outcome, Outcome::cancelled);
        EXPECT_EQ(result.record.summary, "Stopped. The unfinished image was removed.");
        for (const std::string& place : request.destinations)
            EXPECT_TRUE(fs::is_empty(place)) << place;
    }
}

TEST_F(DiskCopy, GoesToTheFirstPlaceThatIsLeft) {
    control->remove(0);
    const DiskCopyResult result = run(goodHelper());
    EXPECT_EQ(result.end, End::imaged) << result.message;
    EXPECT_EQ(fs::path(result.imagePath).parent_path(), fs::canonical(request.destinations[1]));
    EXPECT_TRUE(fs::is_empty(request.destinations[0]));
    EXPECT_TRUE(fs::exists(request.destinations[2] + "/" + fs::path(result.imagePath).filename().string()));
}

TEST_F(DiskCopy, ReadsAMountedDiskItselfOnceItIsUnmounted) {
    const LoopDisk stick{std::string(bytes, '\0')};
    LoopDisk::run({"mkfs.ext4", "-q", "-L", "Photos", stick.device()});
    fs::create_directories(folder / "mounted");
    LoopDisk::run({"mount", stick.device(), folder / "mounted"});
    writeFileAtomically(folder / "mounted/film", "film");
    for (const DiskFacts& each : wholeDisks())
        if (each.device == stick.device())
            disk = each;
    EXPECT_TRUE(disk.isMounted);
    DeviceJobs jobs = DeviceJobs::ofThisProcess();
    jobs.interval = std::chrono::milliseconds(1);
    EXPECT_THAT(run(jobs).message, HasSubstr("is mounted at"));
    request.unmount = true;
    const DiskCopyResult result = run(jobs);
    ASSERT_EQ(result.end, End::imaged) << result.message;
    EXPECT_FALSE(fs::exists(folder / "mounted/film"));
    for (const std::string& place : request.destinations)
        EXPECT_THAT(LoopDisk::run({"sh", "-c", "cd \"$1\" && sha256sum -c *.sha256", "sh", place}),
                    HasSubstr(": OK"));
    LoopDisk::run({"e2fsck", "-fn", result.imagePath});
}

} // namespace
} // namespace vh::automation
