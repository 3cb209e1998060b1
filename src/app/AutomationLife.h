#pragma once

#include "app/Background.h"

#include <QObject>
#include <QSet>
#include <QStringList>
#include <memory>
#include <optional>

namespace vh::automation {
class Automation;
}

namespace vh::app {

class AppContext;

/// The window's share in automation: starts it, shows what it runs in the list of what runs, and says whether this
/// process leads. Main thread; goes before its context.
class AutomationLife : public QObject {
    Q_OBJECT
    /// What runs in this process and is asked about before the window closes, by title: tasks, flows, chores, copies,
    /// and the one-button run or its undoing.
    Q_PROPERTY(QStringList running READ running NOTIFY changed)
public:
    explicit AutomationLife(AppContext& context);
    ~AutomationLife() override;

    /// Made when first asked for, with what it runs told to the ActivityCenter from then on.
    automation::Automation& automation();

    /// Joins the processes of which one watches the clock and the machine, and then opens `link` if there is one. Never
    /// needed before the first frame; a second call does nothing.
    void start(const QString& link = {});
    bool isStarted() const { return started_; }
    bool isLeading() const;

    /// Starts the flow of a link; why it could not be is said.
    void openLink(const QString& url);
    QStringList running() const;
    /// Asks all that runs to stop.
    Q_INVOKABLE void stop();

signals:
    /// Of who leads and of what runs.
    void changed();
    /// Something for the person, in passing.
    void said(const QString& text);

private:
    /// Off the main thread; no start waits for it.
    void renewHelper();
    void tellRunning();

    AppContext& context_;
    automation::Automation* automation_ = nullptr;
    bool started_ = false;
    std::shared_ptr<void> observing_;
    QSet<QString> shown_; ///< the jobs of services that the list of what runs has
    Background renewing_;
};

} // namespace vh::app
