#include "app/WindowDoor.h"

#include "Platform/InstanceDoor.h"
#include "Platform/SystemError.h"

namespace vh::app {

namespace {

const std::string doorName = "window";
const std::string taken = "taken";
constexpr QChar between = u'\n';

} // namespace

WindowDoor::WindowDoor() = default;
WindowDoor::~WindowDoor() = default;

WindowDoor::Way WindowDoor::enter(const QString& page, const QString& url) {
    const auto answer = [this](const std::string& request) {
        const QString text = QString::fromStdString(request);
        emit asked(text.section(between, 0, 0), text.section(between, 1));
        return taken;
    };
    try {
        door_ = InstanceDoor::open(loop_, doorName, answer);
    } catch (const SystemError&) {
        return Way::ours; // two windows are better than none
    }
    if (door_)
        return Way::ours;
    const auto said = askInstance(doorName, (page + between + url).toStdString());
    return said == taken ? Way::handedOn : Way::noAnswer;
}

} // namespace vh::app
