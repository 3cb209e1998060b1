#include "Core/Secrets.h"

#include "Platform/Files.h"
#include "support/PrivateBus.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace vh {
namespace {

TEST(Secrets, WithoutAServiceTheyLieInAFileForTheUserAlone) {
    const test::NoBus none;
    const test::TempDir folder;
    const std::string file = folder / "Varnholt/secrets.json";
    const auto one = openSecretStore(file), other = openSecretStore(file);
    EXPECT_EQ(one->get("mail.password"), std::nullopt);
    one->remove("mail.password");
    EXPECT_FALSE(statusOf(file)) << "nothing was stored, and yet there is a file";

    const std::string secret = "pä\"ss\n\xff";
    std::thread writer([&] { one->set("mail.password", "Mail", secret); });
    other->set("key", "Key", "2");
    writer.join();
    EXPECT_EQ(other->get("mail.password"), secret);
    EXPECT_EQ(one->get("key"), "2");
    const auto mode = std::filesystem::status(file).permissions();
    EXPECT_EQ(mode, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    other->remove("mail.password");
    EXPECT_EQ(one->get("mail.password"), std::nullopt);
    EXPECT_EQ(one->get("key"), "2");
}

} // namespace
} // namespace vh
