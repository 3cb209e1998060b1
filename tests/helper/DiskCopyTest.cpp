#include "Tools/FastCopy/work/DiskCopy.h"

#include "Core/CleanJob.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "HelperKit/HelperClient.h"
#include "Platform/Files.h"
#include "helper/HelperSystem.h"
#include "support/FakeRootService.h"
#include "support/LoopDisk.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vh::test {
namespace {

namespace fs = std::filesystem;
using automation::DiskCopyResult;
using testing::HasSubstr;

/// A folder where the helper may write for who calls, whatever this test's own is.
class ImageFolder {
public:
    ImageFolder() {
        char name[] = "/tmp/varnholt-image-test-XXXXXX";
        path_ = ::mkdtemp(name);
        EXPECT_EQ(::chown(path_.c_str(), HelperSystem::user, HelperSystem::user), 0) << "needs root";
    }
    ~ImageFolder() { fs::remove_all(path_); }
    ImageFolder(const ImageFolder&) = delete;
    ImageFolder& operator=(const ImageFolder&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

TEST(DiskCopyWithHelper, ImagesADiskAndStopsWhenAsked) {
    HelperSystem system;
    system.allow(true);
    const TempDir folder;
    const ImageFolder images;
    UserDefaults defaults(folder / "defaults.json");
    defaults.set(DatabaseLocation::key, folder / "data");
    RunFiles files(defaults);
    RunLog log(defaults, files);
    RunJournals journals(folder / "open-runs", log, files);
    const auto registration = std::make_shared<FakeRegistration>();
    helper::HelperClient client({[&] { return system.link(); }, registration, defaults, "1"});
    automation::DeviceJobs jobs = automation::DeviceJobs::throughHelper(client);
    jobs.interval = std::chrono::milliseconds(1);
    const LoopDisk disk(std::string(64 << 20, 'd'));
    automation::DiskCopyRequest request;
    for (const DiskFacts& each : wholeDisks())
        if (each.device == disk.device())
            request.disk = automation::sourceOf(each);
    request.destinations = {images.path()};
    const auto run = [&](const std::function<void(copy::CopyControl&)>& onProgress) {
        const auto control = std::make_shared<copy::CopyControl>();
        return runDiskCopy(request, jobs, {.home = folder / "home"}, {log, files, journals},
                           Texts(Language::en), control, [&](const auto&) { onProgress(*control); });
    };

    const DiskCopyResult stopped = run([](copy::CopyControl& control) { control.cancel(); });
    EXPECT_EQ(stopped.end, DiskCopyResult::End::stopped) << stopped.message;
    EXPECT_TRUE(fs::is_empty(images.path()));

    const DiskCopyResult done = run([](copy::CopyControl&) {});
    ASSERT_EQ(done.end, DiskCopyResult::End::imaged) << done.message;
    EXPECT_THAT(LoopDisk::run({"sh", "-c", "cd \"$1\" && sha256sum -c *.sha256", "sh", images.path()}),
                HasSubstr(": OK"));
    EXPECT_EQ(statusOf(done.imagePath)->owner, HelperSystem::user);

    system.allow(false);
    fs::remove(done.imagePath);
    fs::remove(done.imagePath + ".sha256");
    const DiskCopyResult refused = run([](copy::CopyControl&) {});
    EXPECT_EQ(refused.end, DiskCopyResult::End::failed);
    EXPECT_TRUE(fs::is_empty(images.path()));
}

} // namespace
} // namespace vh::test
