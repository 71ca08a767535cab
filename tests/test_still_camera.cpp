// The still camera over picture stand-ins: tap to focus, points of interest under its fill
// gravity, still pictures and errors; and the capture screen's camera made (the photo preset of
// the back camera, the only one the component asks for), focused and dropped. Its flash: the
// screen face's flash test.
#include "ZQTVINScanComponent.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/CaptureSession.h"
#include "platform/capture/StillImageOutput.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/ui/Window.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <QPropertyAnimation>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace ZQTPlatform;
using Position = StillCamera::CameraPosition;
using Quality = StillCamera::CameraQuality;

namespace {

constexpr QSize pictureSize(640, 480);
// A 300 x 400 preview filled with a 640 x 480 picture shows its columns 140 to 500.
constexpr QSize previewSize(300, 400);
constexpr int firstSeenColumn = 140;
constexpr int lastSeenColumn = 500;

// Red left of the part the preview shows, green in it, blue right of it.
QImage stripes()
{
    QImage picture(pictureSize, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.fillRect(0, 0, firstSeenColumn, 480, Qt::red);
    painter.fillRect(firstSeenColumn, 0, lastSeenColumn - firstSeenColumn, 480, Qt::green);
    painter.fillRect(lastSeenColumn, 0, 640 - lastSeenColumn, 480, Qt::blue);
    return picture;
}

bool isGreen(QRgb pixel) { return qGreen(pixel) > 180 && qRed(pixel) < 80 && qBlue(pixel) < 80; }
bool isRed(QRgb pixel) { return qRed(pixel) > 180 && qGreen(pixel) < 80 && qBlue(pixel) < 80; }

class StillCameraTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        owned.reset();
        CaptureDevice::removeStandIns();
    }

    // A camera shown at the preview's size and started; waits for the preview's first picture.
    StillCamera *startedCamera()
    {
        auto *camera = StillCamera::initWithQuality(Quality::Photo, Position::Back);
        owned.reset(camera);
        camera->loadViewIfNeeded();
        camera->resize(previewSize);
        camera->show();
        camera->setOnError([this](StillCamera *, const Error &error) { errors << error; });
        camera->start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !camera->captureVideoPreviewLayer()->currentPicture().isNull(); }, 5000));
        return camera;
    }

    CaptureDevice *back = CaptureDevice::addStandIn(stripes(), CaptureDevice::Position::Back);
    std::unique_ptr<StillCamera> owned;
    QList<Error> errors;
};

} // namespace

