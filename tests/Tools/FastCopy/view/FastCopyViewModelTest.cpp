#include "Tools/FastCopy/view/FastCopyViewModel.h"

#include "app/AutomationLife.h"
#include "support/view/Desk.h"

#include <condition_variable>
#include <mutex>

namespace vh::app::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Holds copies back before they begin, until it is opened or they are stopped.
class Gate {
public:
    void open() {
        const std::lock_guard guard(mutex_);
        isOpen_ = true;
        opened_.notify_all();
    }
    void pass(const CancelToken& cancel) {
        std::unique_lock lock(mutex_);
        while (!isOpen_ && !cancel.isCancelled())
            opened_.wait_for(lock, std::chrono::milliseconds(5));
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

DiskFacts stick(bool isMounted) {
    DiskFacts disk;
    disk.bsdName = "sdz";
    disk.name = "Shuttle 07";
    disk.bytes = 1000;
    disk.isMounted = isMounted;
    return disk;
}

struct FastCopy : testing::Test {
    FastCopy() {
        for (const char* folder : {"from/deep", "one", "two", "three"})
            std::filesystem::create_directories(desk.home / folder);
        writeFileAtomically(desk.home / "from/deep/a", "first");
        writeFileAtomically(desk.home / "from/b", "second");
        QObject::connect(&life, &AutomationLife::said, &life,
                         [this](const QString& text) { toasts << text; });
    }

    CopyDependencies dependencies() {
        CopyDependencies made = CopyDependencies::of(desk.context);
        made.copyFiles = [this, real = made.copyFiles](const auto& request, const auto& texts,
                                                       const auto& control, const auto& progress,
                                                       const auto& cancel) {
            gate.pass(cancel);
            return real(request, texts, control, progress, cancel);
        };
        made.disks = [this] {
            return disks;
        };
        made.diskBlocker = [this](const Texts&) {
            return diskBlocker;
        };
        made.copyDisk = [this](const automation::DiskCopyRequest& request, const Texts&, const auto&,
                               const auto&, const auto&) {
            imaged = request;
            automation::DiskCopyResult result;
            result.end = automation::DiskCopyResult::End::imaged;
            result.message = "Imaged.";
            return result;
        };
        return made;
    }

    void choose(FastCopyViewModel& copying, const QStringList& sources, const QStringList& destinations) {
        copying.addSources(sources);
        copying.addDestinations(destinations);
        ASSERT_TRUE(waitFor([&] { return !copying.isLooking(); }));
    }
    void start(const QStringList& destinations) {
        choose(model, {"~/from"}, destinations);
        ASSERT_TRUE(model.canRun()) << model.blocker().toStdString();
        model.run();
    }
    QString idOf(int row) { return value(row, "jobId").toString(); }
    QVariant value(int row, const QByteArray& role) {
        return model.jobs()->index(row, 0).data(model.jobs()->roleNames().key(role));
    }
    std::vector<std::string> states() { return column(model.jobs(), "jobState"); }
    bool has(std::string_view path) { return std::filesystem::exists(desk.home / path); }

    Desk desk;
    AutomationLife life{desk.context};
    QStringList toasts;
    Gate gate;
    std::vector<DiskFacts> disks{stick(true)};
    std::string diskBlocker;
    std::optional<automation::DiskCopyRequest> imaged;
    FastCopyViewModel model{desk.context, life, dependencies()};
};

TEST_F(FastCopy, CopiesWhatIsChosenToEveryPlaceAndTellsOfIt) {
    EXPECT_FALSE(model.canRun());
    model.setOption("mode", "clone");
    model.setOption("manifest", "sums");
    model.setOption("conflict", "nonsense");
    start({"~/one", "~/two"});
    EXPECT_EQ(model.planText(), "") << "what was chosen is in the queue now";
    EXPECT_THAT(life.running(), ElementsAre("from → 2 places")) << "what closes the window asks";
    EXPECT_THAT(states(), ElementsAre("running"));
    EXPECT_EQ(value(0, "detail"), "2 files · 11 bytes · clone");
    gate.open();
    ASSERT_TRUE(waitFor([&] { return !model.isActive(); }));
    EXPECT_TRUE(has("one/from/deep/a"));
    EXPECT_TRUE(has("two/from/b"));
    EXPECT_TRUE(waitFor([&] { return life.running().isEmpty(); }));
    EXPECT_THAT(toasts,
                ElementsAre("Cloned. 4 files, 22 bytes, in 2 places. All of it was read back and is equal."));

    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_EQ(runs[0].toolID, "fast-copy");
    EXPECT_EQ(value(0, "line"), qtText(runs[0].summary));
    model.showReport(idOf(0));
    EXPECT_EQ(model.report()["problemCount"], 0);
    EXPECT_EQ(model.report()["manifests"].toStringList().size(), 2) << "one beside each copy";
    EXPECT_EQ(model.reportFiles()->rowCount(), 4);
    EXPECT_EQ(column(model.reportFiles(), "checksum")[0].size(), 64U);
    model.showFiles(true);
    EXPECT_EQ(model.reportFiles()->rowCount(), 0);

    FastCopyViewModel later(desk.context, life, dependencies());
    EXPECT_EQ(later.options()["mode"], "clone");
    EXPECT_EQ(later.options()["manifest"], "sums");
    EXPECT_EQ(later.options()["conflict"], "skip");
    model.clearFinished();
    EXPECT_EQ(model.jobCount(), 0);
}

TEST_F(FastCopy, LetsTheQueueGoOnWhileAllPlacesArePaused) {
    start({"~/one", "~/two"});
    start({"~/three"});
    start({"~/three"});
    EXPECT_THAT(states(), ElementsAre("running", "queued", "queued"));
    model.togglePause(idOf(0), 0);
    model.togglePause(idOf(0), 1);
    EXPECT_THAT(states(), ElementsAre("running", "running", "queued"));
    EXPECT_EQ(value(0, "stateTitle"), "Paused");
    model.stop(idOf(1));
    EXPECT_TRUE(value(1, "isStopping").toBool());
    model.takeOff(idOf(2));
    model.takeOff(idOf(0));
    EXPECT_THAT(states(), ElementsAre("running", "running")) << "only what waits is taken off";
    model.remove(idOf(0), 1);
    ASSERT_TRUE(waitFor([&] { return states()[1] == "stopped"; }));
    gate.open();
    model.togglePause(idOf(0), 0);
    ASSERT_TRUE(waitFor([&] { return !model.isActive(); }));
    EXPECT_THAT(states(), ElementsAre("finished", "stopped"));
    EXPECT_TRUE(has("one/from/b"));
    EXPECT_FALSE(has("two/from/b")) << "taken out";
    EXPECT_FALSE(has("three/from/b"));
    EXPECT_EQ(value(0, "lanes").toList().size(), 1);
    EXPECT_EQ(toasts.size(), 1) << "one for all of them";
}

TEST_F(FastCopy, StopsACopyWhoseLastPlaceIsTakenOutAndRunsSeveralWhenAsked) {
    model.setRunTogether(true);
    start({"~/one"});
    start({"~/two"});
    EXPECT_THAT(states(), ElementsAre("running", "running"));
    model.remove(idOf(0), 0);
    gate.open();
    ASSERT_TRUE(waitFor([&] { return !model.isActive(); }));
    EXPECT_THAT(states(), ElementsAre("stopped", "finished"));
    EXPECT_TRUE(desk.session.defaults().get<bool>("fast-copy.run-together").value_or(false));
}

TEST_F(FastCopy, TellsOfProblemsPlaceByPlace) {
    gate.open();
    model.setOption("conflict", "overwrite");
    std::filesystem::create_directories(desk.home / "one/from/b/taken"); // where a file has to go
    start({"~/one", "~/two"});
    ASSERT_TRUE(waitFor([&] { return !model.isActive(); }));
    EXPECT_EQ(value(0, "outcome"), "warning");
    model.showReport(idOf(0));
    EXPECT_EQ(model.report()["headline"], "Copied with problems.");
    EXPECT_THAT(model.report()["problems"].toStringList().value(0).toStdString(), HasSubstr("from/b"));
    EXPECT_THAT(column(model.report()["lanes"].toList(), "state"), ElementsAre("faulty", "good"));
    model.showFiles(true);
    EXPECT_THAT(column(model.reportFiles(), "fileName"), ElementsAre("from/b"));
    EXPECT_TRUE(has("two/from/b"));
}

TEST_F(FastCopy, SaysAtOnceWhatCannotBe) {
    const auto said = countOf(&model, &FastCopyViewModel::said);
    choose(model, {"~/from", "~/from/"},
           {"~/one", QUrl::fromLocalFile(qtText(desk.home / "one")).toString()});
    EXPECT_EQ(*said, 2) << "each is there already";
    EXPECT_EQ(model.sources().size(), 1);
    EXPECT_EQ(model.planText(), "2 files · 11 bytes");
    EXPECT_TRUE(model.canRun());

    std::filesystem::create_directory_symlink(desk.home / "from/deep", desk.home / "link");
    std::filesystem::create_directory_symlink(desk.home / "one", desk.home / "same");
    for (const auto& [place, fault] : {std::pair{"~/from/deep", "lies inside what is copied"},
                                       {"~/link", "lies inside what is copied"},
                                       {"~/same", "is the same folder as another one"},
                                       {"~/from/b", "is not a folder"},
                                       {"~/nowhere", "is not there"},
                                       {"~", "is where a source lies already"}}) {
        choose(model, {}, {place});
        EXPECT_EQ(model.destinations().last().toMap()["fault"], fault) << place;
        EXPECT_FALSE(model.canRun()) << place;
        model.removeDestination(1);
    }
    choose(model, {"~/gone"}, {});
    EXPECT_EQ(model.blocker(), "gone is not there.");
    model.removeSource(1);
    model.setOption("conflict", "rename");
    choose(model, {}, {"~"});
    EXPECT_TRUE(model.canRun()) << "beside itself, under a second name";
}

TEST_F(FastCopy, AsksBeforeItUnmountsADiskAndSaysWhatReadingOneNeeds) {
    diskBlocker = "Set the helper up.";
    model.lookForDisks();
    ASSERT_TRUE(waitFor([&] { return !model.disks().isEmpty(); }));
    model.addDisk("sdz");
    choose(model, {}, {"~/one"});
    ASSERT_TRUE(waitFor([&] { return model.lacksHelper(); }));
    EXPECT_EQ(model.blocker(), "Set the helper up.");
    diskBlocker.clear();
    model.refresh();
    ASSERT_TRUE(waitFor([&] { return model.canRun(); }));
    choose(model, {"~/from"}, {});
    EXPECT_FALSE(model.canRun()) << "a disk is copied by itself";
    model.removeSource(1);
    model.run();
    EXPECT_NE(model.unmountQuestion(), "");
    model.answerUnmount(false);
    EXPECT_EQ(model.jobCount(), 0);
    model.run();
    model.answerUnmount(true);
    ASSERT_TRUE(waitFor([&] { return !model.isActive(); }));
    ASSERT_TRUE(imaged);
    EXPECT_TRUE(imaged->unmount);
    EXPECT_EQ(imaged->disk.bsdName, "sdz");
    EXPECT_EQ(value(0, "line"), "Imaged.");
}

TEST_F(FastCopy, EndsWithTheWindowAndLeavesARecord) {
    gate.open();
    {
        FastCopyViewModel closing(desk.context, life, dependencies());
        choose(closing, {"~/from"}, {"~/one"});
        closing.run();
        closing.togglePause(
            closing.jobs()->index(0, 0).data(closing.jobs()->roleNames().key("jobId")).toString(), 0);
    }
    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_THAT(runs[0].outcome, testing::AnyOf(Outcome::cancelled, Outcome::success));
}

} // namespace
} // namespace vh::app::test
