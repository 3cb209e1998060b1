#pragma once

#include "Core/Texts.h"

#include <QObject>
#include <QString>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace vh::app {

class Session;

/// The texts in the language of now, and the setting that chooses it. Main thread.
class AppTexts : public QObject {
    Q_OBJECT
public:
    static constexpr std::string_view settingKey = "app.language";
    static constexpr std::string_view systemSetting = "system";

    explicit AppTexts(Session& session) : session_(session) {}

    const Texts& current() const;
    Language language() const { return current().language(); }
    QString text(std::string_view key, const std::vector<TextArgument>& arguments = {}) const;
    /// What went wrong, on one line.
    QString errorText(const std::exception& error) const;
    QString sizeText(int64_t bytes) const;
    QString durationText(double seconds) const;

    /// "system" or a language's code.
    std::string setting() const;
    /// Stores it and changes the texts. Throws SystemError when it cannot be stored, and then nothing changes.
    void setSetting(const std::string& setting);

signals:
    /// Everything shown must be asked for again.
    void changed();

private:
    Session& session_;
};

/// Text of ours, or a name that printable() has been through.
inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace vh::app
