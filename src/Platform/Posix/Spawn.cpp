#include "Platform/Posix/Spawn.h"

#include "Platform/Posix/EndWithParent.h"
#include "Platform/Posix/Pipe.h"
#include "Platform/Posix/PseudoTerminal.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

extern char** environ;

namespace vh {

namespace {

void check(int code, const std::string& program) {
    if (code != 0)
        throw SystemError(code, program);
}

// Descriptors that libraries open without close-on-exec stay out of the program too.
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
constexpr short closeOthers = POSIX_SPAWN_CLOEXEC_DEFAULT;
void closeOthersIn(posix_spawn_file_actions_t&, const std::string&) {}
#else
constexpr short closeOthers = 0;
void closeOthersIn(posix_spawn_file_actions_t& actions, const std::string& program) {
    check(::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1), program);
}
#endif

/// Which descriptors and folder the program starts with.
class FileActions {
public:
    explicit FileActions(std::string program) : program_(std::move(program)) {
        check(::posix_spawn_file_actions_init(&actions_), program_);
    }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void open(const std::string& path, int as) {
        check(::posix_spawn_file_actions_addopen(&actions_, as, path.c_str(), O_RDWR, 0), program_);
    }
    void duplicate(int from, int to) {
        check(::posix_spawn_file_actions_adddup2(&actions_, from, to), program_);
    }
    void closeOthers() { closeOthersIn(actions_, program_); }
    void startIn(const std::string& folder) {
        check(::posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str()), program_);
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_;
    std::string program_;
};

/// A process group of its own, or a session when it has a terminal; no signal blocked and every signal at its default.
class Attributes {
public:
    Attributes(const std::string& program, bool hasTerminal) {
        check(::posix_spawnattr_init(&attributes_), program);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawnattr_setpgroup(&attributes_, 0);
        const short group = hasTerminal ? POSIX_SPAWN_SETSID : POSIX_SPAWN_SETPGROUP;
        ::posix_spawnattr_setflags(&attributes_,
                                   group | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | closeOthers);
    }
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::vector<std::string> result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (!added.contains(std::string(text.substr(0, text.find('=')))))
            result.emplace_back(text);
    }
    for (const auto& [name, value] : added)
        result.push_back(name + "=" + value);
    return result;
}

void stopBlocking(const FileDescriptor& file) {
    const int flags = ::fcntl(file.get(), F_GETFL);
    if (flags < 0 || ::fcntl(file.get(), F_SETFL, flags | O_NONBLOCK) != 0)
        throwErrno("pipe");
}

/// The spawn itself would blame the program for a missing folder.
void refuseUnlessFolder(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        throwErrno(path);
    if (!S_ISDIR(status.st_mode))
        throw SystemError(ENOTDIR, path);
}

/// Both ends of a program's streams.
struct Streams {
    Pipe input;
    Pipe output;
    Pipe errors; ///< empty when they go to the output
    PseudoTerminal terminal;
};

Streams openStreams(const ProcessRequest& request) {
    Streams streams;
    if (request.dialogue) {
        streams.terminal = openPseudoTerminal();
        streams.input.writing = std::move(streams.terminal.keyboard);
        streams.output.reading = std::move(streams.terminal.screen);
    } else {
        streams.input = openPipe();
        streams.output = openPipe();
        if (request.output == ProcessOutput::split)
            streams.errors = openPipe();
    }
    for (const FileDescriptor* ours :
         {&streams.input.writing, &streams.output.reading, &streams.errors.reading})
        if (*ours)
            stopBlocking(*ours);
    return streams;
}

void connect(FileActions& actions, const Streams& streams) {
    if (streams.terminal.program) { // whoever leads a session and opens a terminal gets it for its own
        actions.open(streams.terminal.path, STDIN_FILENO);
        actions.duplicate(STDIN_FILENO, STDOUT_FILENO);
        actions.duplicate(STDIN_FILENO, STDERR_FILENO);
        return;
    }
    actions.duplicate(streams.input.reading.get(), STDIN_FILENO);
    actions.duplicate(streams.output.writing.get(), STDOUT_FILENO);
    actions.duplicate((streams.errors.writing ? streams.errors : streams.output).writing.get(),
                      STDERR_FILENO);
}

} // namespace

SpawnedProcess spawn(const ProcessRequest& request) {
    if (request.arguments.empty())
        throw SystemError("", "No program was named");
    const std::string& program = request.arguments.front();
    Streams streams = openStreams(request);
    FileActions actions(program);
    connect(actions, streams);
    actions.closeOthers();
    if (!request.folder.empty()) {
        refuseUnlessFolder(request.folder);
        actions.startIn(request.folder);
    }
    const Attributes attributes(program, static_cast<bool>(request.dialogue));
    std::vector<std::string> arguments = request.arguments;
    if (request.endsWithParent) {
        if (!findProgram(program))
            throw SystemError(ENOENT, program);
        arguments = endingWithParent(std::move(arguments));
    }
    std::vector<std::string> environment = environmentWith(request.environment);

    SpawnedProcess process;
    check(::posix_spawnp(&process.id, arguments.front().c_str(), actions.get(), attributes.get(),
                         pointersTo(arguments).data(), pointersTo(environment).data()),
          program);
    process.input = std::move(streams.input.writing);
    process.output = std::move(streams.output.reading);
    process.errors = std::move(streams.errors.reading);
    return process;
}

} // namespace vh
