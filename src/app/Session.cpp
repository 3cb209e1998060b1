#include "app/Session.h"

#include "Core/CleanJob.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunJournal.h"
#include "HelperKit/HelperClient.h"
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
      language_(texts_.language()), runFiles_(defaults_) {}

Session::~Session() = default;

void Session::useLanguageOfSetting() {
    useLanguage(textsOfSetting(defaults_).language());
}

void Session::useLanguage(Language language) {
    texts_ = Texts(language);
    language_ = language;
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

RunStores Session::runStores() {
    return {runLog(), runFiles_, *journals_};
}

helper::HelperClient& Session::helper() {
    std::call_once(helperOpened_, [this] { helper_ = helper::openHelperClient(defaults_, VH_VERSION); });
    return *helper_;
}

void Session::recoverInterruptedRuns() {
    journals_->recoverInterrupted([this](const std::string& title) {
        return RunWords({{"run.interrupted", {{"title", title}}}}, texts_);
    });
}

} // namespace vh::app
