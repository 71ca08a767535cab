// NMEA input as the location stand-in reads it: the bytes as the host's NMEA file, one position
// request through the location manager, events run until it answers or a short while passes.
#include "FuzzSupport.h"

#include "platform/location/LocationManager.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

using ZQTPlatform::LocationManager;

namespace {

QString nmeaPath;

struct Answer : ZQTPlatform::LocationManagerDelegate
{
    bool answered = false;
    void locationManager(LocationManager *, const QList<QGeoPositionInfo> &) override { answered = true; }
    void locationManager(LocationManager *, const ZQTPlatform::Error &) override { answered = true; }
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    static QTemporaryDir folder;
    nmeaPath = folder.filePath(QStringLiteral("fix.nmea"));
    LocationManager::setNmeaFile(nmeaPath);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::writeFile(nmeaPath, Fuzz::bytesOf(data, size));

    Answer answer;
    auto *manager = new LocationManager;
    manager->setDelegate(&answer);
    manager->startUpdatingLocation();
    QElapsedTimer waited;
    waited.start();
    while (!answer.answered && waited.elapsed() < 20)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    manager->dispose();
    QCoreApplication::processEvents();
    return 0;
}
