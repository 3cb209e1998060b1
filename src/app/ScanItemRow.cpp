#include "app/ScanItemRow.h"

#include "app/AppTexts.h"

namespace vh::app {

std::span<const RecordListModel<ScanItemRow>::Role> ScanItemRow::roles() {
    using Row = const ScanItemRow&;
    static constexpr RecordListModel<ScanItemRow>::Role table[] = {
        {"itemId",
         [](Row row) {
             return QVariant(qtText(row.id.text()));
         }},
        {"name",
         [](Row row) {
             return QVariant(row.name);
         }},
        {"path",
         [](Row row) {
             return QVariant(row.path);
         }},
        {"displayPath",
         [](Row row) {
             return QVariant(row.displayPath);
         }},
        {"byteSize",
         [](Row row) {
             return QVariant(row.byteSize);
         }},
        {"sizeText",
         [](Row row) {
             return QVariant(row.sizeText);
         }},
        {"fraction",
         [](Row row) {
             return QVariant(row.fraction);
         }},
        {"category",
         [](Row row) {
             return QVariant(row.category);
         }},
        {"categoryTitle",
         [](Row row) {
             return QVariant(row.categoryTitle);
         }},
        {"selected",
         [](Row row) {
             return QVariant(row.selected);
         }},
        {"isProtected",
         [](Row row) {
             return QVariant(row.isProtected);
         }},
    };
    return table;
}

} // namespace vh::app
