#pragma once

#include <QHash>
#include <QQuickImageProvider>

namespace vh::ui {

/// "image://icons/<name>?<rrggbb>": the icon's strokes in that colour, drawn at exactly the size asked for.
/// Qt may ask from any thread, one at a time.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QByteArray drawing(const QString& name);

    QHash<QString, QByteArray> drawings_;
};

} // namespace vh::ui
