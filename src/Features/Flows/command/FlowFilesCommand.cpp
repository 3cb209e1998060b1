#include "Core/Printable.h"
#include "Features/Flows/command/FlowShelf.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/Consent.h"
#include "cli/Reply.h"

namespace vh::cli {

namespace {

using namespace flows;

struct FileOptions {
    std::string word;
    std::string file;
};

void printSaved(const Context& context, const Flow& flow) {
    if (context.format == Format::json)
        printJson(flow);
    else
        print(fmt::format("{}  {}\n", flow.id.text(), printable(flow.name)));
}

Exit importFlow(Context& context, const FileOptions& options) {
    auto flow = readFlowFile(context, options.file);
    if (!flow)
        return Exit::failed;
    FlowShelf shelf;
    printSaved(context, shelf.store.save(shelf.store.anyFlow(flow->id) ? flow->renewed() : std::move(*flow)));
    return Exit::done;
}

Exit exportFlow(Context& context, const FileOptions& options) {
    FlowShelf shelf;
    const auto flow = findFlow(context, shelf.store, options.word);
    if (!flow)
        return Exit::failed;
    if (options.file.empty() || options.file == "-") {
        printJson(*flow);
        return Exit::done;
    }
    if (statusOf(options.file)) {
        const auto question =
            context.session.texts().text("cli.ask-replace", {{"path", printable(options.file)}});
        if (const auto refused = unlessAgreed(context, question))
            return *refused;
    }
    writeFileAtomically(options.file, encodeJson(*flow, JsonStyle::pretty) + "\n", 0644);
    return Exit::done;
}

Exit duplicateFlow(Context& context, const FileOptions& options) {
    FlowShelf shelf;
    const auto flow = findFlow(context, shelf.store, options.word);
    if (!flow)
        return Exit::failed;
    const Texts& texts = context.session.texts();
    const auto name = shelf.store.freeName([&](int number) {
        return texts.text("cli.flow.copy-name", {{"name", flow->name}, {"number", number}});
    });
    if (const auto copy = shelf.store.duplicate(flow->id, name))
        printSaved(context, *copy);
    return Exit::done;
}

Exit deleteFlow(Context& context, const FileOptions& options) {
    FlowShelf shelf;
    const auto flow = findFlow(context, shelf.store, options.word);
    if (!flow)
        return Exit::failed;
    const auto question =
        context.session.texts().text("cli.flow.ask-delete", {{"name", printable(flow->name)}});
    if (const auto refused = unlessAgreed(context, question))
        return *refused;
    if (shelf.store.isCompany(flow->id))
        shelf.store.removeCompany(flow->id);
    else
        shelf.store.remove(flow->id);
    return Exit::done;
}

} // namespace

void describeFlowFiles(Verb& noun, CommandLine& line) {
    const auto options = std::make_shared<FileOptions>();
    const auto verb = [&](const char* name, std::string help) -> Verb& {
        return noun.verb(name, std::move(help));
    };
    const auto takeFlow = [&](Verb& app) {
        app.argument("FLOW", &options->word, line.text("cli.flow.flow")).required();
    };

    Verb& import = verb("import", line.text("cli.flow.import"));
    import.argument("FILE", &options->file, line.text("cli.flow.file")).required();
    line.onChange(import, [options](Context& context) { return importFlow(context, *options); });

    Verb& out = verb("export", line.text("cli.flow.export"));
    takeFlow(out);
    out.argument("FILE", &options->file, line.text("cli.flow.output"));
    line.onChange(out, [options](Context& context) { return exportFlow(context, *options); });

    Verb& duplicate = verb("duplicate", line.text("cli.flow.duplicate"));
    takeFlow(duplicate);
    line.onChange(duplicate, [options](Context& context) { return duplicateFlow(context, *options); });

    Verb& remove = verb("delete", line.text("cli.flow.delete"));
    takeFlow(remove);
    line.onChange(remove, [options](Context& context) { return deleteFlow(context, *options); });
}

} // namespace vh::cli
