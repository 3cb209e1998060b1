#include "Core/CleanReason.h"

#include "Core/Texts.h"

#include <gtest/gtest.h>

namespace vh {
namespace {

TEST(CleanReason, FirstMatchGivesThePlainReasonAndItsText) {
    struct Row {
        const char* line;
        const char* reason;
        const char* key;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"/x: Needs the privileged helper: permission denied", "needs the privileged helper",
              "app-uninstaller.reason.needs-helper"},
             {"/x: Protected app", "protected app", "app-uninstaller.reason.protected-app"},
             {"/x: Permission denied", "protected by macOS",
              "scan-clean-workspace.reason.protected-by-macos"},
             {"/x: Operation not permitted", "protected by macOS",
              "scan-clean-workspace.reason.protected-by-macos"},
             {"/x: Device or resource busy", "in use by an app",
              "scan-clean-workspace.reason.in-use-by-an-app"},
             {"/x: Still in use: x", "in use by an app", "scan-clean-workspace.reason.in-use-by-an-app"},
             {"/x: Resource temporarily unavailable", "in use by an app",
              "scan-clean-workspace.reason.in-use-by-an-app"},
             {"/x: NO SUCH FILE or directory", "already gone", "scan-clean-workspace.reason.already-gone"},
             {"/x: can only be deleted permanently",
              "owned by the system — only a permanent delete removes it",
              "scan-clean-workspace.reason.owned-by-the-system"},
             {"/x: It is running", "the app is running", "scan-clean-workspace.reason.the-app-is-running"},
             {"/x: Invalid cross-device link", "could not be removed",
              "scan-clean-workspace.reason.could-not-be-removed"},
             {"/permission/busy: Odd", "could not be removed",
              "scan-clean-workspace.reason.could-not-be-removed"},
             {"/x: Fire: fox is open — quit it first", "is open: Fire: fox",
              "privacy-cleaner.reason.app-is-open"},
         }) {
        EXPECT_EQ(plainReason(row.line), row.reason) << row.line;
        EXPECT_EQ(localizedReasonKey(row.reason), row.key);
        EXPECT_TRUE(textPattern(Language::fr, row.key)) << row.key;
    }
    EXPECT_EQ(localizedReason(Texts(Language::es), "is open: Firefox"),
              "Firefox está abierta: ciérrala antes");
    EXPECT_EQ(splitError("/a: b: c").path, "/a");
    EXPECT_EQ(splitError("/a: b: c").text, "b: c");
}

} // namespace
} // namespace vh
