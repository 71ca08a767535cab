// The capture screen's face: the inner bar's items and their colours, the flash toggle with the
// torch and the still camera, the camera area on each phone profile, the connection orientation
// and size transitions, and renders of the scanning screen to <build>/test-artifacts/.
#include "ZQTVINScanComponent.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/ui/Application.h"
#include "platform/ui/BarButtonItem.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/CaptureSession.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/ui/NavigationBar.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "platform/ui/View.h"
#include "support/LogCapture.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

// The contents of the flash changes among the recorded analytics events.
QStringList flashChanges(const AnalyticsRecorder &analytics)
{
    QStringList contents;
    for (const QVariantMap &event : analytics.events) {
        if (event.value("eventType") == "flashChange")
            contents << event.value("content").toString();
    }
    return contents;
}

DeviceProfile phone(const char *name, bool landscape = false)
{
    const std::optional<DeviceProfile> profile = DeviceProfile::profileNamed(name);
    EXPECT_TRUE(profile.has_value()) << name;
    return landscape ? profile->landscape() : *profile;
}

// A photographed Code 39 label cut at its right end, so the camera area shows a real picture
// that the reader cannot finish.
QImage labelPhotoFrame()
{
    const QImage photo(TestData::directory() + "/barcodes/code39-3/01.png");
    EXPECT_FALSE(photo.isNull());
    return photo.copy(0, 40, 400, 300).scaled(640, 480, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QStringList objectNames(const QList<QWidget *> &widgets)
{
    QStringList names;
    for (const QWidget *widget : widgets)
        names << widget->objectName();
    return names;
}

// How many pixels of the widget's rendering are within a small distance of the colour.
int pixelsOfColour(QWidget *widget, const QColor &colour)
{
    return TestData::countPixels(widget->grab().toImage(), [&colour](const QColor &c) {
        return qAbs(c.red() - colour.red()) + qAbs(c.green() - colour.green()) + qAbs(c.blue() - colour.blue()) < 12;
    });
}

class ScreenFace : public ::testing::Test
{
protected:
    void TearDown() override
    {
        host.reset();
        CaptureDevice::removeStandIns();
        Application::sharedApplication()->setStatusBarOrientation(InterfaceOrientation::Portrait);
    }

    ZQTVINCaptureVC *plainScreen() { return ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "CLM-7"); }
    ZQTVINCaptureVC *manualScreen()
    {
        return ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-7");
    }
    qsizetype initialisations() const { return capture.steps().count("initializeView"); }

    // Pushes the screen over a first controller (so that going back can pop it) in a window of the
    // profile's size and waits for the end of its start-up.
    ZQTVINCaptureVC *show(ZQTVINCaptureVC *screen, const DeviceProfile &profile)
    {
        host = std::make_unique<PhoneHost>(profile.mainScreenBounds.toSize());
        DeviceProfile::setCurrent(profile);
        host->navigation->pushViewController(new ViewController, false);
        return pushAndWait(*host, screen, capture);
    }
    QWidget *window() const { return &host->window; }

    LogCapture capture;
    RecordingDelegate delegate;
    std::unique_ptr<PhoneHost> host;
};

} // namespace

TEST_F(ScreenFace, BarItemsFollowTheBackButtonAndTheAdjusterAndCarryTheHeaderIconColour)
{
    TemporaryMainBundle host;
    const QColor headerColour(0x33, 0xCC, 0x66);
    host.writeSettings("<key>VINScanHeaderIconColor</key><string>#33CC66</string>");
    ZQTVINScanAdjuster adjuster;
    adjuster.setRecipientName("Dana Reyes");
    for (const bool backAndAdjuster : {false, true}) {
        SCOPED_TRACE(backAndAdjuster ? "back button and adjuster" : "neither");
        std::unique_ptr<ZQTVINCaptureVC> screen(
            backAndAdjuster ? ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, adjuster, "C")
                            : ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, "C"));
        screen->setHasBackButton(backAndAdjuster);
        screen->loadViewIfNeeded();
        auto *bar = screen->findChild<NavigationBar *>("interNavigationBar");
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(objectNames(bar->leftItems()),
                  backAndAdjuster ? QStringList({"backButton", "flashItem"}) : QStringList({"flashItem"}));
        EXPECT_EQ(objectNames(bar->rightItems()),
                  backAndAdjuster ? QStringList({"menuButton", "helpButton"}) : QStringList({"helpButton"}));
        auto *flash = screen->findChild<BarButtonItem *>("flashButton");
        ASSERT_NE(flash, nullptr);
        QList<BarButtonItem *> icons{flash};
        for (QWidget *item : bar->leftItems() + bar->rightItems()) {
            if (auto *button = qobject_cast<BarButtonItem *>(item))
                icons << button;
        }
        EXPECT_EQ(icons.size(), backAndAdjuster ? 4 : 2);
        for (BarButtonItem *icon : icons)
            EXPECT_GT(pixelsOfColour(icon, headerColour), 20) << icon->objectName().toStdString();
        // The flash label keeps its own colour until the host recolours the bar.
        auto *label = screen->findChild<QLabel *>("flashLbl");
        EXPECT_EQ(textColor(label), Constants::getGlobalColorForKey("NavigationBarFlashIconTintColor"));
        screen->setNavigationItemTintColor(Qt::red);
        EXPECT_EQ(textColor(label), QColor(Qt::red));
    }
}

