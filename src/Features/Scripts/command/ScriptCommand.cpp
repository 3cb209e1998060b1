#include "Automation/ScriptLibrary.h"
#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/Consent.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <array>
#include <cstdio>

namespace vh::cli {

namespace {

using automation::ScriptLibrary;

struct ScriptOptions {
    std::string name;
    std::string file;
};

ScriptLibrary library() {
    return ScriptLibrary(ScriptLibrary::folderOfUser());
}

std::string readInput() {
    std::string text;
    std::array<char, 65536> block;
    while (const size_t count = std::fread(block.data(), 1, block.size(), stdin))
        text.append(block.data(), count);
    return text;
}

Exit listScripts(Context& context) {
    const auto scripts = library().scripts();
    if (context.format == Format::json) {
        printJson(scripts);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (scripts.empty()) {
        print(texts.text("cli.script.none") + "\n");
        return Exit::done;
    }
    Table table({{texts.text("cli.column.name"), Align::left, true},
                 {texts.text("cli.column.changed")},
                 {texts.text("cli.column.size"), Align::right}});
    for (const auto& script : scripts)
        table.add({printable(script.name), timestamp(script.changedAt, LocalCalendar()).substr(0, 16),
                   std::to_string(script.body.size())});
    print(table.text(outputWidth()));
    return Exit::done;
}

Exit addScript(Context& context, const ScriptOptions& options) {
    const Texts& texts = context.session.texts();
    if (const auto fault = ScriptLibrary::faultOf(options.name))
        throw UsageError(texts.text(*fault));
    ScriptLibrary scripts = library();
    if (scripts.script(options.name)) {
        const auto question = texts.text("cli.ask-replace", {{"path", printable(options.name)}});
        if (const auto refused = unlessAgreed(context, question))
            return *refused;
    }
    scripts.save(options.name, options.file == "-" ? readInput() : readFile(options.file));
    return Exit::done;
}

Exit noScript(Context& context, const std::string& name) {
    complain(context.session.texts().text("cli.script.unknown", {{"name", printable(name)}}));
    return Exit::failed;
}

Exit removeScript(Context& context, const ScriptOptions& options) {
    ScriptLibrary scripts = library();
    if (!scripts.script(options.name))
        return noScript(context, options.name);
    const auto question =
        context.session.texts().text("cli.script.ask-remove", {{"name", printable(options.name)}});
    if (const auto refused = unlessAgreed(context, question))
        return *refused;
    scripts.remove(options.name);
    return Exit::done;
}

Exit showScript(Context& context, const std::string& name) {
    const auto script = library().script(name);
    if (!script)
        return noScript(context, name);
    if (context.format == Format::json)
        printJson(*script);
    else
        print(script->body);
    return Exit::done;
}

} // namespace

void describeScript(Verb& noun, CommandLine& line) {
    line.on(noun.verb("list", line.text("cli.script.list")), listScripts);

    const auto options = std::make_shared<ScriptOptions>();
    const auto verb = [&](const char* name, std::string help) -> Verb& {
        Verb& app = noun.verb(name, std::move(help));
        app.argument("NAME", &options->name, line.text("cli.script.name")).required();
        return app;
    };
    Verb& add = verb("add", line.text("cli.script.add"));
    add.argument("FILE|-", &options->file, line.text("cli.script.file")).required();
    line.onChange(add, [options](Context& context) { return addScript(context, *options); });

    Verb& remove = verb("remove", line.text("cli.script.remove"));
    line.onChange(remove, [options](Context& context) { return removeScript(context, *options); });

    line.on(verb("show", line.text("cli.script.show")),
            [options](Context& context) { return showScript(context, options->name); });
}

} // namespace vh::cli
