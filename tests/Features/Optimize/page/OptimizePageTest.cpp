#include "ui/EveryLook.h"
#include "ui/LayoutFaults.h"

namespace vh::test {

namespace {

using OptimizePage = EveryLook;

} // namespace

TEST_P(OptimizePage, showWhatTheOneButtonWouldDoAndDid) {
    fillCaches();
    openWindow(look(), {960, 640});
    openPage("home");
    QString fault;
    ASSERT_TRUE(QMetaObject::invokeMethod(
        window().app().model("optimize"), "saveProfile", Q_RETURN_ARG(QString, fault),
        Q_ARG(QVariantMap, QVariantMap({{"cleanStorage", true}, {"cleanPrivacy", true}}))));
    ASSERT_EQ(fault, "");
    const auto isAtRest = [&] {
        return window().quickWindow().property("settled").toBool();
    };
    for (const auto* state : {"profile", "check", "last"}) {
        SCOPED_TRACE(state);
        if (state == std::string("last")) {
            QMetaObject::invokeMethod(window().app().model("optimize"), "run");
            waitUntil("it is done", isAtRest);
        }
        ASSERT_TRUE(showLook(state));
        waitUntil("all is looked at or done", isAtRest);
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
        if (state !=
            std::string("last")) { // the run's own words may be longer than the list of recent runs is wide
            EXPECT_EQ(layoutFaults(shownItems()), QStringList());
        }
    }
    EXPECT_EQ(window().app().model("optimize")->property("lastOutcome").toString(), "warning")
        << "one of the two tools is not there yet";
}

IN_EVERY_LOOK(OptimizePage);

} // namespace vh::test
