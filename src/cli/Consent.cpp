#include "cli/Consent.h"

#include "Core/Printable.h"
#include "Platform/Files.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/Console.h"

namespace vh::cli {

std::optional<Exit> unlessAgreed(Context& context, const std::string& question,
                                 const std::function<void()>& show) {
    if (context.agreed)
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

std::optional<Exit> unlessReplaceable(Context& context, const std::string& file) {
    const auto status = statusOf(file);
    const bool isLost = status && (status->type == FileType::file || status->type == FileType::link);
    if (!isLost)
        return std::nullopt;
    return unlessAgreed(context,
                        context.session.texts().text("cli.ask-replace", {{"path", printable(file)}}));
}

} // namespace vh::cli
