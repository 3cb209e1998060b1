#include "app/Session.h"

#include "Core/DatabaseLocation.h"
#include "Core/RunJournal.h"
#include "app/ModuleRegistry.h"

namespace vh::app {

namespace {

constexpr std::string_view languageKey = "app.language";

Texts textsOfSetting(const UserDefaults& defaults) {
    return Texts::ofSetting(defaults.get<std::string>(languageKey).value_or("system"));
}

} // namespace

Session::Session()
    : folders_(Folders::ofUser()), defaults_(UserDefaults::fileOfUser()), texts_(textsOfSetting(defaults_)),
      runFiles_(defaults_) {}

Session::~Session() = default;

void Session::useLanguageOfSetting() {
    texts_ = textsOfSetting(defaults_);
}

RunLog& Session::runLog() {
    if (!runLog_) {
        runLog_ = std::make_unique<RunLog>(defaults_, runFiles_);
        journals_ = std::make_unique<RunJournals>(RunJournals::folderOfUser(), *runLog_, runFiles_);
        recoverInterruptedRuns();
    }
    return *runLog_;
}

RunJournals& Session::journals() {
    runLog();
    return *journals_;
}

ModuleRegistry& Session::registry() {
    if (!registry_)
        registry_ = std::make_unique<ModuleRegistry>(folders_, DatabaseLocation::folder(defaults_));
    return *registry_;
}

void Session::recoverInterruptedRuns() {
    journals_->recoverInterrupted([this](const std::string& title) {
        return texts_.text("run.interrupted", {{"title", title}});
    });
}

} // namespace vh::app
