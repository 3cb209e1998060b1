#pragma once

#include "Core/CleanJob.h"
#include "Core/LocalCalendar.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"
#include "support/Sandbox.h"
#include "support/view/MainThread.h"

#include <QAbstractItemModel>
#include <QVariantMap>
#include <gmock/gmock.h>

namespace vh::app::test {

inline const Date noon = *parseIso8601("2026-11-22T12:00:00Z");

/// A home of its own and what the view-models share in it. The clock stands at noon.
struct Desk {
    junk::test::Sandbox home;
    Session session;
    AppContext context{session, [] { return noon; }, LocalCalendar("UTC")};

    RunLog& log() { return session.runLog(); }
};

inline RunRecord makeRun(std::string toolID, std::string summary, Date startedAt = noon) {
    return {.id = Uuid::random(),
            .toolID = std::move(toolID),
            .startedAt = startedAt,
            .duration = 2,
            .summary = std::move(summary),
            .computer = RunLog::thisComputer()};
}

/// One role of every row.
inline std::vector<std::string> column(QAbstractItemModel* model, const QByteArray& role) {
    std::vector<std::string> texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts.push_back(model->index(row, 0).data(model->roleNames().key(role)).toString().toStdString());
    return texts;
}

/// One key of every map of a list.
inline std::vector<std::string> column(const QVariantList& list, const QString& key) {
    std::vector<std::string> texts;
    for (const QVariant& each : list)
        texts.push_back(each.toMap().value(key).toString().toStdString());
    return texts;
}

/// Counts a signal.
template <class Object, class Signal>
std::shared_ptr<int> countOf(Object* object, Signal signal) {
    auto count = std::make_shared<int>(0);
    QObject::connect(object, signal, object, [count] { ++*count; });
    return count;
}

} // namespace vh::app::test
