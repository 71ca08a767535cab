// A one-shot position reader: asks the location manager for updates and hands the first position
// it gets to a delegate, then stops. Authorisation changes are passed on to the delegate too.
// Made, used and destroyed on the GUI thread; the delegate's calls run there.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Authorization.h"
#include "platform/location/LocationManager.h"

#include <QPointer>
#include <functional>

class QGeoPositionInfo;

// What ZQTLocationUtils reports; both calls run on the GUI thread.
class ZQT_EXPORT ZQTLocationUtilsDelegate
{
public:
    virtual ~ZQTLocationUtilsDelegate() = default;
    virtual void updateUsersLocation(const QGeoPositionInfo &location) = 0;
    virtual void locationManager(ZQTPlatform::LocationManager *manager,
                                 ZQTPlatform::Authorization::LocationStatus didChangeAuthorizationStatus) = 0;
};

class ZQT_EXPORT ZQTLocationUtils : public ZQTPlatform::LocationManagerDelegate
{
public:
    // Kept for the host by updateLocationWithCompletion; this class never calls it.
    using Completion = std::function<void()>;

    ZQTLocationUtils() = default;
    // Stops updating when a manager exists.
    ~ZQTLocationUtils() override;
    ZQTLocationUtils(const ZQTLocationUtils &) = delete;
    ZQTLocationUtils &operator=(const ZQTLocationUtils &) = delete;

    // Not owned; it must outlive this object or be cleared first.
    ZQTLocationUtilsDelegate *delegate() const { return m_delegate; }
    void setDelegate(ZQTLocationUtilsDelegate *delegate) { m_delegate = delegate; }
    Completion completion() const { return m_completion; }
    // The manager of the latest update request; null before the first.
    ZQTPlatform::LocationManager *locationManager() const { return m_locationManager; }

    // A new manager (the earlier one is disposed of) with this object as its delegate; asks for
    // when-in-use authorisation and starts updating.
    void updateLocation();
    // Keeps the completion, then as updateLocation.
    void updateLocationWithCompletion(const Completion &completion);
    // Whether the machine offers location at all (not whether this application may use it).
    static bool isLocationServicesEnabled();

    // Location manager callbacks (GUI thread).
    // The first (oldest) position of a non-empty batch goes to the delegate and updates stop; an
    // empty batch changes nothing.
    void locationManager(ZQTPlatform::LocationManager *manager, const QList<QGeoPositionInfo> &didUpdateLocations) override;
    // Ignored: updates go on and the caller keeps waiting.
    void locationManager(ZQTPlatform::LocationManager *manager, const ZQTPlatform::Error &didFailWithError) override;
    // Passed on to the delegate unchanged.
    void locationManager(ZQTPlatform::LocationManager *manager,
                         ZQTPlatform::Authorization::LocationStatus didChangeAuthorizationStatus) override;

private:
    QPointer<ZQTPlatform::LocationManager> m_locationManager;
    ZQTLocationUtilsDelegate *m_delegate = nullptr;
    Completion m_completion;
};
