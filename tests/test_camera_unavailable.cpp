// The capture screen where no camera can be used: no video device at all, or a file standing
// in for the camera that cannot be played. The camera area says so, the VIN can still be typed
// (also on a screen made without the manual option), and the failure is logged once.
#include "ZQTVINScanComponent.h"
#include "platform/ui/AlertController.h"
#include "platform/capture/CaptureDevice.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace ZQTPlatform;

namespace {

class CameraUnavailable : public ScreenSessionTest
{
protected:
    void pushScreen(bool manualOption)
    {
        screen = manualOption ? ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-NOCAM")
                              : ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "CLM-NOCAM");
        pushAndWait(host, screen, capture);
    }
    QWidget *notice() const { return screen->findChild<QWidget *>("cameraUnavailableView"); }
    qsizetype failureLines() const { return capture.lines().filter("The camera cannot be used").size(); }
};

} // namespace

TEST_F(CameraUnavailable, WithoutAnyDeviceTheScreenSaysSoAndOffersTheManualPromptEvenWithoutTheManualOption)
{
    TemporaryMainBundle branding;
    branding.writeSettings("<key>CameraUnavailableText</key><string>No camera on this phone</string>");
    pushScreen(false);
    EXPECT_TRUE(screen->isCameraUnavailable());
    ASSERT_TRUE(notice());
    EXPECT_TRUE(notice()->isVisible());
    EXPECT_EQ(notice()->findChild<QLabel *>("cameraUnavailableLbl")->text(), "No camera on this phone");
    EXPECT_EQ(notice()->geometry(), screen->findChild<QWidget *>("scanOverlayView")->geometry());
    EXPECT_TRUE(host.window.grab().save(TestData::artifactPath("camera_unavailable_375x812.png")));

    // The notice's own button opens the prompt (typing into it: test_manual_entry.cpp); nothing
    // more is logged.
    QPushButton *button = notice()->findChild<QPushButton *>("cameraUnavailableManualBtn");
    ASSERT_TRUE(button);
    // A person's click reaches the button: nothing lies over it.
    const QPoint centre = button->mapTo(&host.window, button->rect().center());
    QWidget *hit = host.window.childAt(centre);
    EXPECT_EQ(hit, button) << (hit ? hit->objectName().toStdString() + " " + hit->metaObject()->className() : "none");
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->digitKeyboardView() != nullptr; }, 3000));
    EXPECT_EQ(screen->presentedViewController(), screen->vinEntryAlertController());
    EXPECT_EQ(failureLines(), 1);
}

TEST_F(CameraUnavailable, AFileThatCannotBePlayedShowsTheNoticeAndTheStripButtonOnce)
{
    QTemporaryDir dir;
    const QString broken = writeTestFile(dir.filePath("broken.webm"), QByteArray(4096, 'x'));
    ASSERT_TRUE(CaptureDevice::addStandIn(broken));
    pushScreen(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->isCameraUnavailable(); }, 10000));
    ASSERT_TRUE(notice());
    EXPECT_TRUE(notice()->isVisible());
    EXPECT_EQ(notice()->findChild<QPushButton *>("cameraUnavailableManualBtn"), nullptr);
    EXPECT_TRUE(screen->findChild<QPushButton *>("manuallyEnterVINBtn")->isVisible());

    // Opening and cancelling the prompt starts the scanner again over the same failed device.
    QTest::mouseClick(screen->findChild<QPushButton *>("manuallyEnterVINBtn"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->digitKeyboardView() != nullptr; }, 3000));
    AlertController *alert = screen->vinEntryAlertController();
    QTest::mouseClick(alert->buttonForAction(alert->actions().at(0)), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return notice()->isVisible(); }, 2000));
    QTest::qWait(300);
    EXPECT_EQ(failureLines(), 1);
    EXPECT_TRUE(delegate.calls().isEmpty());
}
