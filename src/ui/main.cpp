#include "Core/Printable.h"
#include "app/Session.h"
#include "ui/Options.h"
#include "ui/Screenshot.h"
#include "ui/Window.h"

#include <QGuiApplication>
#include <QTextStream>

namespace {

using vh::ui::Options;

int say(const QString& text) {
    QTextStream(stdout) << text << Qt::flush;
    return 0;
}

int fail(const QString& text, int status = 1) {
    QTextStream(stderr) << "varnholt-app: " << text << Qt::endl;
    return status;
}

QStringList argumentsOf(int argc, char** argv) {
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

int runWindow(QGuiApplication& application, const Options& options) {
    vh::app::Session session;
    // As administrator in another user's home, what is written would be out of that user's reach.
    if (session.folders().homeIsAnothers)
        return fail(QString::fromStdString(session.texts().text(
            "core.home-is-anothers", {{"home", vh::printable(session.folders().home)}})));
    vh::ui::Window window(session, {options.appearance, options.language});
    if (!window.open(options.page.isEmpty() ? QStringLiteral("home") : options.page))
        return fail(QStringLiteral("There is no page \"%1\". The pages are: %2.")
                        .arg(options.page, window.pages().join(QStringLiteral(", "))));
    if (!options.size.isEmpty())
        window.quickWindow().resize(options.size);
    window.quickWindow().show();
    if (options.act == Options::Act::openWindow)
        return application.exec();
    const auto failure = vh::ui::takeScreenshot(window.quickWindow(), options.file, options.state);
    return failure.isEmpty() ? 0 : fail(failure);
}

} // namespace

int main(int argc, char** argv) {
    const auto options = Options::of(argumentsOf(argc, argv));
    switch (options.act) {
    case Options::Act::printHelp:
        return say(options.text);
    case Options::Act::printVersion:
        return say(QStringLiteral("varnholt-app " VH_VERSION "\n"));
    case Options::Act::refuse:
        return fail(options.text, 2);
    case Options::Act::takeScreenshot:
        vh::ui::useNoDisplay();
        break;
    case Options::Act::openWindow:
        break;
    }
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationVersion(QStringLiteral(VH_VERSION));
    QGuiApplication::setApplicationName(QStringLiteral("Varnholt"));
    QGuiApplication::setDesktopFileName(QStringLiteral("varnholt"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/varnholt.svg")));
    try {
        return runWindow(application, options);
    } catch (const std::exception& error) {
        return fail(QString::fromUtf8(error.what()));
    }
}
