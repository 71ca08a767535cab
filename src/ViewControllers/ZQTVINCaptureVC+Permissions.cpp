// The capture screen's foreground handling, permission check and analytics events.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"

using namespace ZQTPlatform;

namespace {

constexpr uint screenTimeEvent = 2;
constexpr uint lastEventType = 3;

struct AnalyticsEvent
{
    const char *eventType;
    const char *eventName;
    bool ignoresContent;
};

// Indexed by event type. "vinScan" is the name of types 0 and 1 and the type of 2 and 3.
constexpr AnalyticsEvent analyticsEvents[lastEventType + 1] = {
    {"helpOverlay", "vinScan", true},
    {"flashChange", "vinScan", false},
    {"vinScan", "screenTime", false},
    {"vinScan", "hamburgerClick", false},
};

} // namespace

void ZQTVINCaptureVC::appBecomeActive()
{
    logStep("appBecomeActive");
    permissionConverCheck();
}

void ZQTVINCaptureVC::appDidEnterBackGround()
{
    logStep("appDidEnterBackGround");
}

void ZQTVINCaptureVC::permissionConverCheck()
{
    logStep("permissionConverCheck");
    // Decides from the camera and location authorisation states once their provider exists.
}

void ZQTVINCaptureVC::pushAnalyticsInfoForEventType(uint type, const QString &content)
{
    logStep("pushAnalyticsInfoForEventType");
    if (type > lastEventType)
        return;
    const AnalyticsEvent &event = analyticsEvents[type];
    const QString null = QStringLiteral("NULL");
    const QVariantMap info{
        {QStringLiteral("eventType"), QString::fromLatin1(event.eventType)},
        {QStringLiteral("eventName"), QString::fromLatin1(event.eventName)},
        {QStringLiteral("content"), event.ignoresContent || content.isNull() ? null : content},
    };
    NotificationCenter::defaultCenter().postNotificationName(QStringLiteral("ANALYTICS_INFO"), info);
}

void ZQTVINCaptureVC::sendTimeSpent()
{
    logStep("sendTimeSpent");
    const qint64 milliseconds = d->startingTime.msecsTo(QDateTime::currentDateTime());
    pushAnalyticsInfoForEventType(screenTimeEvent, QString::number(milliseconds));
}
