// The capture screen's foreground handling, permission check and analytics events.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/foundation/Authorization.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/NotificationCenter.h"

using namespace ZQTPlatform;
using CameraStatus = Authorization::CameraStatus;
using LocationStatus = Authorization::LocationStatus;

namespace {

const ZQTVINCaptureVC::PermissionTexts bothTexts{
    QStringLiteral("Camera and Location permissions needed"),
    QStringLiteral("Access to your camera and location is needed in order to take pictures of your vehicle.")};
const ZQTVINCaptureVC::PermissionTexts locationTexts{
    QStringLiteral("Location permission needed"),
    QStringLiteral("Access to your location is needed in order to take pictures of your vehicle.")};
const ZQTVINCaptureVC::PermissionTexts cameraTexts{
    QStringLiteral("Camera permission needed"),
    QStringLiteral("Access to your camera is needed in order to take pictures of your vehicle.")};

// The texts for a check that found the camera refused, or location refused while location
// services are enabled; so when the camera is not refused, location is, and its pair is chosen.
const ZQTVINCaptureVC::PermissionTexts &textsForRefusal(bool cameraRefused, bool locationRefused,
                                                         bool locationServices)
{
    if (!cameraRefused)
        return locationTexts;
    if (locationRefused || !locationServices)
        return bothTexts;
    return cameraTexts;
}

bool isRefused(CameraStatus status)
{
    return status == CameraStatus::Restricted || status == CameraStatus::Denied;
}

bool isRefused(LocationStatus status)
{
    return status == LocationStatus::Restricted || status == LocationStatus::Denied;
}

// The answer is not used: the platform's own prompt is the only visible reaction.
void requestCameraAccess()
{
    Authorization::requestCameraAccess([](bool) {});
}

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
    const CameraStatus camera = Authorization::cameraStatus();
    const LocationStatus location = Authorization::locationStatus();
    const bool locationServices = d->enableLocationServices;
    d->permissionTexts = PermissionTexts();

    if (isRefused(camera) || (isRefused(location) && locationServices)) {
        d->permissionTexts = textsForRefusal(isRefused(camera), isRefused(location), locationServices);
        return;
    }
    // The camera is now not determined or authorised. Location not determined while location
    // services are on asks for camera access too, even with the camera authorised: location
    // access is never asked for here.
    if (camera == CameraStatus::NotDetermined || (location == LocationStatus::NotDetermined && locationServices))
        requestCameraAccess();
}

ZQTVINCaptureVC::PermissionTexts ZQTVINCaptureVC::permissionTexts() const
{
    return d->permissionTexts;
}

bool ZQTVINCaptureVC::permissionCheckWithThrow(bool)
{
    const CameraStatus camera = Authorization::cameraStatus();
    return camera == CameraStatus::NotDetermined || camera == CameraStatus::Authorized;
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
