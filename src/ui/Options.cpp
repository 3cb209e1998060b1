#include "ui/Options.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace vh::ui {

namespace {

Options refusal(const QString& reason) {
    Options options;
    options.act = Options::Act::refuse;
    options.text = reason;
    return options;
}

/// "1280x820"; an empty size when it is none.
QSize sizeOf(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const auto match = form.match(text);
    return match.hasMatch() ? QSize(match.captured(1).toInt(), match.captured(2).toInt()) : QSize();
}

const auto linkStart = QStringLiteral("varnholt://");

constexpr auto help = R"(Usage: varnholt-app [options] [varnholt://…]

  --page <page>                     Open the window at this page.
  --screenshot <page> <file.png>    Write a picture of this page, without a display, and leave.
  --state <state>                   With --screenshot: take the page to this state first.
  --size <width>x<height>           Size of the window.
  --language <en|es|fr>             Speak this language instead of the one of the settings.
  --dark, --light                   Look like this instead of as the settings say.
  --help, --version

A link is opened; in the window that is open already, if there is one.
An unknown page is answered with the list of pages.
)";

} // namespace

Options Options::of(const QStringList& arguments) {
    QCommandLineParser parser;
    for (const auto* name : {"page", "screenshot", "state", "size", "language"})
        parser.addOption({QString::fromLatin1(name), {}, QStringLiteral("value")});
    for (const auto* name : {"dark", "light", "help", "version"})
        parser.addOption(QCommandLineOption(QString::fromLatin1(name)));
    if (!parser.parse(arguments))
        return refusal(parser.errorText());

    Options options;
    const auto files = parser.positionalArguments();
    const bool pictured = parser.isSet(QStringLiteral("screenshot"));
    options.page = parser.value(pictured ? QStringLiteral("screenshot") : QStringLiteral("page"));
    options.state = parser.value(QStringLiteral("state"));
    options.language = parser.value(QStringLiteral("language"));
    if (parser.isSet(QStringLiteral("dark")))
        options.appearance = QStringLiteral("dark");
    else if (parser.isSet(QStringLiteral("light")))
        options.appearance = QStringLiteral("light");

    if (parser.isSet(QStringLiteral("help"))) {
        options.act = Act::printHelp;
        options.text = QString::fromUtf8(help);
    } else if (parser.isSet(QStringLiteral("version"))) {
        options.act = Act::printVersion;
    } else if (pictured) {
        if (files.size() != 1)
            return refusal(QStringLiteral("--screenshot takes a page and one file."));
        options.act = Act::takeScreenshot;
        options.file = files.front();
    } else if (files.size() == 1 && files.front().startsWith(linkStart)) {
        options.url = files.front();
    } else if (!files.isEmpty()) {
        return refusal(QStringLiteral("Unknown argument \"%1\".").arg(files.front()));
    }

    if (parser.isSet(QStringLiteral("size"))) {
        options.size = sizeOf(parser.value(QStringLiteral("size")));
        if (options.size.isEmpty())
            return refusal(QStringLiteral("--size is a width and a height, such as 1280x820."));
    }
    const QStringList languages{QStringLiteral("en"), QStringLiteral("es"), QStringLiteral("fr")};
    if (!options.language.isEmpty() && !languages.contains(options.language))
        return refusal(QStringLiteral("--language is en, es or fr."));
    return options;
}

} // namespace vh::ui
