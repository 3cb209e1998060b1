#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Completions.h"
#include "cli/Console.h"

namespace vh::cli {

namespace {

Exit printCompletions(Context& context, const std::string& shell) {
    CommandLine line(context.session);
    const Verb program = line.program();
    if (shell == "fish")
        print(fishCompletions(program));
    else
        print((shell == "zsh" ? "autoload -U +X bashcompinit && bashcompinit\n" : "") +
              bashCompletions(program));
    return Exit::done;
}

} // namespace

void describeCompletions(Verb& noun, CommandLine& line) {
    const auto shell = std::make_shared<std::string>();
    noun.argument("SHELL", shell.get(), line.text("cli.completions.shell"))
        .required()
        .oneOf({"bash", "zsh", "fish"});
    noun.action = [shell](Context& context) {
        return printCompletions(context, *shell);
    };
    noun.example("source <(varnholt completions bash)");
    noun.example("varnholt completions fish > ~/.config/fish/completions/varnholt.fish");
}

} // namespace vh::cli
