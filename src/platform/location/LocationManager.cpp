#include "platform/location/LocationManager.h"

#include "platform/foundation/RegularFile_p.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QGeoPositionInfo>
#include <QGeoPositionInfoSource>
#include <QMutex>
#include <QNmeaPositionInfoSource>
#include <QPointer>

namespace ZQTPlatform {

namespace {

QMutex nmeaMutex;
QString nmeaPath; // guarded by nmeaMutex

Error locationError(LocationManager::ErrorCode code)
{
    return Error(QString::fromLatin1(LocationManager::kCLErrorDomain), code,
                 QStringLiteral("The operation couldn\u2019t be completed. (kCLErrorDomain error %1.)").arg(code));
}

bool isDenied(Authorization::LocationStatus status)
{
    return status == Authorization::LocationStatus::Denied || status == Authorization::LocationStatus::Restricted;
}

} // namespace

const char LocationManager::kCLErrorDomain[] = "kCLErrorDomain";

void LocationManagerDelegate::locationManager(LocationManager *, const QList<QGeoPositionInfo> &)
{
}

void LocationManagerDelegate::locationManager(LocationManager *, const Error &)
{
}

void LocationManagerDelegate::locationManager(LocationManager *, Authorization::LocationStatus)
{
}

class LocationManager::Private
{
public:
    explicit Private(LocationManager *q) : q(q) {}

    // A source for the current configuration, owned by the manager; null when none can be had.
    QGeoPositionInfoSource *makeSource();
    void positionUpdated(const QGeoPositionInfo &info);
    // Runs one delegate call; a dispose() during it deletes the manager only after it returns.
    template <typename Call>
    void deliver(Call call);
    void fail(ErrorCode code);
    // Reports the error on a later turn of the GUI thread's event loop.
    void failLater(ErrorCode code);

    LocationManager *q;
    LocationManagerDelegate *delegate = nullptr;
    QGeoPositionInfoSource *source = nullptr;
    QGeoPositionInfo latest;
    double distanceFilter = kCLDistanceFilterNone;
    double desiredAccuracy = kCLLocationAccuracyBest;
    bool updating = false;
    bool delivering = false;
    bool disposed = false;
};

QGeoPositionInfoSource *LocationManager::Private::makeSource()
{
    const QString path = nmeaFile();
    if (path.isEmpty())
        return QGeoPositionInfoSource::createDefaultSource(q);
    // Read whole up front: the source would otherwise wait on a FIFO and read a device without end.
    RegularFileContent content = readRegularFile(path);
    if (content.status != RegularFileContent::Status::Read)
        return nullptr;
    auto *nmea = new QNmeaPositionInfoSource(QNmeaPositionInfoSource::SimulationMode, q);
    auto *sentences = new QBuffer(nmea);
    sentences->setData(content.data);
    sentences->open(QIODevice::ReadOnly);
    nmea->setDevice(sentences);
    return nmea;
}

void LocationManager::Private::positionUpdated(const QGeoPositionInfo &info)
{
    latest = info;
    deliver([this, info](LocationManagerDelegate *to) { to->locationManager(q, QList<QGeoPositionInfo>{info}); });
}

template <typename Call>
void LocationManager::Private::deliver(Call call)
{
    if (!delegate)
        return;
    delivering = true;
    call(delegate);
    delivering = false;
    if (disposed)
        q->deleteLater();
}

void LocationManager::Private::fail(ErrorCode code)
{
    deliver([this, code](LocationManagerDelegate *to) { to->locationManager(q, locationError(code)); });
}

void LocationManager::Private::failLater(ErrorCode code)
{
    QMetaObject::invokeMethod(q, [this, code] { fail(code); }, Qt::QueuedConnection);
}

LocationManager::LocationManager() : QObject(QCoreApplication::instance()), d(std::make_unique<Private>(this))
{
}

LocationManager::~LocationManager() = default;

LocationManagerDelegate *LocationManager::delegate() const
{
    return d->delegate;
}

void LocationManager::setDelegate(LocationManagerDelegate *delegate)
{
    d->delegate = delegate;
}

double LocationManager::distanceFilter() const
{
    return d->distanceFilter;
}

void LocationManager::setDistanceFilter(double meters)
{
    d->distanceFilter = meters;
}

double LocationManager::desiredAccuracy() const
{
    return d->desiredAccuracy;
}

void LocationManager::setDesiredAccuracy(double meters)
{
    d->desiredAccuracy = meters;
}

void LocationManager::requestWhenInUseAuthorization()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            const Authorization::LocationStatus status = Authorization::locationStatus();
            d->deliver([this, status](LocationManagerDelegate *to) { to->locationManager(this, status); });
        },
        Qt::QueuedConnection);
}

void LocationManager::startUpdatingLocation()
{
    if (d->updating)
        return;
    if (isDenied(Authorization::locationStatus())) {
        d->failLater(kCLErrorDenied);
        return;
    }
    if (!d->source) {
        d->source = d->makeSource();
        if (!d->source) {
            d->failLater(kCLErrorLocationUnknown);
            return;
        }
        // Queued: Qt's sources may report inside startUpdates() or while their settings change
        // (the NMEA file's first fix, the default source's errors); the platform never reports
        // inside the call that starts the request, nor after it stopped.
        connect(
            d->source, &QGeoPositionInfoSource::positionUpdated, this,
            [this](const QGeoPositionInfo &info) {
                if (d->updating)
                    d->positionUpdated(info);
            },
            Qt::QueuedConnection);
        connect(
            d->source, &QGeoPositionInfoSource::errorOccurred, this,
            [this](QGeoPositionInfoSource::Error error) {
                if (d->updating)
                    d->fail(error == QGeoPositionInfoSource::AccessError ? kCLErrorDenied : kCLErrorLocationUnknown);
            },
            Qt::QueuedConnection);
    }
    d->source->setPreferredPositioningMethods(d->desiredAccuracy < kCLLocationAccuracyHundredMeters
                                                  ? QGeoPositionInfoSource::SatellitePositioningMethods
                                                  : QGeoPositionInfoSource::AllPositioningMethods);
    d->updating = true;
    d->source->startUpdates();
}

void LocationManager::stopUpdatingLocation()
{
    if (d->source && d->updating)
        d->source->stopUpdates();
    d->updating = false;
}

bool LocationManager::isUpdatingLocation() const
{
    return d->updating;
}

QGeoPositionInfo LocationManager::location() const
{
    return d->latest;
}

void LocationManager::dispose()
{
    stopUpdatingLocation();
    d->delegate = nullptr;
    d->disposed = true;
    if (!d->delivering)
        delete this;
}

bool LocationManager::locationServicesEnabled()
{
    return !nmeaFile().isEmpty() || !QGeoPositionInfoSource::availableSources().isEmpty();
}

void LocationManager::setNmeaFile(const QString &path)
{
    {
        QMutexLocker lock(&nmeaMutex);
        nmeaPath = path;
    }
    Authorization::setHasConfiguredPositionSource(!path.isEmpty());
}

QString LocationManager::nmeaFile()
{
    QMutexLocker lock(&nmeaMutex);
    return nmeaPath;
}

} // namespace ZQTPlatform
