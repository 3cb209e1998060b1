#pragma once

#include "app/QtLoop.h"

#include <QObject>
#include <QString>
#include <memory>

namespace vh {
class InstanceSocket;
}

namespace vh::app {

/// Makes the window the only one of its user: the first holds a socket, those started later hand over what they were
/// asked for and end. Main thread.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Way {
        ours,     ///< this is the window, also where no socket can be had
        handedOn, ///< another window has taken what was asked for
        noAnswer  ///< there is another window, but it does not answer
    };

    SingleInstance();
    ~SingleInstance() override;

    /// `page` and `url` may be empty.
    Way enter(const QString& page, const QString& url);

signals:
    /// Another start of the program: the window is to be shown, at this page if any, and the link opened if any.
    void asked(const QString& page, const QString& url);

private:
    QtLoop loop_;
    std::unique_ptr<InstanceSocket> socket_;
};

} // namespace vh::app
