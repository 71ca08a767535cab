// The capture screen's help card: showing by itself after appearing (hiding the status bar), its
// configured content and animated picture, the help button, closing by a tap, direct dismissal, the landscape scene
// and the smallest phone, and placeholders without a VIN slot.
#include "ZQTVINScanComponent.h"
#include "ViewControllers/ZQTVINCaptureOverlayVC.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/ui/Application.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewAnimation.h"
#include "support/LogCapture.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

class HelpOverlay : public ::testing::Test
{
protected:
    void SetUp() override { addFlatCamera(QColor(40, 160, 200)); }
    void TearDown() override { CaptureDevice::removeStandIns(); }

    // Pushes a new screen and waits for the end of its start-up.
    ZQTVINCaptureVC *push(PhoneHost &host, bool landscape = false)
    {
        const QSize size = host.window.size();
        ZQTVINCaptureVC *screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, "CLM-HELP");
        screen->setEnableLandscapeMode(landscape);
        pushAndWait(host, screen, capture);
        started.start();
        // The window grows to the scene's first minimum while showing; back to the device's size.
        host.window.resize(size);
        return screen;
    }
    // Waits for the card that shows by itself after appearing, faded in.
    static ZQTVINCaptureOverlayVC *autoCard(ZQTVINCaptureVC *screen)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return screen->overlayView2() && alpha(screen->overlayView2()) == 1.0; }, 3000));
        return qobject_cast<ZQTVINCaptureOverlayVC *>(screen->overlayView2());
    }
    static QWidget *cameraImageView(ZQTVINCaptureVC *screen) { return screen->findChild<QWidget *>("cameraImageView"); }

    LogCapture capture;
    QElapsedTimer started;
};

// Every text of the card fits its label, and every label lies inside the card.
void expectNothingClipped(ZQTVINCaptureOverlayVC *card)
{
    for (QLabel *label : {card->headerLbl(), card->titleLbl(), card->descrLbl(), card->lblTapAnyWhere()}) {
        SCOPED_TRACE(label->objectName().toStdString());
        EXPECT_FALSE(label->text().isEmpty());
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        EXPECT_TRUE(card->rect().contains(QRect(label->mapTo(card, QPoint(0, 0)), label->size())));
    }
}

} // namespace

