#include "app/SingleInstance.h"

#include "Platform/InstanceSocket.h"
#include "Platform/SystemError.h"

namespace vh::app {

namespace {

const std::string windowSocket = "window";
const std::string taken = "taken";
constexpr QChar between = u'\n';

} // namespace

SingleInstance::SingleInstance() = default;
SingleInstance::~SingleInstance() = default;

SingleInstance::Way SingleInstance::enter(const QString& page, const QString& url) {
    const auto answer = [this](const std::string& request) {
        const QString text = QString::fromStdString(request);
        emit asked(text.section(between, 0, 0), text.section(between, 1));
        return taken;
    };
    try {
        socket_ = InstanceSocket::open(loop_, windowSocket, answer);
    } catch (const SystemError&) {
        return Way::ours; // two windows are better than none
    }
    if (socket_)
        return Way::ours;
    const auto said = askInstance(windowSocket, (page + between + url).toStdString());
    return said == taken ? Way::handedOn : Way::noAnswer;
}

} // namespace vh::app
