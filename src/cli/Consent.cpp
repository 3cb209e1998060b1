#include "cli/Consent.h"

#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/Console.h"

namespace vh::cli {

std::optional<Exit> unlessAgreed(Context& context, bool yes, const std::string& question,
                                 const std::function<void()>& show) {
    if (yes)
        return std::nullopt;
    const Texts& texts = context.session.texts();
    if (context.format == Format::json || !isTerminal(StandardStream::input)) {
        complain(texts.text("cli.needs-yes"));
        return Exit::usage;
    }
    if (show)
        show();
    if (confirm(question, texts.text("cli.yes-letters")))
        return std::nullopt;
    complain(texts.text("cli.cancelled"));
    return Exit::cancelled;
}

} // namespace vh::cli
