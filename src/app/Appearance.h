#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <string_view>

namespace vh {
class UserDefaults;
}

namespace vh::app {

/// Whether the window is light, dark, or as the system is. Main thread.
class Appearance : public QObject {
    Q_OBJECT
public:
    static constexpr std::string_view key = "app.appearance";

    explicit Appearance(UserDefaults& defaults) : defaults_(defaults) {}

    /// "system", "light", "dark".
    static QStringList values();
    /// The stored one, "system" when there is none or it is none of the values.
    QString value() const;
    /// Stores it; throws SystemError. Does nothing for what is none of the values.
    void set(const QString& value);

signals:
    void changed();

private:
    UserDefaults& defaults_;
};

} // namespace vh::app
