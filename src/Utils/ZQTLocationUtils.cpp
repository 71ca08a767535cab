#include "Utils/ZQTLocationUtils.h"

#include <QGeoPositionInfo>

using ZQTPlatform::LocationManager;

ZQTLocationUtils::~ZQTLocationUtils()
{
    if (m_locationManager)
        m_locationManager->dispose();
}

void ZQTLocationUtils::updateLocation()
{
    if (m_locationManager)
        m_locationManager->dispose();
    m_locationManager = new LocationManager;
    m_locationManager->setDelegate(this);
    m_locationManager->requestWhenInUseAuthorization();
    m_locationManager->startUpdatingLocation();
}

void ZQTLocationUtils::updateLocationWithCompletion(const Completion &completion)
{
    m_completion = completion;
    updateLocation();
}

bool ZQTLocationUtils::isLocationServicesEnabled()
{
    return LocationManager::locationServicesEnabled();
}

void ZQTLocationUtils::locationManager(LocationManager *manager, const QList<QGeoPositionInfo> &didUpdateLocations)
{
    if (didUpdateLocations.isEmpty())
        return;
    if (m_delegate)
        m_delegate->updateUsersLocation(didUpdateLocations.first());
    manager->stopUpdatingLocation();
}

void ZQTLocationUtils::locationManager(LocationManager *, const ZQTPlatform::Error &)
{
}

void ZQTLocationUtils::locationManager(LocationManager *manager,
                                       ZQTPlatform::Authorization::LocationStatus didChangeAuthorizationStatus)
{
    if (m_delegate)
        m_delegate->locationManager(manager, didChangeAuthorizationStatus);
}
