#include "app/ScanItemRow.h"

#include "app/AppTexts.h"

namespace vh::app {

std::span<const RecordListModel<ScanItemRow>::Role> ScanItemRow::roles() {
    using Row = const ScanItemRow&;
    using Model = RecordListModel<ScanItemRow>;
    static constexpr Model::Role table[] = {
        {"itemId",
         [](Row row) {
             return QVariant(qtText(row.id.text()));
         }},
        Model::role<&ScanItemRow::name>("name"),
        Model::role<&ScanItemRow::path>("path"),
        Model::role<&ScanItemRow::displayPath>("displayPath"),
        Model::role<&ScanItemRow::byteSize>("byteSize"),
        Model::role<&ScanItemRow::sizeText>("sizeText"),
        Model::role<&ScanItemRow::fraction>("fraction"),
        Model::role<&ScanItemRow::category>("category"),
        Model::role<&ScanItemRow::categoryTitle>("categoryTitle"),
        Model::role<&ScanItemRow::selected>("selected"),
        Model::role<&ScanItemRow::isProtected>("isProtected"),
        Model::role<&ScanItemRow::isRecent>("isRecent"),
    };
    return table;
}

} // namespace vh::app
