#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "app/ModuleRegistry.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"
#include "cli/Table.h"

namespace vh::cli {

namespace {

Exit listTools(Context& context) {
    if (context.format == Format::json) {
        printJson(std::vector(ToolCatalog::all().begin(), ToolCatalog::all().end()));
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.name")},
                 {texts.text("cli.column.section")},
                 {texts.text("cli.column.engine")}});
    for (const ToolDescriptor& tool : ToolCatalog::all()) {
        const bool hasEngine = context.session.registry().hasEngine(tool.id);
        table.add({std::string(tool.id), toolName(texts, tool.id), sectionTitle(texts, tool.section),
                   texts.text(hasEngine ? "cli.engine.ready" : "cli.engine.missing")});
    }
    print(table.text(outputWidth()));
    return Exit::done;
}

} // namespace

void describeTools(Verb& noun, CommandLine& line) {
    line.on(noun, listTools);
}

} // namespace vh::cli
