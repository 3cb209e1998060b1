#include "ui/IconProvider.h"

#include <QImage>
#include <gtest/gtest.h>
#include <set>

namespace vh::ui {

namespace {

/// The colours of the pixels that are wholly covered.
std::set<QRgb> fullColors(const QImage& image) {
    std::set<QRgb> colors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) == 255)
                colors.insert(image.pixel(x, y));
    return colors;
}

} // namespace

TEST(IconProvider, drawsInTheColourAndAtTheSizeAskedFor) {
    IconProvider provider;
    for (const int side : {16, 32, 40}) {
        QSize size;
        const auto image = provider.requestImage("trash?c2372e", &size, {side, side});
        EXPECT_EQ(image.size(), QSize(side, side));
        EXPECT_EQ(size, image.size());
        EXPECT_EQ(fullColors(image), (std::set<QRgb>{qRgb(0xc2, 0x37, 0x2e)})) << side;
    }
}

TEST(IconProvider, givesAnEmptyPictureForAnIconThatDoesNotExist) {
    IconProvider provider;
    const auto image = provider.requestImage("no-such-icon?000000", nullptr, {});
    EXPECT_EQ(image.size(), QSize(16, 16));
    EXPECT_TRUE(fullColors(image).empty());
}

} // namespace vh::ui
