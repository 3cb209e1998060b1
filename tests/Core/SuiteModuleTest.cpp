#include "Core/SuiteModule.h"
#include "Core/Codec.h"

#include <gtest/gtest.h>
#include <limits>

namespace vh {
namespace {

TEST(SuiteModule, WithoutAnEngineItFindsAndRemovesNothing) {
    SuiteModule module(*moduleCard("raid"));
    const Date before = systemNow();
    const ScanReport report = module.scan({});
    EXPECT_EQ(report.moduleID, "raid");
    EXPECT_TRUE(report.items.empty());
    EXPECT_GE(report.scannedAt, before);
    const auto result = module.clean(CleanSelection::all(report, RemovalMethod::trash), {});
    EXPECT_EQ(encodeJson(result), R"({"errors":[],"freedBytes":0,"items":[],"removedCount":0})");
}

TEST(ScanReport, AddsUpAndSelectsAll) {
    ScanReport report;
    EXPECT_EQ(report.totalBytes(), 0);
    EXPECT_TRUE(CleanSelection::all(report, RemovalMethod::trash).itemIDs.empty());
    for (int64_t size : {3, 4})
        report.items.push_back({Uuid::random(), "/x", size, "caches", FileIdentity{1, 2}});
    EXPECT_EQ(report.totalBytes(), 7);
    const auto all = CleanSelection::all(report, RemovalMethod::permanent);
    EXPECT_EQ(all.itemIDs, (std::set{report.items[0].id, report.items[1].id}));
    EXPECT_EQ(all.method, RemovalMethod::permanent);

    const auto read = decodeJson<ScanReport>(encodeJson(report));
    ASSERT_EQ(read.items.size(), 2u);
    EXPECT_EQ(read.items[1].id, report.items[1].id);
    EXPECT_EQ(read.items[1].byteSize, 4);
    EXPECT_FALSE(read.items[1].identity) << "an identity was stored and would be believed later";
}

TEST(ScanReportDeathTest, ASumBeyond64BitsEndsTheProgram) {
    ScanReport report;
    report.items.resize(2);
    report.items[0].byteSize = std::numeric_limits<int64_t>::max();
    report.items[1].byteSize = 1;
    EXPECT_DEATH(report.totalBytes(), "64 bits");
}

} // namespace
} // namespace vh