// The card shows by itself with its configured content and animated picture, pausing the camera;
// help, a tap and dismissal take it down, and the camera follows.
TEST_F(HelpOverlay, ShowsByItselfWithTheConfiguredContentAndHelpTapAndDismissTakeItDown)
{
    AnalyticsRecorder analytics;
    PhoneHost host;
    ZQTVINCaptureVC *screen = push(host);
    EXPECT_EQ(screen->overlayView2(), nullptr) << "not before half a second";
    Application *application = Application::sharedApplication();
    EXPECT_FALSE(application->isStatusBarHidden()) << "the capture screen keeps it on a notched phone";
    screen->initCamera();
    screen->camera()->start();
    ASSERT_TRUE(screen->camera()->session()->isRunning());
    ZQTVINCaptureOverlayVC *shown = autoCard(screen);
    ASSERT_NE(shown, nullptr);
    EXPECT_GE(started.elapsed(), 450);
    EXPECT_TRUE(application->isStatusBarHidden()) << "the card hides it";
    EXPECT_TRUE(application->statusBarFrame().isEmpty());
    EXPECT_TRUE(screen->vinScanItem()->hasBeenDisplayed());
    EXPECT_EQ(shown->parentWidget(), screen);
    EXPECT_EQ(shown->geometry(), screen->rect());
    EXPECT_TRUE(cameraImageView(screen)->isHidden());
    StillCamera *camera = screen->camera();
    EXPECT_TRUE(camera->isHidden());
    EXPECT_FALSE(camera->session()->isRunning()) << "paused by the card";

    EXPECT_EQ(shown->headerLbl()->text(), "VIN photo");
    EXPECT_EQ(shown->titleLbl()->text(), "Find the VIN barcode");
    EXPECT_TRUE(shown->descrLbl()->text().startsWith("Look for the barcode"));
    EXPECT_EQ(shown->lblTapAnyWhere()->text(), Constants::getConfigStringForKey("HelpOverlayTextCloseLabel"));
    expectNothingClipped(shown);

    ImageView *picture = shown->imageView();
    EXPECT_EQ(backgroundColor(picture), configuredColour("HelpOverlayImageBackgroundColor"));
    EXPECT_EQ(picture->animationImages().size(), 8) << "four frames forward and back";
    EXPECT_EQ(picture->animationDuration(), 5.0);
    ASSERT_TRUE(picture->isAnimating());
    // Eight frames in five seconds: a new frame every 0.625 s.
    const QImage first = picture->displayedImage().bitmap();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture->displayedImage().bitmap() != first; }, 2000));
    EXPECT_TRUE(application->isStatusBarHidden()) << "nothing later shows the status bar again";
    const QPointer<QWidget> card = shown;

    // Help while the card is up posts the event without a second card.
    auto *help = screen->findChild<QPushButton *>("helpButton");
    ASSERT_NE(help, nullptr);
    QTest::mouseClick(help, Qt::LeftButton);
    ASSERT_EQ(analytics.events.size(), 1);
    EXPECT_EQ(analytics.events[0].value("eventType"), "helpOverlay");
    EXPECT_EQ(screen->overlayView2(), card);
    EXPECT_EQ(screen->findChildren<ZQTVINCaptureOverlayVC *>().size(), 1);

    // A tap fades it out and starts the camera again.
    QElapsedTimer fade;
    fade.start();
    QTest::mouseClick(card, Qt::LeftButton, {}, card->rect().center());
    EXPECT_EQ(card->parentWidget(), screen) << "fading first";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !card; }, 1000));
    EXPECT_GE(fade.elapsed(), 190) << "a 0.2 s fade";
    EXPECT_EQ(screen->overlayView2(), nullptr);
    EXPECT_FALSE(cameraImageView(screen)->isHidden());
    EXPECT_FALSE(camera->isHidden());
    EXPECT_TRUE(camera->session()->isRunning());

    // Help brings a new card; dismissing takes it down at once and leaves the camera stopped.
    QTest::mouseClick(help, Qt::LeftButton);
    QWidget *second = autoCard(screen);
    ASSERT_NE(second, nullptr);
    screen->dismissOverlayIfShown();
    EXPECT_EQ(second->parentWidget(), nullptr);
    EXPECT_EQ(screen->overlayView2(), second) << "kept until the next card";
    EXPECT_FALSE(camera->session()->isRunning());
    EXPECT_TRUE(camera->isHidden());
    EXPECT_TRUE(cameraImageView(screen)->isHidden());

    screen->showOverlay();
    EXPECT_NE(screen->overlayView2(), nullptr);
    EXPECT_EQ(screen->overlayView2()->parentWidget(), screen);
}

TEST_F(HelpOverlay, LandscapeSceneAndSmallPhoneShowEveryTextWholeAndWithoutAVinSlotPlaceholders)
{
    for (const bool landscape : {true, false}) {
        SCOPED_TRACE(landscape ? "landscape" : "320x480");
        PhoneHost host(landscape ? QSize(812, 375) : QSize(320, 480));
        ZQTVINCaptureOverlayVC *card = autoCard(push(host, landscape));
        ASSERT_NE(card, nullptr);
        expectNothingClipped(card);
        if (landscape) { // picture and texts side by side
            EXPECT_NE(card->findChild<QLayout *>("textLayout"), nullptr);
            EXPECT_LT(card->imageView()->geometry().right(), card->titleLbl()->geometry().left());
        } else {
            EXPECT_GT(card->imageView()->height(), 80);
        }
    }

    // Without a VIN slot the card shows placeholders; without frames, no picture.
    for (const bool withHeader : {false, true}) {
        SCOPED_TRACE(withHeader ? "a slot without frames" : "no slot");
        TemporaryMainBundle settings;
        settings.writeSettings(helpPageSettings("<string>still</string>", withHeader ? "H" : ""));
        PhoneHost host;
        ZQTVINCaptureVC *screen = push(host);
        ASSERT_EQ(screen->vinScanItem() != nullptr, withHeader);
        QTest::qWait(700);
        EXPECT_EQ(screen->overlayView2(), nullptr) << "no automatic display";

        screen->showOverlay();
        auto *card = qobject_cast<ZQTVINCaptureOverlayVC *>(screen->overlayView2());
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->headerLbl()->text(), withHeader ? "H" : "<header>");
        EXPECT_EQ(card->titleLbl()->text(), withHeader ? "Title" : "<title>");
        EXPECT_EQ(card->descrLbl()->text(), withHeader ? "Description" : "<description>");
        EXPECT_FALSE(card->imageView()->isAnimating());
        EXPECT_TRUE(card->imageView()->displayedImage().isNull()) << "not even the still picture";
    }
}
