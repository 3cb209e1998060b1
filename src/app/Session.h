#pragma once

#include "Core/RunFiles.h"
#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "Platform/Folders.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace vh {
class RunJournals;
struct RunStores;
} // namespace vh
namespace vh::helper {
class HelperClient;
}

namespace vh::app {

class ModuleRegistry;

/// What window and command line share for as long as they live. Each part is opened when first asked for, so that
/// starting costs nothing; the first asking belongs to the main thread.
class Session {
public:
    /// Throws SystemError when the user has no home.
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Folders& folders() const { return folders_; }
    UserDefaults& defaults() { return defaults_; }
    /// In the language of the setting as it was at the last useLanguageOfSetting.
    const Texts& texts() const { return texts_; }
    void useLanguageOfSetting();
    /// For as long as the setting is left alone; stores nothing.
    void useLanguage(Language language);
    /// That of texts(). Any thread.
    Language language() const { return language_; }

    RunFiles& runFiles() { return runFiles_; }
    /// Opening it gives runs that were killed their record.
    RunLog& runLog();
    RunJournals& journals();
    ModuleRegistry& registry();
    RunStores runStores();
    /// The root helper's client. Any thread.
    helper::HelperClient& helper();

private:
    void recoverInterruptedRuns();

    const Folders folders_;
    UserDefaults defaults_;
    Texts texts_;
    std::atomic<Language> language_; // of texts_, for other threads
    RunFiles runFiles_;
    std::unique_ptr<RunLog> runLog_;
    std::unique_ptr<RunJournals> journals_;
    std::unique_ptr<ModuleRegistry> registry_;
    std::once_flag helperOpened_;
    std::unique_ptr<helper::HelperClient> helper_;
};

} // namespace vh::app
