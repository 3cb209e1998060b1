#include "app/PathText.h"

#include "Core/Printable.h"
#include "Platform/PathParts.h"
#include "app/AppTexts.h"

#include <QFile>
#include <QUrl>

namespace vh::app {

QString displayPath(std::string_view path, std::string_view home) {
    if (home.empty() || !isAtOrBelow(path, home))
        return qtText(printable(path));
    return u'~' + qtText(printable(path.substr(home.size())));
}

QString displayName(std::string_view path) {
    const size_t slash = path.find_last_of('/');
    return qtText(printable(slash == std::string_view::npos ? path : path.substr(slash + 1)));
}

std::string chosenPath(const QString& pathOrUrl, std::string_view home) {
    const QString text = pathOrUrl.trimmed();
    const QString path = text.startsWith(u"file:") ? QUrl(text).toLocalFile() : text;
    const QByteArray bytes = QFile::encodeName(path);
    if (path == u"~" || path.startsWith(u"~/"))
        return std::string(home).append(bytes.mid(1).toStdString());
    return path.startsWith(u'/') ? bytes.toStdString() : std::string();
}

} // namespace vh::app
