#pragma once

#include <QObject>

namespace vh::ui {

/// What the desktop asks of every window: dark or light, and whether things may move. Main thread.
class SystemLook : public QObject {
    Q_OBJECT

public:
    explicit SystemLook(QObject* parent = nullptr);

    bool isDark() const { return dark_; }
    bool wantsLessMotion() const { return lessMotion_; }

signals:
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool dark_;
    bool lessMotion_;
};

} // namespace vh::ui
