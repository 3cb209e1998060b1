#include "Platform/Files.h"
#include "Platform/Process.h"
#include "serve/Home.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"

#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

namespace vh::test {

using namespace flows;
using testing::HasSubstr;

namespace {

constexpr const char* leading = "run from now on";

/// A disk in a file, which comes and goes like a stick: ext4 over a loop device. Needs the right to mount.
class Stick {
public:
    Stick() : image_(folder_ / "image"), place_(folder_ / "STICK") {
        makeFolders(place_);
        run({"truncate", "-s", "4M", image_});
        run({"mkfs.ext4", "-q", image_});
    }
    ~Stick() { ::umount2(place_.c_str(), MNT_DETACH); }
    void mount() const { run({"mount", "-o", "loop", image_, place_}); }
    void unmount() const { run({"umount", place_}); }
    const std::string& place() const { return place_; }

private:
    static void run(const std::vector<std::string>& words) {
        const ProcessResult result = runProcess({.arguments = words});
        ASSERT_TRUE(result.succeeded()) << words.front() << ": " << result.errors;
    }
    TempDir folder_;
    const std::string image_, place_;
};

/// A share whose server never answers. Needs the right to mount.
class DeadShare {
public:
    explicit DeadShare(const std::string& source) : file_(::open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
        const std::string options = fmt::format("fd={},rootmode=40000,user_id=0,group_id=0", file_);
        const int done =
            ::mount(source.c_str(), folder_.path().c_str(), "fuse.sshfs", MS_NOSUID, options.c_str());
        EXPECT_EQ(done, 0) << "mount: " << errno;
    }
    ~DeadShare() {
        ::close(file_); // whoever asks it anything is told that it is gone
        ::umount2(folder_.path().c_str(), MNT_DETACH);
    }
    const std::string& place() const { return folder_.path(); }

private:
    TempDir folder_;
    const int file_;
};

} // namespace

TEST(Triggers, DiskThatComesAndGoes) {
    const Stick stick;
    stick.mount();
    Home home;
    const FlowDiskMatch match{.value = "stick", .scope = FlowDiskMatch::Scope::any};
    const Uuid comes = home.flow("Comes", OnDiskMounted{match});
    const Uuid goes = home.flow("Goes", OnDiskUnmounted{match});
    const Uuid other =
        home.flow("Other", OnDiskMounted{{.value = "film", .scope = FlowDiskMatch::Scope::any}});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));

    stick.unmount();
    const FlowRun gone = home.waitForRuns(goes, 1).front();
    EXPECT_EQ(gone.trigger, FlowRunTrigger::diskUnmounted);
    EXPECT_TRUE(home.runs(comes).empty()) << "it was there before the start";
    stick.mount();
    const FlowRun come = home.waitForRuns(comes, 1).front();
    EXPECT_EQ(come.trigger, FlowRunTrigger::diskMounted);
    EXPECT_EQ(come.values.value_or(FlowValues{}).disk, stick.place());
    EXPECT_EQ(come.values.value_or(FlowValues{}).diskName, "STICK");
    EXPECT_THAT(come.event.value_or(""), HasSubstr("STICK"));
    EXPECT_TRUE(home.runs(other).empty());
}

TEST(Triggers, ShareOfAServerThatHangs) {
    Home home;
    const Uuid flow = home.flow("Share", OnShareMounted{{.host = "NAS.example"}});
    const Uuid disk =
        home.flow("Disk", OnDiskMounted{{.value = "films", .scope = FlowDiskMatch::Scope::external}});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));
    const DeadShare share("editor@nas.example:/films");
    const FlowRun run = home.waitForRuns(flow, 1).front();
    EXPECT_EQ(run.trigger, FlowRunTrigger::shareMounted);
    EXPECT_EQ(run.values.value_or(FlowValues{}).disk, share.place());
    EXPECT_THAT(run.event.value_or(""), HasSubstr("nas.example"));
    EXPECT_TRUE(home.runs(disk).empty()) << "a share is no disk";
}

TEST(Triggers, FileThatIsStillWritten) {
    Home home;
    makeFolders(home / "in/deep");
    writeFileAtomically(home / "in/old.mov", "was there before");
    const Uuid flow = home.flow("Files", OnNewFiles{"~/in", {"mov"}, 1});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));

    std::atomic<bool> isWritten = false;
    std::thread writer([&] {
        const int file = ::open((home / "in/new.MOV").c_str(), O_WRONLY | O_CREAT, 0600);
        for (int i = 0; i < 12; ++i) {
            EXPECT_EQ(::write(file, "some film", 9), 9);
            std::this_thread::sleep_for(std::chrono::milliseconds(250)); // it is the pace that is tested
        }
        isWritten = true;
        ::close(file);
    });
    writeFileAtomically(home / "in/note.txt", "not asked for");
    waitUntil("the first run", [&] { return !home.runs(flow).empty(); });
    EXPECT_TRUE(isWritten);
    writer.join();
    const FlowRun run = home.waitForRuns(flow, 1).front();
    EXPECT_EQ(run.trigger, FlowRunTrigger::newFiles);
    EXPECT_EQ(run.values.value_or(FlowValues{}).files, std::vector{home / "in/new.MOV"});
    EXPECT_EQ(run.values.value_or(FlowValues{}).folder, home / "in");
}

