#include "Core/UserDefaults.h"

#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Processes.h"
#include "support/FaultInjector.h"
#include "support/TempDir.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace vh {
namespace {

class UserDefaultsTest : public testing::Test {
protected:
    test::TempDir dir;
    std::string file = dir / "config/defaults.json";
};

TEST_F(UserDefaultsTest, KeepsValuesOfEveryKindAndSeesWhatOthersWrite) {
    UserDefaults one(file);
    UserDefaults two(file);
    EXPECT_EQ(two.get<int>("a.number"), std::nullopt);
    one.set("a.number", 7);
    one.set("b.list", std::vector<std::string>{"x", "odd \xff"});
    one.set("c.map", std::map<std::string, double>{{"k", 0.5}});
    one.set("d.text", "ñ");
    EXPECT_EQ(two.get<int>("a.number"), 7);
    EXPECT_EQ(two.get<std::vector<std::string>>("b.list"), (std::vector<std::string>{"x", "odd \xff"}));
    EXPECT_EQ((two.get<std::map<std::string, double>>("c.map")), (std::map<std::string, double>{{"k", 0.5}}));
    EXPECT_EQ(two.get<bool>("d.text"), std::nullopt) << "a value of another kind was taken";
    two.remove("c.map");
    two.remove("b.list");
    EXPECT_EQ(readFile(file), "{\n  \"a.number\": 7,\n  \"d.text\": \"ñ\"\n}\n");
    EXPECT_EQ(one.get<std::string>("d.text"), "ñ");
}

TEST_F(UserDefaultsTest, SeesEvenARewriteOfTheSameSize) {
    UserDefaults one(file);
    UserDefaults two(file);
    for (int i = 0; i < 50; ++i) {
        one.set("n", i % 10);
        ASSERT_EQ(two.get<int>("n"), i % 10);
    }
}

TEST_F(UserDefaultsTest, GarbageIsEmptyAndKeptAside) {
    for (const std::string garbage : {"{ \"a\": 1", "[1,2]", "\xff\xfe", ""}) {
        makeFolders(dir / "config");
        writeFileAtomically(file, garbage);
        UserDefaults defaults(file);
        EXPECT_EQ(defaults.get<int>("a"), std::nullopt);
        EXPECT_EQ(readFile(file), garbage) << "reading changed the file";
        defaults.set("b", 2);
        EXPECT_EQ(readFile(file + ".damaged"), garbage);
        EXPECT_EQ(UserDefaults(file).get<int>("b"), 2);
    }
}

TEST_F(UserDefaultsTest, ValuesItDoesNotKnowSurvive) {
    makeFolders(dir / "config");
    writeFileAtomically(file, R"({"z":{"deep":[1,18446744073709551615,-0.25,null,true]},"y":"\u0000ff"})");
    UserDefaults(file).set("a", 1);
    UserDefaults(file).remove("a");
    EXPECT_EQ(UserDefaults(file).get<std::string>("y"), "\xff");
    const std::string text = readFile(file);
    for (const auto* part : {"18446744073709551615", "-0.25", "null", "true", "deep"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST_F(UserDefaultsTest, TwoWritingProcessesLoseNothing) {
    test::Processes others;
    for (const std::string who : {"a", "b"})
        others.start([&] {
            UserDefaults defaults(file);
            for (int i = 0; i < 100; ++i)
                defaults.set(fmt::format("{}.{}", who, i), i);
        });
    others.finish();
    const UserDefaults defaults(file);
    for (int i = 0; i < 100; ++i)
        for (const auto* who : {"a", "b"})
            EXPECT_EQ(defaults.get<int>(fmt::format("{}.{}", who, i)), i);
}

TEST_F(UserDefaultsTest, AFailedOrKilledWriteLeavesOldOrNew) {
    for (const std::string before : {"{\"a\":1,\"keep\":3}", "{ damaged"}) {
        const bool damaged = before == "{ damaged";
        const auto setUp = [&] {
            makeFolders(dir / "config");
            std::filesystem::remove(file + ".damaged");
            writeFileAtomically(file, before);
        };
        const auto work = [&] {
            UserDefaults(file).set("a", 2);
        };
        const auto check = [&](const test::FaultPoint&) {
            UserDefaults defaults(file);
            const auto value = defaults.get<int>("a");
            EXPECT_EQ(defaults.get<int>("keep"), damaged ? std::nullopt : std::optional(3));
            EXPECT_TRUE(!damaged || readFile(value ? file + ".damaged" : file) == before);
            EXPECT_TRUE(value == 2 || value == (damaged ? std::nullopt : std::optional(1)));
        };
        test::forEachFault(setUp, work, check);
        test::forEachKill(setUp, work, check);
    }
}

} // namespace
} // namespace vh
