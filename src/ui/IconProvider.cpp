#include "ui/IconProvider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace vh::ui {

namespace {
constexpr int naturalSize = 16;
constexpr auto drawnColor = "#000000";
} // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QByteArray IconProvider::drawing(const QString& name) {
    const auto known = drawings_.constFind(name);
    if (known != drawings_.constEnd())
        return *known;
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("No icon called \"%s\"", qUtf8Printable(name));
        return {};
    }
    return *drawings_.insert(name, file.readAll());
}

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto mark = id.indexOf(QLatin1Char('?'));
    auto svg = drawing(id.left(mark));
    if (mark >= 0)
        svg.replace(drawnColor, "#" + id.mid(mark + 1).toLatin1());

    QImage image(requestedSize.isEmpty() ? QSize(naturalSize, naturalSize) : requestedSize,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (!svg.isEmpty()) {
        QPainter painter(&image);
        QSvgRenderer(svg).render(&painter);
    }
    if (size)
        *size = image.size();
    return image;
}

} // namespace vh::ui
