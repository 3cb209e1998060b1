#include "Core/Codec.h"

#include <gtest/gtest.h>

namespace vh {
namespace {

enum class Mood { calm, wild };
enum class Level { low = 1, high = 4 };
enum class Open { known, other };
struct Inner {
    int number = 0;
    bool operator==(const Inner&) const = default;
};
struct Wait {
    bool operator==(const Wait&) const = default;
};
struct Count {
    int64_t value = 0;
    bool operator==(const Count&) const = default;
};
using Step = std::variant<Wait, Count>;

struct Everything {
    std::string zulu = "z";
    std::string alpha;
    std::optional<int> maybe;
    Mood mood = Mood::calm;
    Level level = Level::low;
    std::vector<Inner> list;
    std::map<std::string, Inner> named;
    std::map<Mood, double> byMood;
    std::map<Uuid, int> byId;
    Bytes bytes;
    Date date{};
    std::vector<Step> steps;
    uint64_t large = 0;
    bool operator==(const Everything&) const = default;
};
struct Lenient {
    int strict = 1;
    int mayLack = 2;
    Mood forgiving = Mood::wild;
};

} // namespace

template <>
inline constexpr auto describe<Mood> = enumeration<Mood>({{Mood::calm, "calm"}, {Mood::wild, "wild"}});
template <>
inline constexpr auto describe<Level> = numberedEnumeration<Level>({{Level::low, 1}, {Level::high, 4}});
template <>
inline constexpr auto describe<Open> =
    enumeration<Open>({{Open::known, "known"}, {Open::other, "other"}}).otherwise(Open::other);
template <>
inline constexpr auto describe<Inner> = record(field("number", &Inner::number));
template <>
inline constexpr auto describe<Count> = record(field("_0", &Count::value));
template <>
inline constexpr auto describe<Step> = taggedUnion(unionCase<Wait>("wait"), unionCase<Count>("count"));
template <>
inline constexpr auto describe<Everything> = record(
    field("zulu", &Everything::zulu), field("alpha", &Everything::alpha), field("maybe", &Everything::maybe),
    field("mood", &Everything::mood), field("level", &Everything::level), field("list", &Everything::list),
    field("named", &Everything::named), field("byMood", &Everything::byMood),
    field("byId", &Everything::byId), field("bytes", &Everything::bytes), field("date", &Everything::date),
    field("steps", &Everything::steps), field("large", &Everything::large));
template <>
inline constexpr auto describe<Lenient> = record(field("strict", &Lenient::strict),
                                                 field("mayLack", &Lenient::mayLack).mayBeMissing(),
                                                 field("forgiving", &Lenient::forgiving).forgiving());

namespace {

TEST(Codec, EverythingComesBackAndKeysAreSorted) {
    const Uuid id = *Uuid::parse("00000000-0000-4000-8000-0000000000aB");
    const Everything all{.zulu = "ñ\n\"\\",
                         .alpha = "odd \xff\xc3 bytes",
                         .mood = Mood::wild,
                         .level = Level::high,
                         .list = {{1}, {2}},
                         .named = {{"b\x80", {3}}},
                         .byMood = {{Mood::calm, 0.1}},
                         .byId = {{id, 5}},
                         .bytes = {std::byte{0}, std::byte{255}},
                         .date = *parseIso8601("2026-11-22T20:18:55Z"),
                         .steps = {Wait{}, Count{-9}},
                         .large = 18446744073709551615u};
    const std::string json = encodeJson(all);
    EXPECT_EQ(decodeJson<Everything>(json), all);
    EXPECT_EQ(decodeJson<Everything>(encodeJson(all, JsonStyle::pretty)), all);
    EXPECT_EQ(json,
              R"({"alpha":"odd \u0000ff\u0000c3 bytes","byId":["00000000-0000-4000-8000-0000000000AB",5],)"
              R"("byMood":["calm",0.1],"bytes":"AP8=","date":"2026-11-22T20:18:55Z","large":)"
              R"(18446744073709551615,"level":4,"list":[{"number":1},{"number":2}],"mood":"wild",)"
              R"("named":{"b\u000080":{"number":3}},"steps":[{"wait":{}},{"count":{"_0":-9}}],)"
              R"("zulu":"ñ\n\"\\"})");
}

/// What decoding says, or the value written again.
template <class T>
std::string reread(std::string_view json) {
    try {
        return encodeJson(decodeJson<T>(json));
    } catch (const DecodeError& error) {
        return error.what();
    }
}

struct Case {
    std::string (*reread)(std::string_view);
    const char* json;
    const char* expected;
};

TEST(Codec, ReadsWhatIsMeantAndNamesThePlaceOfEveryFault) {
    const Case cases[] = {
        {reread<Step>, R"({"count":{"_0":3}})", R"({"count":{"_0":3}})"},
        {reread<Step>, R"({"wait":{"later":1}})", R"({"wait":{}})"},
        {reread<Step>, R"({"wait":{},"count":{"_0":3}})", "Invalid number of keys found, expected one."},
        {reread<Step>, R"({})", "Invalid number of keys found, expected one."},
        {reread<Step>, R"({"jump":{}})", "Invalid number of keys found, expected one."},
        {reread<Step>, R"("wait")", "Expected an object but found a text."},
        {reread<Step>, R"({"wait":1})", "wait: Expected an object but found a number."},
        {reread<std::vector<Step>>, R"([{"wait":{}},{"count":{}}])",
         "[1].count: No value for the key \"_0\"."},

        {reread<Inner>, R"({"number":2.0,"unknown":[1]})", R"({"number":2})"},
        {reread<Inner>, R"({"number":2.5})", "number: Expected a whole number in range but found a number."},
        {reread<Inner>, R"({"number":2147483648})",
         "number: Expected a whole number in range but found a number."},
        {reread<Inner>, R"({"number":null})", "number: Expected a whole number in range but found null."},
        {reread<Inner>, R"({})", "No value for the key \"number\"."},
        {reread<std::map<std::string, Inner>>, R"({"a":{"number":true}})",
         "a.number: Expected a whole number in range but found a boolean."},

        {reread<Lenient>, R"({"strict":5,"forgiving":"moonlit"})",
         R"({"forgiving":"wild","mayLack":2,"strict":5})"},
        {reread<Lenient>, R"({"strict":5,"mayLack":"x"})",
         "mayLack: Expected a whole number in range but found a text."},
        {reread<Lenient>, R"({"mayLack":1})", "No value for the key \"strict\"."},

        {reread<Mood>, R"("moonlit")", "Unknown value \"moonlit\"."},
        {reread<Mood>, R"(3)", "Unknown value \"(not a text)\"."},
        {reread<Open>, R"("moonlit")", R"("other")"},
        {reread<Level>, R"(2)", "Unknown value \"(not a text)\"."},
        {reread<std::optional<Mood>>, R"(null)", "null"},

        {reread<std::map<Mood, int>>, R"(["wild",2,"calm",1])", R"(["calm",1,"wild",2])"},
        {reread<std::map<Mood, int>>, R"(["wild"])",
         "Expected an array of alternating keys and values but found an array."},
        {reread<std::map<Mood, int>>, R"(["wild","x"])",
         "[1]: Expected a whole number in range but found a text."},

        {reread<Date>, R"("2026-11-22T22:18:55.9+02:00")", R"("2026-11-22T20:18:55Z")"},
        {reread<Date>, R"("2026-01-01T00:30:00-0330")", R"("2026-01-01T04:00:00Z")"},
        {reread<Date>, R"("2026-02-30T00:00:00Z")", "Expected an ISO 8601 date but found a text."},
        {reread<Date>, R"("2026-02-03T00:00:00")", "Expected an ISO 8601 date but found a text."},
        {reread<Date>, R"(1700000000)", "Expected an ISO 8601 date but found a number."},

        {reread<Bytes>, R"("AP8=")", R"("AP8=")"},
        {reread<Bytes>, R"("AP8")", "Expected base64 data but found a text."},
        {reread<Bytes>, R"("AP8=\n")", "Expected base64 data but found a text."},
        {reread<Bytes>, R"("A=8=")", "Expected base64 data but found a text."},
        {reread<Bytes>, R"("AP-_")", "Expected base64 data but found a text."},
        {reread<Uuid>, R"("00000000-0000-4000-8000-00000000000")", "Expected a UUID but found a text."},
    };
    for (const auto& each : cases)
        EXPECT_EQ(each.reread(each.json), each.expected) << each.json;
}

TEST(Codec, WhatIsNoJsonIsAnError) {
    for (const char* text : {"", "{", "{} {}", "{\"number\":1,}", "\xff", "nul"})
        EXPECT_THROW(decodeJson<Inner>(text), DecodeError) << text;
    EXPECT_THROW(encodeJson(std::numeric_limits<double>::infinity()), EncodeError);
}

} // namespace
} // namespace vh
