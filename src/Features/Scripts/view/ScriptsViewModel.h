#pragma once

#include "Core/Message.h"
#include "Core/RunRecord.h"
#include "app/Background.h"

#include <QObject>
#include <QVariantList>
#include <map>
#include <string>

namespace vh {
struct ProcessResult;
}
namespace vh {
class RunRecord;
}
namespace vh::automation {
class ScriptLibrary;
}

namespace vh::app {

class AppContext;
class AutomationLife;

/// The saved scripts and the one that is being written. What was typed and not saved stays with its script until the
/// window goes.
class ScriptsViewModel : public QObject {
    Q_OBJECT
    /// {name, line, isChanged, isSystem}, by name; a new one last.
    Q_PROPERTY(QVariantList scripts READ scripts NOTIFY scriptsChanged)
    /// The script in the editor by its saved name; empty for a new one or none.
    Q_PROPERTY(QString current READ current NOTIFY currentChanged)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY currentChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY editChanged)
    Q_PROPERTY(QString body READ body WRITE setBody NOTIFY editChanged)
    Q_PROPERTY(bool isChanged READ isChanged NOTIFY editChanged)
    /// Why the script could not be saved or started; empty while all is well.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY runChanged)
    /// What the last run printed, and how it ended: "success", "failed", "cancelled", empty before its end.
    Q_PROPERTY(QString output READ output NOTIFY runChanged)
    Q_PROPERTY(QString outcome READ outcome NOTIFY runChanged)
    Q_PROPERTY(QString outcomeText READ outcomeText NOTIFY runChanged)
public:
    ScriptsViewModel(AppContext& context, AutomationLife& life);
    ~ScriptsViewModel() override;

    QVariantList scripts() const;
    QString current() const { return current_; }
    bool isOpen() const { return open_; }
    QString name() const { return edit_.name; }
    QString body() const { return edit_.body; }
    void setName(const QString& name);
    void setBody(const QString& body);
    bool isChanged() const { return edit_ != saved_; }
    QString message() const { return message_; }
    bool isRunning() const { return running_.isBusy(); }
    QString output() const { return output_; }
    QString outcome() const { return outcome_; }
    QString outcomeText() const { return outcomeText_; }

    Q_INVOKABLE void open(const QString& name);
    Q_INVOKABLE void create();
    /// False when it could not be; message says why.
    Q_INVOKABLE bool save();
    /// Back to what is saved.
    Q_INVOKABLE void revert();
    /// To the Trash.
    Q_INVOKABLE void remove();
    /// Saves what is in the editor and runs it once.
    Q_INVOKABLE void run();
    Q_INVOKABLE void stop();
    /// Looks at the folder again.
    Q_INVOKABLE void refresh();

signals:
    void scriptsChanged();
    void currentChanged();
    void editChanged();
    void messageChanged();
    void runChanged();

private:
    struct Text {
        QString name;
        QString body;
        bool operator==(const Text&) const = default;
    };
    struct End {
        Outcome outcome;
        Message said;
    };

    automation::ScriptLibrary& library() const;
    Text savedText(const QString& name) const;
    void show(const QString& name, bool isOpen);
    void keepDraft();
    void say(const QString& message);
    ProcessResult execute(const std::string& path, const Background::Task& task);
    End endOf(std::future<ProcessResult> result) const;
    void append(const std::string& piece);

    AppContext& context_;
    AutomationLife& life_;
    QString current_;
    bool open_ = false;
    Text edit_;
    Text saved_;
    std::map<QString, Text> drafts_; ///< by saved name, of scripts that are not in the editor
    QString message_;
    QString output_;
    QString outcome_;
    QString outcomeText_;
    Background running_;
};

} // namespace vh::app
