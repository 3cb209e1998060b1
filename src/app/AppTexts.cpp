#include "app/AppTexts.h"

#include "Core/ByteFormat.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "app/Session.h"

namespace vh::app {

const Texts& AppTexts::current() const {
    return session_.texts();
}

QString AppTexts::text(std::string_view key, const std::vector<TextArgument>& arguments) const {
    return qtText(current().text(key, arguments));
}

QString AppTexts::errorText(const std::exception& error) const {
    return qtText(printable(worded(messageOf(error), current())));
}

QString AppTexts::sizeText(int64_t bytes) const {
    return qtText(vh::sizeText(bytes, language()));
}

QString AppTexts::durationText(double seconds) const {
    return qtText(vh::durationText(seconds, language()));
}

std::string AppTexts::setting() const {
    return session_.defaults().get<std::string>(settingKey).value_or(std::string(systemSetting));
}

void AppTexts::setSetting(const std::string& setting) {
    session_.defaults().set(settingKey, setting);
    session_.useLanguageOfSetting();
    emit changed();
}

} // namespace vh::app
