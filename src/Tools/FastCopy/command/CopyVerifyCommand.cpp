#include "Tools/FastCopy/command/CopyVerifyCommand.h"

#include "Core/Printable.h"
#include "Tools/FastCopy/CopyWork.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"

namespace vh::cli {

namespace {

Exit verifyCopy(Context& context, const std::string& manifest) {
    app::Session& session = context.session;
    if (manifest.empty())
        throw UsageError(session.texts().text("cli.copy.verify-or-copy"));
    const std::string path = absolutePath(manifest);
    const copy::CheckResult result = [&] {
        ProgressLine line;
        return copy::runManifestCheck(path, Trigger::manual, session.runStores(), session.texts(),
                                      line.control(context.cancel));
    }();
    if (!result.error.empty()) {
        complain(printable(result.error));
        return exitOf(result.record.outcome);
    }
    if (context.format == Format::json) {
        printJson(result.check);
        return exitOf(result.record.outcome);
    }
    for (const Message& problem : result.check.problems())
        complain(worded(problem, session.texts()));
    print(result.record.summary + "\n");
    return exitOf(result.record.outcome);
}

} // namespace

void describeCopyVerify(Verb& copy, CommandLine& line, std::function<bool()> hasWords) {
    const auto manifest = std::make_shared<std::string>();
    Verb& verb = copy.verb("verify", line.text("cli.copy.verify-list"));
    verb.argument("MANIFEST", manifest.get(), line.text("cli.copy.verify-list.file")).required();
    line.onChange(verb, [manifest, hasWords = std::move(hasWords)](Context& context) {
        if (hasWords())
            throw UsageError(context.session.texts().text("cli.copy.verify-or-copy"));
        return verifyCopy(context, *manifest);
    });
}

} // namespace vh::cli
