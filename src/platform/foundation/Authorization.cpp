#include "platform/foundation/Authorization.h"

#include "platform/foundation/Dispatch.h"

#include <QCameraDevice>
#include <QGeoPositionInfoSource>
#include <QMediaDevices>
#include <QMutex>

#include <optional>

namespace ZQTPlatform {

namespace {

struct State
{
    std::optional<Authorization::CameraStatus> camera;
    std::optional<Authorization::LocationStatus> location;
    bool configuredVideoSource = false;
    bool configuredPositionSource = false;
    int cameraRequests = 0;
};

QMutex stateMutex;
State state;

// The device queries run outside the lock: they may load plugins.
bool hasVideoDevice(bool configuredSource)
{
    return configuredSource || !QMediaDevices::videoInputs().isEmpty();
}

bool hasPositionSource(bool configuredSource)
{
    return configuredSource || !QGeoPositionInfoSource::availableSources().isEmpty();
}

State snapshot()
{
    QMutexLocker lock(&stateMutex);
    return state;
}

} // namespace

Authorization::CameraStatus Authorization::cameraStatus()
{
    const State now = snapshot();
    if (now.camera)
        return *now.camera;
    return hasVideoDevice(now.configuredVideoSource) ? CameraStatus::Authorized : CameraStatus::Restricted;
}

Authorization::LocationStatus Authorization::locationStatus()
{
    const State now = snapshot();
    if (now.location)
        return *now.location;
    return hasPositionSource(now.configuredPositionSource) ? LocationStatus::AuthorizedWhenInUse
                                                          : LocationStatus::NotDetermined;
}

void Authorization::requestCameraAccess(std::function<void(bool granted)> completion)
{
    {
        QMutexLocker lock(&stateMutex);
        ++state.cameraRequests;
    }
    const CameraStatus status = cameraStatus();
    const bool granted = status == CameraStatus::Authorized
        || (status == CameraStatus::NotDetermined && hasVideoDevice(snapshot().configuredVideoSource));
    Dispatch::mainAsync([completion = std::move(completion), granted] {
        if (completion)
            completion(granted);
    });
}

int Authorization::cameraAccessRequestCount()
{
    QMutexLocker lock(&stateMutex);
    return state.cameraRequests;
}

void Authorization::setHasConfiguredVideoSource(bool configured)
{
    QMutexLocker lock(&stateMutex);
    state.configuredVideoSource = configured;
}

void Authorization::setHasConfiguredPositionSource(bool configured)
{
    QMutexLocker lock(&stateMutex);
    state.configuredPositionSource = configured;
}

void Authorization::setCameraStatus(CameraStatus status)
{
    QMutexLocker lock(&stateMutex);
    state.camera = status;
}

void Authorization::setLocationStatus(LocationStatus status)
{
    QMutexLocker lock(&stateMutex);
    state.location = status;
}

void Authorization::reset()
{
    QMutexLocker lock(&stateMutex);
    state.camera.reset();
    state.location.reset();
    state.cameraRequests = 0;
}

} // namespace ZQTPlatform