TEST_F(ScreenFace, FlashButtonCyclesTheLabelTorchStillCameraAndAnalytics)
{
    CaptureDevice *device = CaptureDevice::addStandIn(labelPhotoFrame());
    ASSERT_NE(device, nullptr);
    AnalyticsRecorder analytics;
    ZQTVINCaptureVC *screen = show(plainScreen(), phone("iPhone 8"));
    EXPECT_TRUE(flashChanges(analytics).isEmpty()) << "setting up the rig posts nothing";
    const QVariantList texts = Constants::getConfigArrayForKey("TextFlashButtonArray");
    auto *button = screen->findChild<QPushButton *>("flashButton");
    auto *label = screen->findChild<QLabel *>("flashLbl");
    ASSERT_TRUE(button && label);
    EXPECT_EQ(label->text(), texts.value(0).toString());
    screen->initCamera();
    screen->camera()->start();

    for (const bool on : {true, false}) {
        SCOPED_TRACE(on ? "on" : "off");
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(screen->flashSetting(), on ? 1u : 0u);
        EXPECT_EQ(label->text(), texts.value(on ? 1 : 0).toString());
        EXPECT_EQ(device->torchMode(), on ? CaptureDevice::TorchMode::On : CaptureDevice::TorchMode::Off);
        EXPECT_EQ(device->flashMode(), on ? CaptureDevice::FlashMode::On : CaptureDevice::FlashMode::Off);
        EXPECT_EQ(screen->camera()->cameraFlash(), on ? StillCamera::CameraFlash::On : StillCamera::CameraFlash::Off);
    }
    EXPECT_EQ(flashChanges(analytics), QStringList({"On", "Off"}));

    // A torch without a flash unit never lights and the camera records the flash as off; the label
    // and the analytics still follow.
    CaptureDevice::Capabilities torchOnly;
    torchOnly.flash = false;
    device->setCapabilities(torchOnly);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(label->text(), texts.value(1).toString());
    EXPECT_EQ(device->torchMode(), CaptureDevice::TorchMode::Off);
    EXPECT_EQ(screen->camera()->cameraFlash(), StillCamera::CameraFlash::Off);
    EXPECT_EQ(flashChanges(analytics).last(), "On");

    // Leaving the screen puts the torch out and gives the status bar back to the host.
    device->setCapabilities(CaptureDevice::Capabilities());
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_EQ(device->torchMode(), CaptureDevice::TorchMode::On);
    EXPECT_TRUE(Application::sharedApplication()->isStatusBarHidden()) << "the screen's own answer applies";
    capture.clear();
    screen->navigationController()->pushViewController(new ViewController, false);
    EXPECT_EQ(device->torchMode(), CaptureDevice::TorchMode::Off);
    EXPECT_EQ(capture.steps().mid(0, 2), QStringList({"viewWillDisappear", "turnTorchOn"}));
    EXPECT_FALSE(Application::sharedApplication()->isStatusBarHidden());
}

