#include "Tools/FastCopy/view/CopyFiles.h"

#include "Core/Codec.h"
#include "Core/Printable.h"
#include "Tools/FastCopy/view/CopyRows.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"

#include <fmt/format.h>

namespace vh::app {

namespace {

bool isFaulty(copy::CopiedFileState state) {
    return state == copy::CopiedFileState::failed || state == copy::CopiedFileState::mismatched;
}

} // namespace

void CopyFilesModel::show(std::shared_ptr<const copy::CopyReport> report, bool faultyOnly) {
    beginResetModel();
    report_ = std::move(report);
    shown_.clear();
    for (size_t each = 0; report_ && each < report_->files.size(); ++each)
        if (!faultyOnly || isFaulty(report_->files[each].state))
            shown_.push_back(each);
    endResetModel();
}

int CopyFilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant CopyFilesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const copy::CopiedFile& file = report_->files[shown_[static_cast<size_t>(index.row())]];
    switch (role) {
    case name:
        return qtText(printable(file.relative));
    case place:
        return CopyWords(context_).placeName(file.destination);
    case sizeText:
        return context_.texts().sizeText(file.bytes);
    case outcome:
        return isFaulty(file.state)                           ? QStringLiteral("failed")
               : file.state == copy::CopiedFileState::skipped ? QStringLiteral("skipped")
                                                              : QStringLiteral("success");
    case stateTitle:
        return context_.texts().text(fmt::format("copy-page.file.{}", rawValue(file.state)));
    case checksum:
        return qtText(file.checksum.value_or(""));
    default:
        return {};
    }
}

QHash<int, QByteArray> CopyFilesModel::roleNames() const {
    return {{name, "fileName"},   {place, "place"},           {sizeText, "sizeText"},
            {outcome, "outcome"}, {stateTitle, "stateTitle"}, {checksum, "checksum"}};
}

} // namespace vh::app
