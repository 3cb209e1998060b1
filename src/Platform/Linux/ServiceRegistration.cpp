#include "Platform/ServiceRegistration.h"

#include "Platform/Host.h"
#include "Platform/Linux/ServiceTraces.h"
#include "Platform/PathParts.h"
#include "Platform/Process.h"

#include <filesystem>
#include <fmt/format.h>
#include <stdexcept>
#include <unistd.h>

namespace vh {

namespace {

/// How pkexec ends when the person closed its question, and when nobody could be asked or the answer was no.
constexpr int dismissed = 126, notAuthorised = 127;

std::optional<std::string> programBesideOwn(const std::string& name) {
    std::error_code error;
    const std::string own = splitPath(std::filesystem::read_symlink("/proc/self/exe", error).string()).folder;
    for (const std::string& folder : {own, splitPath(own).folder + "/libexec"})
        if (const std::string path = joinPath(folder, name); ::access(path.c_str(), X_OK) == 0)
            return path;
    return std::nullopt;
}

/// As a person types it: in quotes when the shell would take it apart.
std::string typed(const std::string& path) {
    const bool isPlain = path.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                "0123456789/._-+") == std::string::npos;
    if (isPlain)
        return path;
    std::string quoted = "'";
    for (const char c : path)
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

class LinuxServiceRegistration : public ServiceRegistration {
public:
    LinuxServiceRegistration(std::string program, const std::string& service, const std::string& root)
        : program_(std::move(program)), traces_{root, service, program_ + ".service"} {}

    HelperRegistrationStatus status() const override {
        if (!hasSystemBus())
            return HelperRegistrationStatus::unknown;
        if (traces_.startedProgram())
            return traces_.isMasked() ? HelperRegistrationStatus::requiresApproval
                                      : HelperRegistrationStatus::enabled;
        return programBesideOwn(program_) ? HelperRegistrationStatus::notRegistered
                                          : HelperRegistrationStatus::notFound;
    }

    void add() override { runAsRoot("install"); }
    void remove() override { runAsRoot("uninstall"); }
    bool mustAsk() const override { return !isAdministrator(); }

private:
    /// The program itself, or when only the installed one is left, that one.
    std::string programToRun() const {
        auto path = programBesideOwn(program_);
        if (!path && traces_.startedProgram())
            path = traces_.root + *traces_.startedProgram();
        if (!path)
            throw std::runtime_error(fmt::format("{} does not lie beside this program.", program_));
        return *path;
    }

    void runAsRoot(const std::string& verb) {
        const std::string program = programToRun();
        const std::string byHand = fmt::format("sudo {} {}", typed(program), verb);
        ProcessRequest request{{program, verb}};
        if (!traces_.root.empty())
            request.arguments.insert(request.arguments.end(), {"--root", traces_.root});
        if (mustAsk()) {
            const auto pkexec = findProgram("pkexec");
            if (!pkexec)
                throw std::runtime_error(fmt::format("pkexec is missing. Type instead: {}", byHand));
            // Its own agent would ask at a terminal that it cannot read from, beside this program.
            request.arguments.insert(request.arguments.begin(), {*pkexec, "--disable-internal-agent"});
        }
        const ProcessResult result = runProcess(request);
        if (result.succeeded())
            return;
        if (mustAsk() && result.status == dismissed)
            throw std::runtime_error("It was not allowed. Nothing was changed.");
        if (mustAsk() && result.status == notAuthorised)
            throw std::runtime_error(fmt::format(
                "Nobody could be asked for the right to do it, or it was refused. Type instead: {}", byHand));
        throw std::runtime_error(result.errors.empty() ? program + " failed." : result.errors);
    }

    std::string program_;
    ServiceTraces traces_;
};

} // namespace

std::unique_ptr<ServiceRegistration>
openServiceRegistration(const std::string& program, const std::string& service, const std::string& root) {
    return std::make_unique<LinuxServiceRegistration>(program, service, root);
}

} // namespace vh
