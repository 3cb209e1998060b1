#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace vh::ui {

/// What the command line of the window asks for.
struct Options {
    enum class Act { openWindow, takeScreenshot, printHelp, printVersion, refuse };

    Act act = Act::openWindow;
    QString page;
    QString file;
    QString state;
    QString language;
    QString appearance;
    QSize size;
    QString url;  // a link "varnholt://…" to open
    QString text; // the help, or why the command line is refused

    /// `arguments` begins with the program's name.
    static Options of(const QStringList& arguments);
};

} // namespace vh::ui
