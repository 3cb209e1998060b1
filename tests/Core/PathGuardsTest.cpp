#include "Core/PathAllowlist.h"
#include "Core/SystemPaths.h"
#include "Platform/Folders.h"

#include <gtest/gtest.h>

namespace vh {
namespace {

using namespace std::string_literals;

TEST(PathAllowlist, AllowsAPrefixAndWhatLiesBelowIt) {
    struct Case {
        std::vector<std::string> prefixes;
        std::string path;
        bool allowed;
    };
    const Case cases[]{
        {{"/a/b"}, "/a/b", true},
        {{"/a/b"}, "/a/b/c", true},
        {{"/a/b"}, "/a/bc", false},
        {{"/a/b"}, "/a", false},
        {{"/a/b"}, "/a/b/../c", false},
        {{"/a/b"}, "/a/b/c/..", true},
        {{"/a/b"}, "/a/./b//c/", true},
        {{"/a/b"}, "/../../a/b/c", true},
        {{"/a/b/"}, "/a/b", true},
        {{"/a/x/../b"}, "/a/b/c", true},
        {{"/x", "/a/b"}, "/a/b/c", true},
        {{"/a/b"}, "a/b/c", false},
        {{"/a/b"}, "", false},
        {{"/a/b"}, "/", false},
        {{"/"}, "/", false},
        {{"/"}, "/a/..", false},
        {{"/"}, "/a", true},
        {{}, "/a", false},
        {{""}, "/a", false},
        {{"/a/caf\xC3\xA9"}, "/a/cafe\xCC\x81/x", false},
        {{"/a/\xFF"}, "/a/\xFF/x", true},
        {{"/a/b"}, "/a/b\0/../../etc"s, false},
        {{"/a/b"}, "/a/b/c\0d"s, false},
        {{"~/.cache"}, Folders::ofUser().home + "/.cache/x", true},
        {{Folders::ofUser().home + "/.cache"}, "~/.cache/x", true},
        {{"/tmp"}, "/private/tmpfile", false},
    };
    for (const auto& each : cases)
        EXPECT_EQ(PathAllowlist(each.prefixes).allows(each.path), each.allowed) << each.path;
}

TEST(PathAllowlist, RefusesInTheWordsOfWhoAsked) {
    const PathAllowlist list({"/a/b"});
    EXPECT_NO_THROW(list.assertAllowed("/a/b/c"));
    try {
        list.assertAllowed("/a/b/../c");
        FAIL() << "allowed";
    } catch (const PathAllowlistError& error) {
        EXPECT_EQ(error.path, "/a/b/../c");
        EXPECT_STREQ(error.what(), "Path not allowed: /a/b/../c");
    }
}

TEST(PathAllowlist, StandardisesPaths) {
    const std::pair<std::string, std::string> cases[]{
        {"/a//b/./c/", "/a/b/c"},
        {"/..", "/"},
        {"//", "/"},
        {"", ""},
        {"a/../../b", "../b"},
        {".", ""},
        {"~x/y", "~x/y"},
        {"/a/~/b", "/a/~/b"},
        {"/private", "/private"},
        {"/a/..b", "/a/..b"},
    };
    for (const auto& [path, normal] : cases)
        EXPECT_EQ(PathAllowlist::normalize(path), normal) << path;
}

TEST(SystemPaths, SeeThroughTheAliasRoots) {
    struct Case {
        std::string_view path;
        bool isVirtual;
        std::string_view real;
    };
    const Case cases[]{
        {"/.vol/1/2", true, "/1/2"},
        {"/.nofollow", true, "/"},
        {"/.nofollow/", true, "/"},
        {"/.resolve/etc/x", true, "/etc/x"},
        {"/.volume", false, "/.volume"},
        {"/.vol", true, "/"},
        {"/home/.vol", false, "/home/.vol"},
        {"/", false, "/"},
        {"", false, ""},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(SystemPaths::isVirtual(each.path), each.isVirtual) << each.path;
        EXPECT_EQ(SystemPaths::real(each.path), each.real) << each.path;
    }
}

} // namespace
} // namespace vh
