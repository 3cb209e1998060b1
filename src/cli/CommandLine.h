#pragma once

#include "Platform/CancelToken.h"
#include "cli/Exit.h"
#include "cli/UsageError.h"
#include "cli/Verb.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace vh::app {
class Session;
}

namespace vh::cli {

enum class Format { people, json };

/// What a command is handed when it runs.
struct Context {
    app::Session& session;
    CancelToken cancel;
    Format format = Format::people;
    bool agreed = false; ///< --yes
};

/// Collects what the words of the command line ask for.
class CommandLine {
public:
    using Action = std::function<Exit(Context&)>;

    explicit CommandLine(app::Session& session) : session_(session) {}

    /// A text of the person's language for a help line.
    std::string text(std::string_view key) const;

    /// Makes `verb` (or a noun without verbs) run `action`, and gives it the --json flag.
    void on(Verb& verb, Action action);
    /// Gives what may ask before it replaces a file the flag that answers.
    void asks(Verb& verb);
    /// Both for what changes files. It refuses to in another user's home.
    void onChange(Verb& verb, Action action);

    /// All nouns, described in full or, to be quick, but one.
    Verb program(std::optional<std::string_view> only = {});
    /// Reads the words and runs what they ask for.
    Exit run(int argc, const char* const* argv);

private:
    Exit perform(const Verb& verb);

    app::Session& session_;
    bool json_ = false;
    bool agreed_ = false;
};

/// A path from the command line, absolute and without a slash at its end.
std::string absolutePath(const std::string& word);

} // namespace vh::cli
