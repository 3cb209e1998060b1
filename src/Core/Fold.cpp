#include "Core/Fold.h"

#include <algorithm>
#include <stdexcept>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace vh {

namespace {

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string lowerAscii(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c += 'a' - 'A';
    return lower;
}

void check(UErrorCode status) {
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
}

/// Only the blocks of accents: the vowel signs of Indic scripts and the marks of kana tell words apart.
bool isAccent(UChar32 c) {
    return (c >= 0x0300 && c <= 0x036F) || (c >= 0x1AB0 && c <= 0x1AFF) || (c >= 0x1DC0 && c <= 0x1DFF) ||
           (c >= 0x20D0 && c <= 0x20FF);
}

} // namespace

std::string foldCase(std::string_view text) {
    if (isAscii(text))
        return lowerAscii(text);
    std::string folded;
    icu::StringByteSink<std::string> sink(&folded);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(0, icu::StringPiece(text.data(), static_cast<int32_t>(text.size())), sink, nullptr,
                           status);
    check(status);
    return folded;
}

std::string foldForSearch(std::string_view text) {
    if (isAscii(text))
        return lowerAscii(text);
    UErrorCode status = U_ZERO_ERROR;
    const auto* caseless = icu::Normalizer2::getNFKCCasefoldInstance(status);
    const auto* decompose = icu::Normalizer2::getNFDInstance(status);
    check(status);
    const auto source = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    const auto apart = decompose->normalize(caseless->normalize(source, status), status);
    check(status);
    icu::UnicodeString bare;
    for (int32_t i = 0; i < apart.length(); i = apart.moveIndex32(i, 1))
        if (!isAccent(apart.char32At(i)))
            bare.append(apart.char32At(i));
    // Together again, so that Hangul and kana come out as they are typed.
    std::string folded;
    icu::Normalizer2::getNFCInstance(status)->normalize(bare, status).toUTF8String(folded);
    check(status);
    return folded;
}

bool containsFolded(std::string_view text, std::string_view foldedNeedle) {
    return foldForSearch(text).find(foldedNeedle) != std::string::npos;
}

} // namespace vh