TEST_F(ScreenFace, StatusBarFillerOnlyOnScreensWithAn812PointSideAndOnlyWhileTheScreenLives)
{
    const QColor barColour = Constants::getGlobalColorForKey("VINScanNavigationBarColor");
    const auto fillers = [&](const QWidget *parent) {
        int count = 0;
        for (const QWidget *child : parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            count += child->geometry() == QRect(0, 0, 500, 44) && backgroundColor(child) == barColour;
        return count;
    };
    for (const char *name : {"iPhone X", "iPhone 11"}) {
        SCOPED_TRACE(name);
        const bool notched = name == std::string("iPhone X");
        ZQTVINCaptureVC *pushed = show(plainScreen(), phone(name));
        NavigationController *navigation = pushed->navigationController();
        EXPECT_EQ(fillers(navigation), notched ? 1 : 0) << "goes to the navigation controller";
        delete pushed;
        EXPECT_EQ(fillers(navigation), 0) << "and leaves with the screen, uncovering the host's bar";
        DeviceProfile::setCurrent(phone(name, true)); // 812 wide counts too
        std::unique_ptr<ZQTVINCaptureVC> alone(plainScreen());
        alone->loadViewIfNeeded();
        alone->setNavigationBackgroundColor(barColour);
        EXPECT_EQ(fillers(alone.get()), notched ? 2 : 0) << "without one, to the screen, each time the colour is set";
    }
}

TEST_F(ScreenFace, ConnectionOrientationFollowsTheInterfaceAndOnlyLandscapeModeInLandscapeReinitialisesAfterAResize)
{
    ZQTVINCaptureVC *screen = show(plainScreen(), phone("iPhone X"));
    Application *application = Application::sharedApplication();
    for (int orientation = 0; orientation <= 5; ++orientation) {
        application->setStatusBarOrientation(orientation);
        EXPECT_EQ(screen->orientationForConnection(), orientation >= 2 && orientation <= 4 ? orientation : 1)
            << orientation;
    }

    application->setStatusBarOrientation(InterfaceOrientation::LandscapeLeft);
    DeviceProfile::setDeviceOrientation(InterfaceOrientation::LandscapeLeft);
    const qsizetype before = initialisations();
    window()->resize(812, 375);
    QTest::qWait(50);
    EXPECT_EQ(initialisations(), before) << "portrait mode: a size change re-initialises nothing";
    EXPECT_EQ(screen->prevLayer()->connection()->videoOrientation(), InterfaceOrientation::LandscapeLeft)
        << "laying out gives the preview's connection the orientation";

    // Landscape mode re-initialises after a resize, only while the device is in landscape.
    screen = manualScreen();
    screen->setEnableLandscapeMode(true);
    show(screen, phone("iPhone 8", true));
    const QList<std::tuple<int, int, bool>> resizes = {{5, 360, false}, // face up
                                                       {InterfaceOrientation::LandscapeLeft, 375, true},
                                                       {InterfaceOrientation::LandscapeRight, 370, true}};
    for (const auto &[orientation, height, reinitialises] : resizes) {
        const qsizetype before = initialisations();
        DeviceProfile::setDeviceOrientation(orientation);
        window()->resize(667, height);
        if (reinitialises) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return initialisations() == before + 1; }, 2000)) << orientation;
        } else {
            QTest::qWait(50);
            EXPECT_EQ(initialisations(), before) << orientation;
        }
    }
    EXPECT_EQ(screen->findChild<QWidget *>("cameraImageView")->size(),
              screen->findChild<QWidget *>("scanOverlayView")->size())
        << "the camera area was laid out again";
}

TEST_F(ScreenFace, ScanningScreenLaysOutAndRendersWholeOnPhonesInBothOrientations)
{
    ASSERT_NE(CaptureDevice::addStandIn(labelPhotoFrame()), nullptr);
    // The fixed camera area of the 480-point phone, and a share of the screen on the others.
    for (const char *name : {"iPhone 4s", "iPhone X"}) {
        for (const bool landscape : {false, true}) {
            const DeviceProfile profile = phone(name, landscape);
            const QSize size = profile.mainScreenBounds.toSize();
            const QString file = QString("screen_%1x%2%3.png").arg(qMin(size.width(), size.height()))
                                     .arg(qMax(size.width(), size.height())).arg(landscape ? "_landscape" : "");
            SCOPED_TRACE(file.toStdString());
            ZQTVINCaptureVC *screen = manualScreen();
            screen->setEnableLandscapeMode(landscape);
            show(screen, profile);
            QTest::qWait(250); // the first frames reach the preview
            const QImage image = window()->grab().toImage();
            ASSERT_EQ(image.size(), size);
            EXPECT_TRUE(delegate.calls().isEmpty()) << "still scanning when rendered";
            EXPECT_TRUE(image.save(TestData::artifactPath(file)));

            // The camera area: fixed on the 480-point screen, else a share of the view's long side
            // (the panel beside or below it, at any window size: tests/window/).
            const double dim = size.height() == 480 || size.width() == 480
                ? 230.0 : (landscape ? screen->width() : screen->height()) * 56.33 / 100;
            EXPECT_DOUBLE_EQ(screen->cameraViewDim(), dim);
            // It shows the picture: the paper of the label is light.
            VideoPreviewLayer *layer = screen->prevLayer();
            EXPECT_GT(image.pixelColor(layer->mapTo(window(), layer->rect().center())).lightness(), 60);
            // The bar's items, the flash label and the manual-entry button are whole.
            const auto inWindow = [&](QWidget *w) { return QRect(w->mapTo(window(), QPoint(0, 0)), w->size()); };
            auto *bar = screen->findChild<NavigationBar *>("interNavigationBar");
            auto *label = screen->findChild<QLabel *>("flashLbl");
            for (QWidget *item : bar->leftItems() + bar->rightItems() + QList<QWidget *>{label})
                EXPECT_TRUE(inWindow(bar).contains(inWindow(item))) << item->objectName().toStdString();
            EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
        }
    }
}
