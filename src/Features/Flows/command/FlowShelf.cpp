#include "Features/Flows/command/FlowShelf.h"

#include "Core/Codec.h"
#include "Core/Printable.h"
#include "Mail/MailSettings.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/Console.h"
#include "cli/NamedThing.h"

#include <filesystem>

namespace vh::cli {

std::optional<flows::Flow> findFlow(Context& context, flows::NodesStore& store, const std::string& word) {
    std::vector<flows::Flow> all = store.flows();
    for (const auto& each : store.companyFlows())
        all.push_back(each.flow);
    return findNamed(context, std::move(all), word, {"cli.flow.unknown", "cli.flow.ambiguous"},
                     &flows::Flow::name);
}

std::optional<flows::Flow> readFlowFile(Context& context, const std::string& path) {
    const Texts& texts = context.session.texts();
    const auto refuse = [&](const std::string& reason) {
        complain(texts.text("cli.flow.no-flow", {{"path", printable(path)}, {"reason", reason}}));
        return std::nullopt;
    };
    // A pipe or a device may never end.
    if (std::filesystem::exists(path) && !std::filesystem::is_regular_file(path))
        return refuse(texts.text("cli.flow.no-file"));
    if (std::filesystem::is_regular_file(path) &&
        std::filesystem::file_size(path) > flows::NodesStore::largestFile) {
        complain(texts.text("cli.flow.too-large", {{"path", printable(path)}}));
        return std::nullopt;
    }
    try {
        return decodeJson<flows::Flow>(readFile(path));
    } catch (const DecodeError& error) {
        return refuse(printable(error.what()));
    }
}

std::vector<flows::FlowProblem> problemsOf(Context& context, const flows::Flow& flow) {
    const bool isReady = mail::MailSettings::load(context.session.defaults()).isReady();
    return flows::problems(flow, isReady ? flows::MailState::ready : flows::MailState::notReady);
}

} // namespace vh::cli
