#include "Reports/Pagination.h"
#include "Reports/ReportSheet.h"
#include "Reports/module/Canvas.h"

#include <algorithm>
#include <cmath>

namespace vh::reports {

namespace {

constexpr double sideMargin = 54, topMargin = 54, footTop = 46; ///< the foot's distance from the lower edge
constexpr double hairline = 0.5;

constexpr Font titleFont{22, Weight::semibold}, metaFont{9.5}, factFont{9}, factLabelFont{9},
    totalFont{17, Weight::semibold}, totalLabelFont{8}, columnFont{8, Weight::semibold}, cellFont{8.5},
    runningFont{8.5, Weight::medium}, footFont{7.5};

constexpr double factLabelWidth = 112, factGap = 5;
constexpr int mostFactLines = 4;
constexpr double tileHeight = 50, tileGap = 10, tilePadding = 11;
constexpr size_t tilesInRow = 4;
constexpr double rowHeight = 17, columnsHeight = 22, markerWidth = 16, columnGap = 12, cellInset = 3.4;
constexpr double runningHeight = 30;

/// Draws one report from its first page to its last.
class Painter {
public:
    explicit Painter(const ReportSheet& sheet)
        : sheet_(sheet), report_(sheet.report), canvas_(sheet.width, sheet.height, report_.title),
          width_(sheet.width - 2 * sideMargin), bottom_(sheet.height - footTop - 14) {}

    std::string draw() {
        const double head = drawHead();
        const auto pages = paginate(report_.lines.size(), roomFor(head), roomFor(topMargin + runningHeight));
        for (size_t i = 0; i < pages.size(); ++i) {
            if (i > 0)
                drawRunningHead();
            drawTable(pages[i], i == 0 ? head : topMargin + runningHeight);
            drawFoot(sheet_.pageText(i + 1, pages.size()));
            canvas_.endPage();
        }
        return canvas_.take();
    }

private:
    size_t roomFor(double top) const {
        return static_cast<size_t>(std::max((bottom_ - top - columnsHeight) / rowHeight, 0.0));
    }

    /// Title, facts and totals; gives where the table may begin.
    double drawHead() {
        constexpr double barWidth = 4, indent = 16;
        double y = topMargin;
        canvas_.use(titleFont);
        y += canvas_.text(report_.title, {sideMargin + indent, y, width_ - indent, ink, PANGO_ALIGN_LEFT,
                                          PANGO_ELLIPSIZE_END, 2}) +
             3;
        canvas_.use(metaFont);
        y += canvas_.text(report_.meta, {sideMargin + indent, y, width_ - indent, secondInk});
        canvas_.fill({sideMargin, topMargin + 3, barWidth, y - topMargin - 4}, inkOf(report_.tint),
                     barWidth / 2);
        y = drawTotals(y + 24);
        return drawFacts(y) + 14;
    }

    double drawTotals(double y) {
        const auto& totals = report_.totals;
        const size_t inRow = std::max<size_t>(std::min(totals.size(), tilesInRow), 3);
        const double tileWidth = (width_ + tileGap) / double(inRow) - tileGap;
        for (size_t i = 0; i < totals.size(); ++i) {
            const double x = sideMargin + double(i % inRow) * (tileWidth + tileGap);
            const double top = y + double(i / inRow) * (tileHeight + tileGap);
            const double inner = tileWidth - 2 * tilePadding;
            canvas_.fill({x, top, tileWidth, tileHeight}, panel, 6);
            canvas_.use(totalLabelFont);
            canvas_.text(totals[i].label, {x + tilePadding, top + 9, inner, secondInk});
            canvas_.use(totalFont);
            canvas_.text(totals[i].value, {x + tilePadding, top + 20, inner, inkOf(totals[i].tone)});
        }
        const double rows = std::ceil(double(totals.size()) / double(inRow));
        return totals.empty() ? y : y + rows * (tileHeight + tileGap) + 10;
    }

    double drawFacts(double y) {
        for (const auto& fact : report_.facts) {
            if (fact.value.empty())
                continue;
            canvas_.use(factLabelFont);
            canvas_.text(fact.label, {sideMargin, y, factLabelWidth - columnGap, secondInk});
            canvas_.use(factFont);
            y += canvas_.text(fact.value, {sideMargin + factLabelWidth, y, width_ - factLabelWidth, ink,
                                           PANGO_ALIGN_LEFT, PANGO_ELLIPSIZE_END, mostFactLines}) +
                 factGap;
        }
        return y;
    }

    void drawRunningHead() {
        canvas_.use(runningFont);
        canvas_.text(report_.title, {sideMargin, topMargin - 8, width_ * 0.55, ink});
        canvas_.use({runningFont.size});
        canvas_.text(report_.meta, {sideMargin + width_ * 0.55, topMargin - 8, width_ * 0.45, secondInk,
                                    PANGO_ALIGN_RIGHT});
    }

    /// Where a column's texts stand; the first leaves room for the markers.
    TextBox cellBox(size_t column, double y) const {
        double x = sideMargin + markerWidth;
        const double room = width_ - markerWidth;
        for (size_t i = 0; i < column; ++i)
            x += report_.widths[i] * room;
        const bool isLast = column + 1 == report_.widths.size();
        TextBox box{x, y, report_.widths[column] * room - (isLast ? 4 : columnGap)};
        box.alignment = report_.numeric.contains(column) ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_LEFT;
        box.ellipsis = PANGO_ELLIPSIZE_MIDDLE;
        return box;
    }

    void drawTable(const PageLines& lines, double y) {
        if (lines.count == 0)
            return;
        canvas_.use(columnFont);
        for (size_t i = 0; i < report_.columns.size(); ++i) {
            TextBox box = cellBox(i, y + 5);
            box.color = secondInk;
            canvas_.text(report_.columns[i], box);
        }
        y += columnsHeight;
        canvas_.fill({sideMargin, y - hairline, width_, hairline}, thirdInk);
        canvas_.use(cellFont);
        for (size_t i = lines.first; i < lines.first + lines.count; ++i, y += rowHeight)
            drawLine(report_.lines[i], y);
    }

    void drawLine(const RunReportDocument::Line& line, double y) {
        if (line.marker) {
            canvas_.fill({sideMargin, y, width_, rowHeight - hairline}, groundOf(line.tone));
            canvas_.text(*line.marker,
                         {sideMargin, y + cellInset, markerWidth, inkOf(line.tone), PANGO_ALIGN_CENTER});
        }
        for (size_t i = 0; i < line.cells.size(); ++i)
            if (!line.cells[i].empty())
                canvas_.text(line.cells[i], cellBox(i, y + cellInset));
        canvas_.fill({sideMargin, y + rowHeight - hairline, width_, hairline}, lineColor);
    }

    void drawFoot(const std::string& page) {
        const double y = sheet_.height - footTop;
        canvas_.use(footFont);
        canvas_.text(report_.identity, {sideMargin, y, width_ * 0.6, thirdInk});
        canvas_.text(page, {sideMargin + width_ * 0.6, y, width_ * 0.4, secondInk, PANGO_ALIGN_RIGHT});
    }

    const ReportSheet& sheet_;
    const RunReportDocument& report_;
    Canvas canvas_;
    const double width_;  ///< between the margins
    const double bottom_; ///< where lines end
};

std::string drawReport(const ReportSheet& sheet) {
    return Painter(sheet).draw();
}

} // namespace

} // namespace vh::reports

extern "C" void* vhModule() {
    static vh::reports::ReportModule module{vh::reports::drawReport};
    return &module;
}
