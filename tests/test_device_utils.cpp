// Device questions: the free-space rule, the permission tests, and
// the authorisation provider they ask.
#include "Utils/ZQTDeviceUtils.h"
#include "Utils/ZQTDeviceUtils_p.h"
#include "platform/foundation/Authorization.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/SystemVersion_p.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QCameraDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QScopeGuard>
#include <QTest>
#include <QSysInfo>
#include <QThread>

#include <limits>
#include <memory>
#include <optional>

using ZQTPlatform::Authorization;
using ZQTPlatform::CaptureDevice;
using ZQTPlatform::DeviceProfile;
using CameraStatus = Authorization::CameraStatus;
using LocationStatus = Authorization::LocationStatus;

namespace {

class DeviceUtils : public ::testing::Test
{
protected:
    void TearDown() override
    {
        DeviceProfile::resetToScreen();
        Authorization::reset();
        Authorization::setHasConfiguredVideoSource(false);
        Authorization::setHasConfiguredPositionSource(false);
    }
};

} // namespace

// The free-space query itself (a home it cannot read has no room) is covered by the photo store.
TEST_F(DeviceUtils, FreeSpaceMustExceedTheImageBy1024BytesAndTheSystemVersionIsTheSystemsOrACurrentOne)
{
    constexpr quint64 max = std::numeric_limits<quint64>::max();
    const struct { quint64 image, free; bool enough; } cases[] = {
        {5000000, 5001024, false}, {5000000, 5001025, true}, {0, 0, false}, {5000000, max, true},
        {max - 1025, max, true},   {max - 1024, max, false}, {max, 2000, false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ZQTDeviceUtilsPrivate::hasRoomForImage(c.image, c.free), c.enough) << c.image << " in " << c.free;

    // The system's own version where it names one; a current version where it names none, so
    // that alerts show and the bundle's images take the current path on such systems too.
    const QList<QPair<QString, QString>> versions = {{"22.04", "22.04"}, {"7.1 beta", "7.1"}, {"rolling", "17.0"}, {"", "17.0"}};
    for (const auto &[productVersion, version] : versions)
        EXPECT_EQ(ZQTPlatform::systemVersionFromProductVersion(productVersion), version) << productVersion.toStdString();
    DeviceProfile::resetToScreen();
    EXPECT_EQ(DeviceProfile::current().systemVersion,
              ZQTPlatform::systemVersionFromProductVersion(QSysInfo::productVersion()));
}

TEST_F(DeviceUtils, CameraUseNeedsAnOpenableCameraNotOnlyThePermission)
{
    if (!QMediaDevices::videoInputs().isEmpty())
        GTEST_SKIP() << "this machine has a camera";
    EXPECT_EQ(Authorization::cameraStatus(), CameraStatus::Restricted) << "answered from the devices";
    Authorization::setCameraStatus(CameraStatus::Authorized);
    Authorization::setHasConfiguredVideoSource(true);
    EXPECT_FALSE(ZQTDeviceUtils::isCameraUsePermitted());
}

// The question is asked of the device the capture screen would use: a picture or a video file
// standing in for the camera counts, with the permission.
TEST_F(DeviceUtils, CameraAndLocationUseAreAnsweredFromTheStatusesAndTheDefaultCaptureDeviceAndAccessLaterOnTheGuiThread)
{
    ASSERT_NE(CaptureDevice::addStandIn(TestData::filled(64, 48, Qt::darkCyan)), nullptr);
    const auto cleanUp = qScopeGuard([] { CaptureDevice::removeStandIns(); });
    Authorization::setHasConfiguredVideoSource(true);
    Authorization::setLocationStatus(LocationStatus::AuthorizedWhenInUse);

    // Only an authorised camera is permitted (a camera that cannot be opened: the test above).
    for (const CameraStatus status : {CameraStatus::Denied, CameraStatus::NotDetermined, CameraStatus::Authorized}) {
        Authorization::setCameraStatus(status);
        EXPECT_EQ(ZQTDeviceUtils::isCameraUsePermitted(), status == CameraStatus::Authorized) << int(status);
    }
    // Location use needs "always" or "when in use".
    const bool locationPermitted[] = {false, false, false, true, true};
    for (int status = 0; status <= 4; ++status) {
        Authorization::setLocationStatus(LocationStatus(status));
        EXPECT_EQ(ZQTDeviceUtils::isLocationUsePermitted(), locationPermitted[status]) << status;
    }

    // Camera access is answered later, on the GUI thread.
    const std::pair<CameraStatus, bool> cases[] = {
        {CameraStatus::Authorized, true}, {CameraStatus::Denied, false}, {CameraStatus::NotDetermined, true}};
    for (const auto &[status, granted] : cases) {
        Authorization::reset();
        Authorization::setCameraStatus(status);
        std::optional<bool> answer;
        QThread *answeredOn = nullptr;
        std::unique_ptr<QThread> worker(QThread::create([&] {
            Authorization::requestCameraAccess([&](bool g) {
                answer = g;
                answeredOn = QThread::currentThread();
            });
        }));
        worker->start();
        worker->wait();
        EXPECT_FALSE(answer.has_value()) << "answered before the event loop ran";
        ASSERT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); }, 2000));
        EXPECT_EQ(*answer, granted) << int(status);
        EXPECT_EQ(answeredOn, QCoreApplication::instance()->thread());
        EXPECT_EQ(Authorization::cameraAccessRequestCount(), 1) << "counted since the reset";
    }
}
