// The capture screen's barcode session end to end: generated label frames (also frames of the
// field-conditions set) stream from a picture stand-in through the session and the reader to the
// delegate, the VIN photo and the scanner's views; plus the reader callback's rules (types, order,
// repeats) and the failed still.
#include "BarcodeArt.h"
#include "FieldConditions.h"
#include "ZQTVINScanComponent.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/VideoPreviewLayer.h"
#include "support/MarkupProbe.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <future>
#include <thread>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;

namespace {

const QString claimId = QStringLiteral("CLM-SCAN");

QImage labelScene(Symbology symbology, const QString &text)
{
    BarcodeArt::Scene scene;
    scene.noiseSigma = 3;
    scene.blurRadius = 0.6;
    scene.tiltDegrees = 2;
    return BarcodeArt::renderScene(BarcodeArt::renderSymbol(symbology, text, 3), scene);
}

MetadataObject code(const QString &type, const QString &text, const QRectF &bounds = QRectF(0.25, 0.4, 0.5, 0.2))
{
    MetadataObject object;
    object.type = type;
    object.stringValue = text;
    object.bounds = bounds;
    object.frameSize = QSizeF(1280, 720);
    return object;
}

class BarcodeSession : public ScreenSessionTest
{
protected:
    void SetUp() override { QFile::remove(vinPhotoPath()); }

    // Pushes a scanning screen over the stand-in picture (none: no video device) and waits
    // until the scanner runs.
    void startScreen(const QImage &picture, bool manualOption = false)
    {
        if (!picture.isNull()) {
            ASSERT_TRUE(CaptureDevice::addStandIn(picture));
        }
        screen = manualOption ? ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, claimId)
                              : ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, claimId);
        ASSERT_TRUE(screen);
        pushAndWait(host, screen, capture);
    }
    // Waits for the first report and a moment more, so that a second one would show.
    QList<RecordingDelegate::Call> reports()
    {
        (void)QTest::qWaitFor([&] { return !delegate.calls().isEmpty(); }, 8000); // the callers check the calls
        QTest::qWait(150);
        return delegate.calls();
    }
    QString vinPhotoPath() const { return ZQTVINScanUtils::getPhotoPathWithClaimId(claimId, "VIN"); }
};

} // namespace

// A Code 128 label with the leading "I" of some door-frame labels: read, trimmed by the VIN rule,
// saved, reported from the capture queue, and the scanner stops.
TEST_F(BarcodeSession, ScannedLabelIsSavedReportedAndStopsTheScanner)
{
    startScreen(labelScene(Symbology::Code128, "I" + validVin), true);
    EXPECT_TRUE(screen->session()->isRunning());
    EXPECT_EQ(screen->prevLayer()->parentWidget(), screen->findChild<QLabel *>("cameraImageView"));

    const auto calls = reports();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].vin, validVin);
    EXPECT_TRUE(calls[0].scanned);
    EXPECT_TRUE(calls[0].valid);
    EXPECT_TRUE(calls[0].error.isNull());
    EXPECT_FALSE(calls[0].onGuiThread);

    EXPECT_TRUE(QFileInfo(vinPhotoPath()).isFile());
    EXPECT_FALSE(screen->vinBarCodeImage().isNull());
    EXPECT_FALSE(screen->session()->isRunning());
    EXPECT_FALSE(screen->isVINScanInProcess());
    EXPECT_EQ(screen->scanResultLbl()->parentWidget(), nullptr);
    EXPECT_EQ(screen->prevLayer()->parentWidget(), nullptr);
    EXPECT_TRUE(screen->findChild<QPushButton *>("manuallyEnterVINBtn")->isHidden());

    // The photo is on disk before the report.
    const QStringList steps = capture.steps();
    const QStringList order = {"captureOutput", "stillImageCaptureCompleted", "processUsePhotoCompletionHandler",
                               "stopBarCodeScanner", "dismissOverlayIfShown", "validateVIN", "sendTimeSpent"};
    qsizetype previous = -1;
    for (const QString &step : order) {
        const qsizetype at = steps.indexOf(step, previous + 1);
        EXPECT_GT(at, previous) << step.toStdString();
        previous = at;
    }
    // One read, one validation in the log.
    EXPECT_EQ(steps.count("validateVIN"), 1);
}

