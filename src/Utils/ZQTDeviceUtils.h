// Questions about the device: its hardware model string and the model class of older phones,
// whether camera and location may be used, and whether there is room to store a photo.
// Class operations only; all may be called from any thread.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QString>

class QObject;

class ZQT_EXPORT ZQTDeviceUtils
{
public:
    ZQTDeviceUtils() = delete;

    // The hardware model string: the device profile's machine, else the uname machine string.
    static QString platformRawString();
    // 1 for "iPhone3,1" "iPhone3,2" "iPhone3,3" "iPhone4,1"; 2 for "iPhone5,1" to "iPhone5,4",
    // "iPhone6,1" and "iPhone6,2"; 3 for "iPhone7,2"; 4 for "iPhone7,1"; 0 for anything else.
    static qint64 iPhoneDeviceModel();
    // "iPhone3,1", "iPhone3,3" or "iPhone4,1"; unlike model class 1, not "iPhone3,2".
    static bool isiPhone4Device();
    // The default capture device for video (the host's stand-in when there is one, else the
    // default camera) exists, an input can be made over it without error, and the camera
    // status is Authorized. The device is looked at on the GUI thread: from another thread the
    // call waits for it, so never call it from a thread the GUI thread is waiting for.
    static bool isCameraUsePermitted();
    // The location status is AuthorizedAlways or AuthorizedWhenInUse.
    static bool isLocationUsePermitted();
    // The volume holding the home directory has more than the image's PNG size plus 1024 bytes
    // free. Encodes the image: keep it off the GUI thread for large images.
    static bool isEnoughFreeSpaceToSaveImage(const ZQTPlatform::Image &image);
    // Location delegate callback; does nothing.
    static void locationManager(QObject *manager, int didChangeAuthorizationStatus);
};
