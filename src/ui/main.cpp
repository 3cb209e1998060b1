#include "Core/Printable.h"
#include "app/AutomationLife.h"
#include "app/Session.h"
#include "app/SingleInstance.h"
#include "ui/Options.h"
#include "ui/Screenshot.h"
#include "ui/Window.h"
#include "ui/WindowPlace.h"

#include <QGuiApplication>
#include <QTextStream>
#include <QTimer>

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

/// Long after any first frame: for a window that is never drawn, such as one that starts minimized.
constexpr std::chrono::seconds latestStart{5};

QString textOf(const vh::app::Session& session, std::string_view key) {
    return QString::fromStdString(session.texts().text(key));
}

/// Lives until the person closes the window, as the one window of this user.
int live(QGuiApplication& application, vh::ui::Window& window, vh::app::SingleInstance& instance,
         const QString& url) {
    auto& life = window.app().life();
    // Later, so that whoever asked has its answer before a link is followed.
    QObject::connect(
        &instance, &vh::app::SingleInstance::asked, &life,
        [&](const QString& page, const QString& link) {
            window.come();
            window.open(page);
            if (!link.isEmpty())
                life.openLink(link);
        },
        Qt::QueuedConnection);
    const auto start = [&life, url] {
        life.start(url);
    };
    // Queued: only once the first frame is on the screen.
    QObject::connect(&window.quickWindow(), &QQuickWindow::frameSwapped, &life, start,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    QTimer::singleShot(latestStart, &life, start);
    return application.exec();
}

int runWindow(QGuiApplication& application, const Options& options) {
    vh::app::Session session;
    // As administrator in another user's home, what is written would be out of that user's reach.
    if (session.folders().homeIsAnothers)
        return fail(QString::fromStdString(session.texts().text(
            "core.home-is-anothers", {{"home", vh::printable(session.folders().home)}})));
    vh::app::SingleInstance instance;
    if (options.act == Options::Act::openWindow)
        switch (instance.enter(options.page, options.url)) {
        case vh::app::SingleInstance::Way::handedOn:
            return 0;
        case vh::app::SingleInstance::Way::noAnswer:
            return fail(textOf(session, "shell.no-answer"));
        case vh::app::SingleInstance::Way::ours:
            break;
        }
    vh::ui::Window window(session, {options.appearance, options.language});
    if (!window.open(options.page.isEmpty() ? QStringLiteral("home") : options.page))
        return fail(QStringLiteral("There is no page \"%1\". The pages are: %2.")
                        .arg(options.page, window.pages().join(QStringLiteral(", "))));
    if (options.act == Options::Act::openWindow)
        vh::ui::keepPlace(window.quickWindow(), session.defaults());
    if (!options.size.isEmpty())
        window.quickWindow().resize(options.size);
    window.quickWindow().show();
    if (options.act == Options::Act::openWindow)
        return live(application, window, instance, options.url);
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
