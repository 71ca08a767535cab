// The location manager: one position request over a Qt Positioning source, reported to a
// delegate as the platform's location manager reports (positions, errors, authorisation).
// The source is an NMEA file when the host names one (replayed as recorded), otherwise the
// system's default source.
//
// A manager is made, used and disposed of on the GUI thread; it belongs to the application
// object, so one still alive when the application ends goes with it. Every delegate call runs
// on the GUI thread, from the event loop (never inside the call that started the request).
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Authorization.h"
#include "platform/foundation/Error.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class QGeoPositionInfo;

namespace ZQTPlatform {

class LocationManager;

// What a location manager reports; every method is optional and does nothing by default.
class ZQT_EXPORT LocationManagerDelegate
{
public:
    virtual ~LocationManagerDelegate() = default;
    // New positions, oldest first (Qt's sources deliver one at a time).
    virtual void locationManager(LocationManager *manager, const QList<QGeoPositionInfo> &didUpdateLocations);
    // No position can be had: code kCLErrorDenied (1) when location use is not authorised,
    // kCLErrorLocationUnknown (0) when no source works. Updates are not stopped by the manager.
    virtual void locationManager(LocationManager *manager, const Error &didFailWithError);
    // The authorisation status, after requestWhenInUseAuthorization.
    virtual void locationManager(LocationManager *manager, Authorization::LocationStatus didChangeAuthorizationStatus);
};

class ZQT_EXPORT LocationManager : public QObject
{
public:
    static constexpr double kCLDistanceFilterNone = -1.0;
    static constexpr double kCLLocationAccuracyBest = -1.0;
    static constexpr double kCLLocationAccuracyHundredMeters = 100.0;
    static const char kCLErrorDomain[];
    enum ErrorCode { kCLErrorLocationUnknown = 0, kCLErrorDenied = 1 };

    LocationManager();
    ~LocationManager() override;

    // Not owned; cleared by dispose().
    LocationManagerDelegate *delegate() const;
    void setDelegate(LocationManagerDelegate *delegate);

    // The distance filter asked for, in metres. Qt's sources report every fix, which is what
    // kCLDistanceFilterNone (the default and the only value the component sets) asks for.
    double distanceFilter() const;
    void setDistanceFilter(double meters);
    // The accuracy asked for, in metres (default kCLLocationAccuracyBest). Below a hundred metres
    // the source prefers satellite positioning, otherwise any method.
    double desiredAccuracy() const;
    void setDesiredAccuracy(double meters);

    // Linux asks nobody: the delegate is told the current status (Authorization) on a later turn.
    void requestWhenInUseAuthorization();
    // Starts the source; positions or an error follow through the delegate.
    void startUpdatingLocation();
    void stopUpdatingLocation();
    bool isUpdatingLocation() const;

    // The most recent position the source gave; an invalid QGeoPositionInfo before the first.
    QGeoPositionInfo location() const;

    // Stops, forgets the delegate and deletes the manager: at once, or after the delegate call in
    // progress returns. Holders call this instead of delete.
    void dispose();

    // Whether the machine offers any position source (or the host named an NMEA file).
    static bool locationServicesEnabled();
    // The NMEA file that stands in for the device's position from now on; empty for the
    // system's default source. Told to Authorization as a configured source. Any thread.
    static void setNmeaFile(const QString &path);
    static QString nmeaFile();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
