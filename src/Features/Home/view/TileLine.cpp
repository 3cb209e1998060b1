#include "Features/Home/view/TileLine.h"

#include <QRegularExpression>
#include <QString>

namespace vh::app {

namespace {

/// Characters that three lines of the narrowest tile hold in any language.
constexpr int most = 90;

} // namespace

QString tileLine(const QString& text) {
    const auto sentenceEnd = text.indexOf(QStringLiteral(". "));
    const QString sentence = sentenceEnd < 0 ? text : text.left(sentenceEnd + 1);
    if (sentence.size() <= most)
        return sentence;
    static const QRegularExpression pause(QStringLiteral(" ?[(—;:]|, "));
    auto end = sentence.lastIndexOf(pause, most);
    const auto bracket = sentence.lastIndexOf(QLatin1Char('('), end);
    if (bracket > sentence.lastIndexOf(QLatin1Char(')'), end))
        end = bracket;
    if (end > most / 3)
        return sentence.left(end).trimmed();
    return sentence.left(sentence.lastIndexOf(QLatin1Char(' '), most - 1)) + QStringLiteral("…");
}

} // namespace vh::app
