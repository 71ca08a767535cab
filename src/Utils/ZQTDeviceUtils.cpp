#include "Utils/ZQTDeviceUtils.h"

#include "Utils/ZQTDeviceUtils_p.h"
#include "platform/foundation/Authorization.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Dispatch.h"

#include <QBuffer>
#include <QDir>
#include <QStorageInfo>

#include <sys/utsname.h>

#include <algorithm>
#include <iterator>
#include <utility>

using ZQTPlatform::Authorization;

namespace {

constexpr quint64 freeSpaceMargin = 1024;

// Model classes by exact hardware model string, in the order they are tested.
constexpr std::pair<const char *, qint64> modelClasses[] = {
    {"iPhone3,1", 1}, {"iPhone3,2", 1}, {"iPhone3,3", 1}, {"iPhone4,1", 1},
    {"iPhone5,1", 2}, {"iPhone5,2", 2}, {"iPhone5,3", 2}, {"iPhone5,4", 2}, {"iPhone6,1", 2}, {"iPhone6,2", 2},
    {"iPhone7,2", 3},
    {"iPhone7,1", 4},
};

// Deliberately not model class 1: "iPhone3,2" is left out.
constexpr const char *iPhone4Models[] = {"iPhone3,1", "iPhone3,3", "iPhone4,1"};

QString unameMachine()
{
    struct utsname name;
    if (uname(&name) != 0)
        return QString();
    return QString::fromUtf8(name.machine);
}

quint64 pngLength(const QImage &bitmap)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !bitmap.save(&buffer, "PNG"))
        return 0;
    return quint64(png.size());
}

quint64 freeBytesOfHome()
{
    const qint64 available = QStorageInfo(QDir::homePath()).bytesAvailable();
    return available > 0 ? quint64(available) : 0;
}

} // namespace

// More than the PNG encoding of the bitmap can take: every row unfiltered and stored without
// compression at 8 bytes a pixel, plus deflate's and the chunks' overhead and the text chunks.
quint64 ZQTDeviceUtilsPrivate::pngLengthBound(const QImage &bitmap)
{
    quint64 raw = quint64(bitmap.height()) * (1 + quint64(bitmap.width()) * 8);
    for (const QString &key : bitmap.textKeys())
        raw += quint64(key.size() + bitmap.text(key).size()) * 4 + 12;
    return raw + raw / 100 + 65536;
}

bool ZQTDeviceUtilsPrivate::hasRoomForImage(quint64 imageBytes, quint64 freeBytes)
{
    return freeBytes > imageBytes && freeBytes - imageBytes > freeSpaceMargin;
}

QString ZQTDeviceUtils::platformRawString()
{
    const QString machine = ZQTPlatform::DeviceProfile::current().machine;
    return machine.isEmpty() ? unameMachine() : machine;
}

qint64 ZQTDeviceUtils::iPhoneDeviceModel()
{
    const QString platform = platformRawString();
    const auto match = std::find_if(std::begin(modelClasses), std::end(modelClasses),
                                    [&](const auto &entry) { return platform == QLatin1String(entry.first); });
    return match == std::end(modelClasses) ? 0 : match->second;
}

bool ZQTDeviceUtils::isiPhone4Device()
{
    const QString platform = platformRawString();
    return std::any_of(std::begin(iPhone4Models), std::end(iPhone4Models),
                       [&](const char *model) { return platform == QLatin1String(model); });
}

bool ZQTDeviceUtils::isCameraUsePermitted()
{
    // Asked of the device the capture screen would use: the host's stand-in (a video file or a
    // picture) when there is one, else the system's default camera. Devices live on the GUI
    // thread, so the input is tried there.
    bool inputMade = false;
    ZQTPlatform::Dispatch::mainSync([&inputMade] {
        using ZQTPlatform::CaptureDevice;
        CaptureDevice *device = CaptureDevice::defaultDeviceWithMediaType(CaptureDevice::mediaTypeVideo());
        ZQTPlatform::Error error;
        inputMade = device && ZQTPlatform::CaptureDeviceInput::deviceInputWithDevice(device, &error) && error.isNull();
    });
    return inputMade && Authorization::cameraStatus() == Authorization::CameraStatus::Authorized;
}

bool ZQTDeviceUtils::isLocationUsePermitted()
{
    const Authorization::LocationStatus status = Authorization::locationStatus();
    return status == Authorization::LocationStatus::AuthorizedAlways
        || status == Authorization::LocationStatus::AuthorizedWhenInUse;
}

bool ZQTDeviceUtils::isEnoughFreeSpaceToSaveImage(const ZQTPlatform::Image &image)
{
    // Encoding a camera photo as PNG takes seconds; it is only needed when the free space is
    // close to what the PNG could take. The answer is the same either way.
    const quint64 freeBytes = freeBytesOfHome();
    if (ZQTDeviceUtilsPrivate::hasRoomForImage(ZQTDeviceUtilsPrivate::pngLengthBound(image.bitmap()), freeBytes))
        return true;
    return ZQTDeviceUtilsPrivate::hasRoomForImage(pngLength(image.bitmap()), freeBytes);
}

void ZQTDeviceUtils::locationManager(QObject *, int)
{
}