TEST(Triggers, FolderThatComesLater) {
    Home home;
    const Uuid flow = home.flow("Late", OnNewFiles{home / "late", {}, 0});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput("late")) << "it is said that it cannot be watched";
    makeFolders(home / "late");
    // A change of the flows is one of the moments at which folders are looked for again.
    home.flow("Another", OnDemand{});
    waitUntil("a run", [&, number = 0]() mutable {
        writeFileAtomically(home / fmt::format("late/{}", ++number), "x");
        return !home.runs(flow).empty();
    });
}

TEST(Triggers, MainsAfterBattery) {
    const PrivateBus bus(PrivateBus::Kind::system);
    BusService power(bus.address(), "org.freedesktop.UPower", "/org/freedesktop/UPower");
    constexpr const char* onBattery = "org.freedesktop.UPower.OnBattery";
    power.setProperty(onBattery, false);
    Home home;
    const Uuid flow = home.flow("Power", OnPower{});
    const Uuid other = home.flow("Files", OnNewFiles{home.path(), {"mark"}, 0});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));
    const size_t asked = power.calls().size();
    power.setProperty(onBattery, true);
    waitUntil("the server has read it", [&] { return power.calls().size() > asked; });
    // The other flow's run shows that the server has gone on since.
    writeFileAtomically(home / "a.mark", "x");
    home.waitForRuns(other, 1);
    EXPECT_TRUE(home.runs(flow).empty());
    power.setProperty(onBattery, false);
    EXPECT_EQ(home.waitForRuns(flow, 1).front().trigger, FlowRunTrigger::power);
}

TEST(Triggers, LaunchAndWhatComesAfterIt) {
    Home home;
    const Uuid first = home.flow("First", OnLaunch{});
    const Uuid second = home.flow("Second", OnFlowFinished{{first, "First", FlowFinish::success}});
    const Uuid third = home.flow("Third", OnFlowFinished{{second, "Second", FlowFinish::any}});
    const Uuid never = home.flow("Never", OnFlowFinished{{first, "First", FlowFinish::failed}});
    const Program serve({"serve"});
    EXPECT_EQ(home.waitForRuns(third, 1).front().trigger, FlowRunTrigger::afterFlow);
    EXPECT_EQ(home.waitForRuns(first, 1).front().trigger, FlowRunTrigger::launch);
    EXPECT_EQ(home.runs(second).size(), 1U);
    EXPECT_TRUE(home.runs(never).empty());
}

TEST(Triggers, ScheduleThatWasMissed) {
    Home home;
    const Uuid flow = home.flow("Nightly", OnSchedule{DailySchedule{3, 0}, true});
    const Uuid lost = home.flow("Lost", OnSchedule{DailySchedule{3, 0}, false});
    const Date yesterday = systemNow() - std::chrono::hours(20);
    for (const Uuid& id : {flow, lost})
        ASSERT_TRUE(home.schedules().change(id, [&](ScheduledTask& task) { task.nextRun = yesterday; }));
    const Program serve({"serve"});
    EXPECT_EQ(home.waitForRuns(flow, 1).front().trigger, FlowRunTrigger::scheduled);
    waitUntil("the next run", [&] { return home.schedules().task(flow)->nextRun > systemNow(); });
    EXPECT_EQ(home.schedules().task(flow)->lastOutcome, Outcome::success);
    EXPECT_GT(home.schedules().task(lost)->nextRun, systemNow());
    EXPECT_TRUE(home.runs(lost).empty());
}

TEST(Triggers, Link) {
    Home home;
    const auto link = [](const Uuid& id) {
        return "varnholt://flow/run?id=" + id.text();
    };
    const Uuid flow = home.flow("Outside", OnExternal{});
    const Uuid closed = home.flow("Closed", OnDemand{});
    EXPECT_EQ(Program({"open", link(flow)}).wait(), 0) << "it runs in the foreground";
    EXPECT_EQ(home.waitForRuns(flow, 1).front().trigger, FlowRunTrigger::external);

    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));
    EXPECT_EQ(Program({"open", link(flow)}).wait(), 0);
    home.waitForRuns(flow, 2);
    EXPECT_THAT(serve.output(), HasSubstr("Outside"));
    for (const std::string& refused :
         {link(closed), link(Uuid::random()), std::string("https://example.org")})
        EXPECT_EQ(Program({"open", refused}).wait(), 1) << refused;
    EXPECT_TRUE(home.runs(closed).empty());
}

} // namespace vh::test
