#pragma once

#include "app/QtLoop.h"

#include <QObject>
#include <QString>
#include <memory>

namespace vh {
class InstanceDoor;
}

namespace vh::app {

/// Makes the window the only one of its user: the first keeps the door, those started later hand over what they were
/// asked for and end. Main thread.
class WindowDoor : public QObject {
    Q_OBJECT
public:
    enum class Way {
        ours,     ///< this is the window, also where no door can be had
        handedOn, ///< another window has taken what was asked for
        noAnswer  ///< there is another window, but it does not answer
    };

    WindowDoor();
    ~WindowDoor() override;

    /// `page` and `url` may be empty.
    Way enter(const QString& page, const QString& url);

signals:
    /// Another start of the program: the window is to be shown, at this page if any, and the link opened if any.
    void asked(const QString& page, const QString& url);

private:
    QtLoop loop_;
    std::unique_ptr<InstanceDoor> door_;
};

} // namespace vh::app
