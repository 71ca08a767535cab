// The camera and location authorisation states, numbered as the platform numbers them, and the
// camera access request. Linux has no per-application permission for either, so the answers
// come from what the machine has; a host (or a test) can fix any answer.
//
// Default answers:
// - camera: Authorized when the system lists a video input or the host has configured a video
//   source (a file or image standing in for the camera); otherwise Restricted. Without any
//   camera nothing the user grants can make one usable, which is what Restricted says; NotDetermined
//   would promise that asking could help and would make every foreground check ask again.
// - location: AuthorizedWhenInUse when Qt Positioning offers a position source or the host has
//   configured one (an NMEA source); otherwise NotDetermined.
//
// All operations may be called from any thread.
#pragma once

#include "ZQTGlobal.h"

#include <functional>

namespace ZQTPlatform {

class ZQT_EXPORT Authorization
{
public:
    enum class CameraStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };
    enum class LocationStatus {
        NotDetermined = 0, Restricted = 1, Denied = 2, AuthorizedAlways = 3, AuthorizedWhenInUse = 4
    };

    Authorization() = delete;

    // The answer fixed by setCameraStatus, else the default above.
    static CameraStatus cameraStatus();
    // The answer fixed by setLocationStatus, else the default above.
    static LocationStatus locationStatus();

    // Asks for camera access. The completion runs later on the GUI thread (queued) with the
    // answer: granted when the status is Authorized, or NotDetermined on a machine with a camera
    // or a configured video source. Asking does not change the status.
    static void requestCameraAccess(std::function<void(bool granted)> completion);
    // How many camera access requests were made since start-up or the last reset().
    static int cameraAccessRequestCount();

    // Told by the video-source code whether the host configured a source (file or image).
    static void setHasConfiguredVideoSource(bool configured);
    // Told by the location code whether the host configured a position source (NMEA).
    static void setHasConfiguredPositionSource(bool configured);

    // Fix an answer until reset().
    static void setCameraStatus(CameraStatus status);
    static void setLocationStatus(LocationStatus status);
    // Drops the fixed answers and the request count; the configured sources stay as told.
    static void reset();
};

} // namespace ZQTPlatform
