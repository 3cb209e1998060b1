#include "Core/ItemRemoval.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "support/TempDir.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace vh {
namespace {

TEST(ItemRemoval, PermanentLeavesNothingAndTrashSaysWhereItLies) {
    const test::TempDir home;
    ASSERT_EQ(setenv("XDG_DATA_HOME", (home / "data").c_str(), 1), 0);
    const std::string gone = home / "gone";
    const std::string kept = home / "kept";
    writeFileAtomically(gone, "a");
    writeFileAtomically(kept, "b");

    EXPECT_EQ(removeItem(gone, RemovalMethod::permanent), std::nullopt);
    EXPECT_FALSE(statusOf(gone));

    const auto landed = removeItem(kept, RemovalMethod::trash);
    EXPECT_FALSE(statusOf(kept));
    ASSERT_TRUE(landed);
    EXPECT_EQ(readFile(*landed), "b");
    EXPECT_TRUE(landed->starts_with(home.path())) << *landed;
}

TEST(ItemRemoval, LeavesAloneWhatIsNotWhatWasExpected) {
    const test::TempDir folder;
    const std::string path = folder / "item";
    writeFileAtomically(path, "old");
    const auto seen = identityOf(path);
    ASSERT_TRUE(seen);
    moveFile(path, folder / "moved");
    writeFileAtomically(path, "new");
    for (RemovalMethod method : allCases<RemovalMethod>())
        EXPECT_THROW(removeItem(path, method, seen), SystemError) << rawValue(method);
    EXPECT_EQ(readFile(path), "new");
}

} // namespace
} // namespace vh
