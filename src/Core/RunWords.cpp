#include "Core/RunWords.h"

#include "Core/MessageCodec.h"
#include "Core/Texts.h"

#include <fmt/format.h>

namespace vh {

namespace {

/// What a record's words are made of.
struct RunFacts {
    std::string language; ///< of the words; the first key in JSON, see isIn
    Messages problems;
    Messages summary;
};

/// Longer or deeper facts than any run of ours leaves are none.
constexpr size_t longestFacts = 64u << 10;
constexpr size_t deepestFacts = 40;

} // namespace

template <>
inline constexpr auto describe<RunFacts> = record(field("language", &RunFacts::language),
                                                  field("problems", &RunFacts::problems).mayBeMissing(),
                                                  field("summary", &RunFacts::summary));

namespace {

/// Most records are read in the language that they were written in, and then their own words will do.
bool isIn(Language language, std::string_view facts) {
    return facts.starts_with(fmt::format(R"({{"language":"{}")", code(language)));
}

/// Nothing when there are none, or none that can be read.
std::optional<RunFacts> factsOf(const RunRecord& record) {
    if (!record.facts || record.facts->size() > longestFacts)
        return std::nullopt;
    try {
        thread_local JsonDocument parser(deepestFacts);
        return decodeJson<RunFacts>(parser.parse(*record.facts));
    } catch (const DecodeError&) {
        return std::nullopt; // of a newer version, or of somebody else
    }
}

/// Nothing when the record's own words are the ones to show.
std::optional<RunFacts> factsFor(const RunRecord& record, const Texts& texts) {
    return record.facts && isIn(texts.language(), *record.facts) ? std::nullopt : factsOf(record);
}

} // namespace

Messages firstProblems(Messages problems) {
    constexpr size_t most = 20;
    if (problems.size() > most) {
        problems.resize(most);
        problems.push_back(Message::literal("…"));
    }
    return problems;
}

RunWords::RunWords(const Messages& sentences, const Texts& texts, const Messages& problemLines)
    : summary(worded(sentences, texts)), problems(joinList(linesOf(problemLines, texts))) {
    std::string json = encodeJson(RunFacts{std::string(code(texts.language())), problemLines, sentences});
    if (json.size() <= longestFacts)
        facts = std::move(json);
}

std::string summaryOf(const RunRecord& record, const Texts& texts) {
    const auto facts = factsFor(record, texts);
    const auto words = facts ? tryWorded(facts->summary, texts) : std::nullopt;
    return words && !words->empty() ? *words : record.summary;
}

std::optional<std::string> detailOf(const RunRecord& record, RunDetail detail, const Texts& texts) {
    const auto stored = record.detail(detail);
    if (!stored || detail != RunDetail::errors)
        return stored;
    const auto facts = factsFor(record, texts);
    if (!facts || facts->problems.empty())
        return stored;
    std::vector<std::string> lines;
    for (const Message& each : facts->problems) {
        const auto words = tryWorded({each}, texts);
        if (!words)
            return stored;
        lines.push_back(*words);
    }
    return joinList(lines);
}

Messages sentencesOf(const RunRecord& record) {
    const auto facts = factsOf(record);
    return facts ? facts->summary : Messages{Message::literal(record.summary)};
}

Messages problemsOf(const RunRecord& record) {
    if (const auto facts = factsOf(record); facts && !facts->problems.empty())
        return facts->problems;
    Messages lines;
    for (const std::string& line : splitList(record.detail(RunDetail::errors).value_or("")))
        lines.push_back(Message::literal(line));
    return lines;
}

} // namespace vh
