#include "Reports/module/Canvas.h"

#include <cairo-pdf.h>
#include <numbers>
#include <stdexcept>

namespace vh::reports {

namespace {

cairo_status_t append(void* bytes, const unsigned char* data, unsigned length) {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

PangoWeight pangoWeight(Weight weight) {
    switch (weight) {
    case Weight::semibold:
        return PANGO_WEIGHT_SEMIBOLD;
    case Weight::medium:
        return PANGO_WEIGHT_MEDIUM;
    case Weight::regular:
        break;
    }
    return PANGO_WEIGHT_NORMAL;
}

} // namespace

Color inkOf(Tone tone) {
    switch (tone) {
    case Tone::good:
        return rgb(0x1F8A4C);
    case Tone::warn:
        return rgb(0xB26B00);
    case Tone::bad:
        return rgb(0xC2372E);
    case Tone::normal:
        break;
    }
    return ink;
}

Color groundOf(Tone tone) {
    switch (tone) {
    case Tone::good:
        return rgb(0xE0F2E7);
    case Tone::warn:
        return rgb(0xFAEEDC);
    case Tone::bad:
        return rgb(0xFBE6E4);
    case Tone::normal:
        break;
    }
    return panel;
}

Canvas::Canvas(double width, double height, const std::string& title)
    : surface_(cairo_pdf_surface_create_for_stream(append, &bytes_, width, height)),
      cairo_(cairo_create(surface_)), layout_(pango_cairo_create_layout(cairo_)) {
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_TITLE, title.c_str());
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATOR, "Varnholt");
    // Paper has finer dots than any screen.
    pango_context_set_round_glyph_positions(pango_layout_get_context(layout_), FALSE);
    // Figures of one width, so that columns of numbers line up.
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_font_features_new("tnum=1"));
    pango_layout_set_attributes(layout_, attributes);
    pango_attr_list_unref(attributes);
}

Canvas::~Canvas() {
    g_object_unref(layout_);
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
}

void Canvas::use(const Font& font) {
    PangoFontDescription* const description = pango_font_description_new();
    pango_font_description_set_family(description, "Inter, Sans");
    pango_font_description_set_weight(description, pangoWeight(font.weight));
    pango_font_description_set_absolute_size(description, font.size * PANGO_SCALE);
    pango_layout_set_font_description(layout_, description);
    pango_font_description_free(description);
}

void Canvas::lay(std::string_view text, const TextBox& box) {
    pango_layout_set_width(layout_, static_cast<int>(box.width * PANGO_SCALE));
    pango_layout_set_alignment(layout_, box.alignment);
    pango_layout_set_ellipsize(layout_, box.ellipsis);
    pango_layout_set_wrap(layout_, PANGO_WRAP_WORD_CHAR);
    pango_layout_set_height(layout_, -box.mostLines);
    pango_layout_set_text(layout_, text.data(), static_cast<int>(text.size()));
}

double Canvas::measure(std::string_view text, const TextBox& box) {
    lay(text, box);
    int height = 0;
    pango_layout_get_size(layout_, nullptr, &height);
    return double(height) / PANGO_SCALE;
}

double Canvas::text(std::string_view text, const TextBox& box) {
    const double height = measure(text, box);
    setColor(box.color);
    cairo_move_to(cairo_, box.x, box.y);
    pango_cairo_show_layout(cairo_, layout_);
    return height;
}

void Canvas::fill(const Rectangle& area, Color color, double radius) {
    constexpr double quarter = std::numbers::pi / 2;
    const double left = area.x + radius, right = area.x + area.width - radius;
    const double top = area.y + radius, bottom = area.y + area.height - radius;
    setColor(color);
    cairo_new_path(cairo_);
    cairo_arc(cairo_, right, top, radius, -quarter, 0);
    cairo_arc(cairo_, right, bottom, radius, 0, quarter);
    cairo_arc(cairo_, left, bottom, radius, quarter, 2 * quarter);
    cairo_arc(cairo_, left, top, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cairo_);
    cairo_fill(cairo_);
}

void Canvas::setColor(Color color) {
    cairo_set_source_rgb(cairo_, color.red, color.green, color.blue);
}

void Canvas::endPage() {
    cairo_show_page(cairo_);
}

std::string Canvas::take() {
    cairo_surface_finish(surface_);
    const cairo_status_t status = cairo_surface_status(surface_);
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(cairo_status_to_string(status));
    return std::move(bytes_);
}

} // namespace vh::reports
