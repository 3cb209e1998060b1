#include "Core/Printable.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"

namespace vh::cli {

namespace {

Exit open(Context& context, const std::string& url) {
    OwnLoop own(context.session);
    automation::Automation& automation = own.automation();
    std::optional<RunRecord> record;
    automation.setOnRecord([&](const RunRecord& each) {
        if (each.toolID != "nodes")
            return;
        record = each;
        own.finish();
    });
    if (const auto refusal = automation.openLink(url)) {
        complain(printable(*refusal));
        return Exit::failed;
    }
    if (automation.running().empty() && !record) {
        print(context.session.texts().text("cli.open.handed-on") + "\n");
        return Exit::done;
    }
    own.run(context.cancel, [&] { automation.stop(); });
    if (context.format == Format::json)
        printJson(*record);
    else
        print(printable(record->summary) + "\n");
    return exitOf(record->outcome);
}

} // namespace

void describeOpen(Verb& noun, CommandLine& line) {
    auto url = std::make_shared<std::string>();
    noun.argument("URL", url.get(), line.text("cli.open.url")).required();
    line.onChange(noun, [url](Context& context) { return open(context, *url); });
}

} // namespace vh::cli
