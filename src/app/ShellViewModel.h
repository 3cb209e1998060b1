#pragma once

#include "Core/ToolSection.h"
#include "app/ToolSearch.h"

#include <QObject>
#include <QVariantList>
#include <QVariantMap>

namespace vh::app {

class AppContext;

/// Where one can go in the window.
class ShellViewModel : public QObject {
    Q_OBJECT
    /// "node" or "network"; kept in the settings.
    Q_PROPERTY(QString mode READ modeName WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(QVariantList sections READ sections NOTIFY sectionsChanged)
    Q_PROPERTY(QVariantList absentTools READ absentTools NOTIFY sectionsChanged)
    /// How many jobs of a tool or a page run now, by identifier.
    Q_PROPERTY(QVariantMap busy READ busy NOTIFY busyChanged)
public:
    static constexpr std::string_view modeKey = "app.mode";

    explicit ShellViewModel(AppContext& context);

    QString modeName() const;
    /// The sections of the mode with the tools of this version, the primary ones first; those without any are left out.
    QVariantList sections() const;
    /// The tools of the mode that are not in this version yet.
    QVariantList absentTools() const;
    QVariantMap busy() const;

    Q_INVOKABLE void setMode(const QString& mode);
    /// The tool of an identifier, folded ones included; empty for an unknown one.
    Q_INVOKABLE QVariantMap tool(const QString& id) const;
    /// The identifier of a tool that is called by its identifier, a folded one, or its name in any language; else empty.
    Q_INVOKABLE QString idOf(const QString& word) const;
    /// Tools by name, summary and former identifiers in every language, best match first, those of this version
    /// before all others.
    Q_INVOKABLE QVariantList search(const QString& text) const;

    /// Whether a name holds every word of a search.
    Q_INVOKABLE bool matches(const QString& name, const QString& text) const;

signals:
    void modeChanged();
    void sectionsChanged();
    void busyChanged();

private:
    QVariantList toolsThatAre(bool available, ToolSection section) const;

    AppContext& context_;
    AppMode mode_;
    mutable ToolSearch search_;
};

} // namespace vh::app