TEST_F(BarcodeSession, FirstAcceptedCodeWinsRepeatsAreIgnoredAndPayloadsShowAsPlainText)
{
    startScreen(QImage(), true); // no video device: nothing arrives by itself
    MetadataOutput *output = screen->output();
    QPushButton *manualButton = screen->findChild<QPushButton *>("manuallyEnterVINBtn");
    ASSERT_FALSE(manualButton->isHidden());
    const QRectF qrBounds(0.1, 0.1, 0.2, 0.2);
    const QString prompt = ZQTVINScanComponentConstants::getConfigStringForKey("ScanningLabelText");
    // Other symbologies alone only reset the prompt.
    screen->scanResultLbl()->setText("stale");
    screen->captureOutput(output, {code(MetadataObject::typeQRCode, "QR", qrBounds)}, nullptr);
    EXPECT_EQ(screen->scanResultLbl()->text(), prompt);
    EXPECT_FALSE(screen->isVINScanInProcess());

    MetadataObject noText = code(MetadataObject::typeCode128, QString());
    screen->captureOutput(output, {code(MetadataObject::typeQRCode, "QR", qrBounds), noText,
                                   code(MetadataObject::typeDataMatrix, "I" + validVin),
                                   code(MetadataObject::typeCode39, "SECOND")},
                          nullptr);
    EXPECT_TRUE(screen->isVINScanInProcess());
    EXPECT_EQ(screen->scanResultLbl()->text(), "I" + validVin);
    const QRectF expected = screen->prevLayer()->transformedMetadataObjectForMetadataObject(code(MetadataObject::typeDataMatrix, "x")).bounds;
    EXPECT_EQ(screen->highlightView()->geometry(), expected.toRect());
    EXPECT_FALSE(expected.isEmpty());

    // While the hit is processed, further codes change nothing but the highlight.
    screen->captureOutput(output, {code(MetadataObject::typeCode39, "OTHER")}, nullptr);
    EXPECT_EQ(screen->scanResultLbl()->text(), "I" + validVin);
    EXPECT_EQ(screen->highlightView()->geometry(), QRect());

    // Without a video input the still fails (as one that makes no picture does): reported with the
    // error, nothing saved, scanning state kept.
    const auto calls = reports();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].vin, validVin);
    EXPECT_TRUE(calls[0].scanned && calls[0].valid);
    EXPECT_FALSE(calls[0].error.isNull());
    EXPECT_TRUE(screen->isVINScanInProcess());
    EXPECT_FALSE(manualButton->isHidden());
    EXPECT_FALSE(QFileInfo::exists(vinPhotoPath()));
    EXPECT_TRUE(screen->vinBarCodeImage().isNull());

    // Starting again clears the flag; toggling to "picture exists" leaves the scanner alone.
    screen->processToggleBarCodeWithImageExists(false);
    EXPECT_FALSE(screen->isVINScanInProcess());
    screen->processToggleBarCodeWithImageExists(true);
    EXPECT_TRUE(manualButton->isHidden());
    EXPECT_EQ(screen->scanResultLbl()->text(), prompt);

    // The next payload is shown as plain text.
    QLabel rich(greenMarkup());
    rich.resize(200, 40);
    ASSERT_TRUE(drawsGreen(&rich)) << "the probe sees markup when a label renders it";
    screen->captureOutput(output, {code(MetadataObject::typeCode128, greenMarkup())}, nullptr);
    EXPECT_EQ(screen->scanResultLbl()->text(), greenMarkup());
    EXPECT_FALSE(drawsGreen(screen->scanResultLbl()));
    QTest::qWait(150);
}

TEST_F(BarcodeSession, ClosingTheScreenDuringAReadIsClean)
{
    startScreen(labelScene(Symbology::Code39, validVin));
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->isVINScanInProcess() || !delegate.calls().isEmpty(); }, 8000));
    delete screen.data();
    QTest::qWait(300);
    EXPECT_LE(delegate.calls().size(), 1);
}

// A host that closes the screen from its report: the delegate waits for the GUI thread, which
// deletes the screen there. The report must not hold anything the destructor waits for.
TEST_F(BarcodeSession, TheDelegateCanDeleteTheScreenThroughABlockingCallToTheGuiThread)
{
    struct ClosingDelegate : VinScannerVCDelegate
    {
        QPointer<ZQTVINCaptureVC> screen;
        std::atomic<bool> returned{false};
        void didCompleteScanning(const QString &, bool, bool, const ZQTError &) override
        {
            QMetaObject::invokeMethod(qApp, [this] { delete screen.data(); }, Qt::BlockingQueuedConnection);
            returned = true;
        }
    } closing;
    ASSERT_TRUE(CaptureDevice::addStandIn(labelScene(Symbology::Code39, validVin)));
    // A deadlock stops the GUI thread for good; the watchdog turns it into a failure.
    std::promise<void> finished;
    std::thread watchdog([done = finished.get_future()] {
        if (done.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
            std::fprintf(stderr, "the screen's deletion from its delegate never finished\n");
            std::abort();
        }
    });
    closing.screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(&closing, claimId);
    host.navigation->pushViewController(closing.screen, false);
    host.window.makeKeyAndVisible();
    const bool closed = QTest::qWaitFor([&] { return closing.screen.isNull() && closing.returned; }, 10000);
    finished.set_value();
    watchdog.join();
    EXPECT_TRUE(closed);
    EXPECT_TRUE(host.navigation->viewControllers().isEmpty());
}

// Frames of the field-conditions set (seed 18: keystone, turn, blur, low light, glare, JPEG loss)
// streaming from a picture stand-in through the whole session: the VIN on the label is reported as
// scanned, and its photo stored. Code 39 and Code 128 labels go through the session above.
class FieldSetSession : public BarcodeSession, public ::testing::WithParamInterface<int> {};

TEST_P(FieldSetSession, ReportsTheVinOnTheLabel)
{
    const QStringList vins = FieldConditions::realVins(QStringLiteral(ZQT_REAL_VINS_CSV));
    const FieldConditions::FieldScene scene = FieldConditions::sceneAt(GetParam(), 18, vins);
    startScreen(FieldConditions::SteadyCamera(scene).frame(0));

    const auto calls = reports();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].vin, scene.vin);
    EXPECT_TRUE(calls[0].scanned);
    EXPECT_TRUE(QFileInfo(vinPhotoPath()).isFile());
}

// The Code 93 and the Data Matrix scene of the set.
INSTANTIATE_TEST_SUITE_P(Scenes, FieldSetSession, ::testing::Values(2, 7));
