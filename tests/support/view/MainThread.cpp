#include "support/view/MainThread.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace vh::app::test {

namespace {

/// The application object that timers and queued calls need.
class QtEnvironment : public testing::Environment {
public:
    void SetUp() override {
        ::setenv("LC_ALL", "en_GB.UTF-8", 1);
        ::unsetenv("LANGUAGE");
        application_ = std::make_unique<QCoreApplication>(count_, arguments_);
        QCoreApplication::setApplicationVersion("1.2.3");
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[8] = "tests";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QCoreApplication> application_;
};

[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new QtEnvironment);

} // namespace

bool waitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    QTimer wake; // for conditions that no event tells of
    wake.start(std::chrono::milliseconds(5));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void settle() {
    QCoreApplication::processEvents();
}

} // namespace vh::app::test
