// The capture screen's foreground permission check and its analytics events.
#include "ViewControllers/ZQTVINCaptureVC.h"
#include "platform/foundation/Authorization.h"
#include "platform/foundation/NotificationCenter.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QScopeGuard>
#include <QTest>

#include <memory>

using namespace ZQTPlatform;
using CameraStatus = Authorization::CameraStatus;
using LocationStatus = Authorization::LocationStatus;

namespace {

using Texts = std::pair<QString, QString>;

const Texts none;
const Texts both{"Camera and Location permissions needed",
                 "Access to your camera and location is needed in order to take pictures of your vehicle."};
const Texts location{"Location permission needed",
                     "Access to your location is needed in order to take pictures of your vehicle."};
const Texts camera{"Camera permission needed",
                   "Access to your camera is needed in order to take pictures of your vehicle."};

} // namespace

TEST(PermissionsAnalytics, ForegroundCheckChoosesTextsOrAsksForTheCameraAndEachEventTypeHasItsOwnPayloadAndTheTimeSpentInMilliseconds)
{
    const auto resetStatuses = qScopeGuard([] { Authorization::reset(); });
    const struct { CameraStatus camera; LocationStatus location; bool locationServices; Texts texts; bool asks; } rows[] = {
        {CameraStatus::Denied, LocationStatus::AuthorizedWhenInUse, true, camera, false},
        {CameraStatus::Restricted, LocationStatus::NotDetermined, true, camera, false},
        {CameraStatus::Denied, LocationStatus::Denied, true, both, false},
        {CameraStatus::Denied, LocationStatus::AuthorizedWhenInUse, false, both, false},
        {CameraStatus::NotDetermined, LocationStatus::Restricted, true, location, false},
        {CameraStatus::Authorized, LocationStatus::Denied, false, none, false},
        {CameraStatus::NotDetermined, LocationStatus::Denied, false, none, true},
        {CameraStatus::Authorized, LocationStatus::NotDetermined, true, none, true},
        {CameraStatus::Authorized, LocationStatus::NotDetermined, false, none, false},
    };
    const std::unique_ptr<ZQTVINCaptureVC> screen(ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, "CLM-1"));
    screen->loadViewIfNeeded();
    for (const auto &row : rows) {
        Authorization::setCameraStatus(row.camera);
        Authorization::setLocationStatus(row.location);
        screen->setEnableLocationServices(row.locationServices);
        const int requestsBefore = Authorization::cameraAccessRequestCount();

        screen->permissionConverCheck();

        const auto chosen = screen->permissionTexts();
        const QString label = QStringLiteral("camera %1, location %2, E %3")
                                  .arg(int(row.camera)).arg(int(row.location)).arg(row.locationServices);
        EXPECT_EQ(Texts(chosen.title, chosen.message), row.texts) << qPrintable(label);
        EXPECT_EQ(Authorization::cameraAccessRequestCount() - requestsBefore, row.asks ? 1 : 0) << qPrintable(label);
    }
    EXPECT_TRUE(screen->findChild<QWidget *>("permissionConverView")->isHidden()) << "the cover is never shown";

    // Each analytics event type has its own payload.
    const struct { uint type; QString content; const char *eventType, *eventName, *posted; } cases[] = {
        {0, "x", "helpOverlay", "vinScan", "NULL"}, // the help event carries no content
        {1, QString(), "flashChange", "vinScan", "NULL"},
        {2, "1234", "vinScan", "screenTime", "1234"},
        {3, "", "vinScan", "hamburgerClick", ""},
        {3, QString(), "vinScan", "hamburgerClick", "NULL"},
    };
    int withUserInfo = 0; // observers read the dictionary from the object only
    NotificationCenter::defaultCenter().addObserver(&withUserInfo, "ANALYTICS_INFO", [&](const Notification &n) {
        withUserInfo += !n.userInfo.isEmpty();
    });
    for (const auto &c : cases) {
        AnalyticsRecorder recorder;
        screen->pushAnalyticsInfoForEventType(c.type, c.content);
        EXPECT_EQ(recorder.events.size(), 1) << c.type;
        const QVariantMap expected{{"eventType", c.eventType}, {"eventName", c.eventName}, {"content", c.posted}};
        EXPECT_EQ(recorder.events.value(0), expected) << c.type << " " << qPrintable(c.content);
    }

    AnalyticsRecorder recorder;
    for (uint type : {4u, 17u, 0xFFFFFFFFu})
        screen->pushAnalyticsInfoForEventType(type, "x");
    EXPECT_TRUE(recorder.events.isEmpty());

    // The time spent is whole milliseconds since the screen loaded.
    QTest::qWait(60);
    AnalyticsRecorder timeSpent;
    const qint64 before = screen->startingTime().msecsTo(QDateTime::currentDateTime());
    screen->sendTimeSpent();
    const qint64 after = screen->startingTime().msecsTo(QDateTime::currentDateTime());
    ASSERT_EQ(timeSpent.events.size(), 1);
    EXPECT_EQ(timeSpent.events.first().value("eventName"), "screenTime");
    bool isInteger = false;
    const qint64 milliseconds = timeSpent.events.first().value("content").toString().toLongLong(&isInteger);
    ASSERT_TRUE(isInteger) << qPrintable(timeSpent.events.first().value("content").toString());
    EXPECT_GE(milliseconds, std::max<qint64>(before, 60));
    EXPECT_LE(milliseconds, after);
    NotificationCenter::defaultCenter().removeObserver(&withUserInfo);
    EXPECT_EQ(withUserInfo, 0);
}
