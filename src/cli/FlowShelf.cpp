#include "cli/FlowShelf.h"

#include "Core/Codec.h"
#include "Core/Fold.h"
#include "Core/Printable.h"
#include "Mail/MailSettings.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/Console.h"

#include <algorithm>
#include <filesystem>

namespace vh::cli {

namespace {

constexpr size_t shortestPrefix = 4;

} // namespace

std::string asIdentifier(std::string word) {
    std::ranges::transform(word, word.begin(),
                           [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c & ~0x20) : c; });
    return word;
}

std::optional<flows::Flow> findFlow(Context& context, flows::NodesStore& store, const std::string& word) {
    std::vector<flows::Flow> all = store.flows();
    for (const auto& each : store.companyFlows())
        all.push_back(each.flow);
    const std::string prefix = asIdentifier(word);
    std::erase_if(all, [&](const flows::Flow& flow) {
        const bool isNamed = word.size() >= shortestPrefix && flow.id.text().starts_with(prefix);
        return !isNamed && foldCase(flow.name) != foldCase(word);
    });
    if (all.size() == 1)
        return std::move(all.front());
    complain(context.session.texts().text(all.empty() ? "cli.flow.unknown" : "cli.flow.ambiguous",
                                          {{"word", printable(word)}, {"count", all.size()}}));
    return std::nullopt;
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
