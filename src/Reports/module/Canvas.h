#pragma once

#include "Core/RunReportDocument.h"

#include <cairo.h>
#include <memory>
#include <pango/pangocairo.h>
#include <string>
#include <string_view>

namespace vh::reports {

struct Color {
    double red, green, blue;
};

constexpr Color rgb(unsigned value) {
    return {double(value >> 16 & 255) / 255, double(value >> 8 & 255) / 255, double(value & 255) / 255};
}

constexpr Color ink = rgb(0x16191D), secondInk = rgb(0x5A6370), thirdInk = rgb(0x8B94A1),
                lineColor = rgb(0xE1E4E8), panel = rgb(0xF5F6F7);

/// A tone as ink, and as the light ground behind what has it.
Color inkOf(Tone tone);
Color groundOf(Tone tone);

enum class Weight { regular, medium, semibold };

struct Font {
    double size; ///< points
    Weight weight = Weight::regular;
};

struct TextBox {
    double x, y; ///< the upper left corner
    double width;
    Color color = ink;
    PangoAlignment alignment = PANGO_ALIGN_LEFT;
    PangoEllipsizeMode ellipsis = PANGO_ELLIPSIZE_END;
    int mostLines = 1;
};

struct Rectangle {
    double x, y, width, height;
};

/// The pages of a PDF that is made in memory. Points, from the upper left corner down.
class Canvas {
public:
    Canvas(double width, double height, const std::string& title);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// Chooses the font of what follows.
    void use(const Font& font);
    /// Draws text and gives its height; what does not fit is cut as the box says.
    double text(std::string_view text, const TextBox& box);
    /// The height that it would have.
    double measure(std::string_view text, const TextBox& box);
    void fill(const Rectangle& area, Color color, double radius = 0);
    void endPage();

    /// Ends the document. Throws std::runtime_error.
    std::string take();

private:
    void lay(std::string_view text, const TextBox& box);
    void setColor(Color color);

    std::string bytes_;
    cairo_surface_t* surface_;
    cairo_t* cairo_;
    PangoLayout* layout_;
};

} // namespace vh::reports
