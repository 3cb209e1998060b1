#include "Core/ByteFormat.h"
#include "Core/Fold.h"
#include "Core/Printable.h"

#include <gtest/gtest.h>
#include <limits>

namespace vh {
namespace {

using enum Language;

TEST(ByteFormat, WritesSizes) {
    struct Case {
        int64_t bytes;
        Language language;
        std::string_view text;
    };
    const Case cases[]{
        {0, en, "0 bytes"},
        {0, es, "0 bytes"},
        {0, fr, "0 octet"},
        {1, en, "1 byte"},
        {2, fr, "2 octets"},
        {999, en, "999 bytes"},
        {1000, en, "1 kB"},
        {1500, en, "2 kB"},
        {999'499, en, "999 kB"},
        {999'500, en, "1 MB"},
        {1'440'000, en, "1.4 MB"},
        {1'440'000, es, "1,4 MB"},
        {9'960'000, en, "10 MB"},
        {612'000'000, en, "612 MB"},
        {8'400'000'000, en, "8.4 GB"},
        {8'400'000'000, fr, "8,4 Go"},
        {96'000'000'000, en, "96 GB"},
        {99'960'000'000, en, "100 GB"},
        {512'110'190'592, en, "512 GB"},
        {1'200'000'000'000, es, "1,2 TB"},
        {4'000'787'030'016, en, "4 TB"},
        {-8'400'000'000, en, "-8.4 GB"},
        {std::numeric_limits<int64_t>::max(), en, "9.2 EB"},
        {std::numeric_limits<int64_t>::min(), en, "-9.2 EB"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(sizeText(each.bytes, each.language), each.text) << each.bytes;
    EXPECT_EQ(rateText(612.3e6, en), "612 MB/s");
    EXPECT_EQ(rateText(std::numeric_limits<double>::quiet_NaN(), en), "0 bytes/s");
    EXPECT_EQ(rateText(std::numeric_limits<double>::infinity(), fr), "9 Eo/s");
}

TEST(ByteFormat, WritesDurations) {
    const std::pair<double, std::string_view> cases[]{
        {0, "0 s"},           {0.44, "0.4 s"},     {9.94, "9.9 s"},
        {9.96, "10 s"},       {42.4, "42 s"},      {59.6, "1 min"},
        {240, "4 min"},       {252, "4 min 12 s"}, {3600, "1 h"},
        {4320, "1 h 12 min"}, {86399.7, "1 d"},    {183600, "2 d 3 h"},
        {3601, "1 h"},        {-5, "0 s"},         {std::numeric_limits<double>::quiet_NaN(), "0 s"},
    };
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(durationText(seconds, en), text) << seconds;
    EXPECT_EQ(durationText(0.4, es), "0,4 s");
    EXPECT_EQ(durationText(183600, fr), "2 j 3 h");
}

TEST(Fold, ForgetsCaseAndAccents) {
    const std::pair<std::string_view, std::string_view> cases[]{
        {"Caché", "cache"},
        {"CACHE\xCC\x81", "cache"},
        {"ÉCLAIR", "eclair"},
        {"Straße", "strasse"},
        {"\uFB01n", "fin"},
        {"İstanbul", "istanbul"},
        {"ΣΊΣΥΦΟΣ", "σισυφοσ"},
        {"が", "が"},
        {"한글", "한글"},
        {"हिन्दी", "हिन्दी"},
        {"", ""},
    };
    for (const auto& [text, folded] : cases)
        EXPECT_EQ(foldForSearch(text), folded) << text;
    EXPECT_EQ(foldCase("ÉTÉ-A"), "été-a");
    EXPECT_TRUE(containsFolded("Índice de vídeo", foldForSearch("VIDEO")));
    EXPECT_FALSE(containsFolded("video", foldForSearch("videos")));
    EXPECT_EQ(foldForSearch("A\xFFZ"), "a\xEF\xBF\xBDz");
}

TEST(Printable, ShowsAnyBytesOnOneLine) {
    const std::pair<std::string_view, std::string_view> cases[]{
        {"plain name.txt", "plain name.txt"},
        {"año 日本 🎬", "año 日本 🎬"},
        {"a\nb\tc\x1B[31m", "a\\x0Ab\\x09c\\x1B[31m"},
        {"caf\xE9.txt", "caf\\xE9.txt"},
        {"cut \xE2\x82", "cut \\xE2\\x82"},
        {"over\xC0\xAFlong", "over\\xC0\\xAFlong"},
        {"surrogate \xED\xA0\x80", "surrogate \\xED\\xA0\\x80"},
        {"exe\xE2\x80\xAEgpj", "exe\\xE2\\x80\\xAEgpj"},
        {"next\xC2\x85line", "next\\xC2\\x85line"},
        {std::string_view("nul\0", 4), "nul\\x00"},
        {"back\\slash", "back\\slash"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(printable(bytes), text);
}

} // namespace
} // namespace vh