// Capturing calls back off the GUI thread and freezes the preview until the next start; a tap
// focuses there and shows the box; points of interest follow the fill gravity.
TEST_F(StillCameraTest, CaptureCallsBackOffTheGuiThreadTapFocusesAndPointsOfInterestFollowTheFillGravity)
{
    StillCamera *camera = startedCamera();
    for (const bool exactSeenImage : {false, true}) {
        std::atomic<bool> done{false};
        bool offGuiThread = false;
        Image image;
        QVariantMap metadata;
        Error error;
        camera->capture(
            [&](StillCamera *, const Image &i, const QVariantMap &m, const Error &e) {
                offGuiThread = QThread::currentThread() != qApp->thread();
                image = i;
                metadata = m;
                error = e;
                done = true;
            },
            exactSeenImage);
        ASSERT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 5000));
        EXPECT_TRUE(offGuiThread);
        EXPECT_TRUE(error.isNull());
        EXPECT_EQ(metadata.value("PixelXDimension").toInt(), 640);
        const QImage bitmap = image.bitmap();
        if (exactSeenImage) {
            EXPECT_EQ(bitmap.size(), QSize(lastSeenColumn - firstSeenColumn, 480));
            for (const QPoint corner : {QPoint(2, 2), QPoint(bitmap.width() - 3, bitmap.height() - 3)})
                EXPECT_TRUE(isGreen(bitmap.pixel(corner))) << corner.x();
        } else {
            EXPECT_EQ(bitmap.size(), pictureSize);
            EXPECT_TRUE(isRed(bitmap.pixel(10, 240)));
        }
        CaptureConnection *preview = camera->captureVideoPreviewLayer()->connection();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !preview->isEnabled(); }, 2000));
        camera->start();
        EXPECT_TRUE(preview->isEnabled());
    }

    QWidget *box = camera->focusBoxLayer();
    ASSERT_TRUE(box && camera->focusBoxAnimation());
    EXPECT_EQ(box->size(), QSize(70, 60));
    EXPECT_EQ(back->focusMode(), CaptureDevice::FocusMode::ContinuousAutoFocus);
    QTest::mouseClick(camera->preview(), Qt::LeftButton, {}, QPoint(60, 100));
    EXPECT_EQ(back->focusMode(), CaptureDevice::FocusMode::AutoFocus);
    EXPECT_EQ(back->focusPointOfInterest(), QPointF(0.25, 0.8));
    EXPECT_EQ(box->geometry().center(), QPoint(60, 100) - QPoint(1, 1)); // QRect's centre rounds down
    EXPECT_EQ(camera->focusBoxAnimation()->state(), QAbstractAnimation::Running);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return static_cast<QGraphicsOpacityEffect *>(box->graphicsEffect())->opacity() == 0.0; }, 2000));

    CaptureDevice::Capabilities unlockable;
    unlockable.lockable = false;
    back->setCapabilities(unlockable);
    QTest::mouseClick(camera->preview(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(errors.size(), 1);

    // Under the camera's own fill gravity the picture overflows at the sides above; in a square
    // view, at the top and bottom.
    ASSERT_EQ(camera->captureVideoPreviewLayer()->videoGravity(), VideoPreviewLayer::gravityResizeAspectFill);
    camera->resize(400, 400);
    const QPointF poi = camera->convertToPointOfInterestFromViewCoordinates(QPointF(100, 200));
    EXPECT_NEAR(poi.x(), 0.5, 1e-9);
    EXPECT_NEAR(poi.y(), 0.75, 1e-9);
}

TEST_F(StillCameraTest, ScreenMakesItsCameraBehindTheOverlaysFocusesTheCentreDropsItAndLogsAStartWithoutInput)
{
    LogCapture log;
    // On screen, so that the views have their sizes.
    Window window;
    window.resize(375, 812);
    auto *screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, "CLM-1");
    window.setRootViewController(screen);
    window.makeKeyAndVisible();
    ASSERT_TRUE(QTest::qWaitFor([&] { return log.steps().contains("startBarCodeScanner"); }, 5000));
    const QRect frame = screen->findChild<QWidget *>("cameraImageView")->geometry();
    ASSERT_FALSE(frame.isEmpty());
    screen->initCamera();
    const QPointer<StillCamera> camera = screen->camera();
    ASSERT_TRUE(camera);
    EXPECT_EQ(screen->geometry(), frame); // attaching gives the host the frame
    EXPECT_EQ(camera->parentViewController(), screen);
    EXPECT_EQ(camera->geometry(), frame);
    EXPECT_EQ(screen->findChildren<QWidget *>(Qt::FindDirectChildrenOnly).first(), camera.data());
    EXPECT_TRUE(camera->fixOrientationAfterCapture());
    EXPECT_TRUE(camera->tapToFocus());
    EXPECT_EQ(camera->cameraQuality(), Quality::Photo);

    camera->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !camera->captureVideoPreviewLayer()->currentPicture().isNull(); }, 5000));
    EXPECT_EQ(camera->session()->sessionPreset(), CaptureSession::presetPhoto);
    EXPECT_EQ(camera->session()->videoDevice(), back);
    screen->onTapCamera(QPointF(3, 3));
    EXPECT_EQ(back->focusMode(), CaptureDevice::FocusMode::AutoFocus);
    EXPECT_EQ(back->focusPointOfInterest(),
              camera->convertToPointOfInterestFromViewCoordinates(QPointF(frame.width() / 2.0, frame.height() / 2.0)));

    screen->deinitCamera();
    EXPECT_EQ(screen->camera(), nullptr);
    EXPECT_TRUE(camera.isNull());
    EXPECT_TRUE(screen->childViewControllers().isEmpty());

    // No input at the start: the error is logged once and the session stays stopped; later starts
    // do not retry, they run the session without an input.
    CaptureDevice::removeStandIns();
    CaptureDevice::addStandIn(QImage(1, 1, QImage::Format_RGB32), CaptureDevice::Position::Back);
    screen->initCamera();
    screen->camera()->start();
    const QString error = "Camera error: Error Domain=AVFoundationErrorDomain Code=-11814 "
                          "\"The picture is too small to stream.\" "
                          "UserInfo={NSLocalizedDescription=The picture is too small to stream.}";
    EXPECT_EQ(log.lines().count(error), 1) << log.lines().join('\n').toStdString();
    EXPECT_FALSE(screen->camera()->session()->isRunning());
    EXPECT_EQ(screen->camera()->stillImageOutput(), nullptr);
    screen->camera()->start();
    EXPECT_TRUE(screen->camera()->session()->isRunning());
    EXPECT_TRUE(screen->camera()->session()->inputs().isEmpty());
    EXPECT_EQ(log.lines().count(error), 1);
}
