// The capture screen's printed-VIN reading end to end: a sticker without a barcode streams from a
// picture stand-in; with the option on its VIN ends the scan as a barcode read does, with the
// option off no text reader exists at all.
#include "VinTextArt.h"
#include "ZQTVINScanComponent.h"
#include "ViewControllers/ZQTVINCaptureOverlayVC.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/VINTextOutput.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QLabel>
#include <QTest>

using namespace ZQTPlatform;

namespace {

const QString stickerVin = QStringLiteral("1FAHP3FN8AW139719");
const QString claimId = QStringLiteral("CLM-TEXT");

QImage printedSticker()
{
    VinTextArt::Scene scene;
    scene.vin = stickerVin;
    scene.textHeight = 24;
    scene.noiseSigma = 3;
    scene.tiltDegrees = 2;
    return VinTextArt::renderScene(scene);
}

bool hasTextOutput(const ZQTVINCaptureVC *screen)
{
    for (const auto &output : screen->session()->outputs()) {
        if (std::dynamic_pointer_cast<VINTextOutput>(output))
            return true;
    }
    return false;
}

// The help card tells what the screen reads.
void expectHelpCardFor(ZQTVINCaptureVC *screen, bool readText)
{
    screen->showOverlay();
    const auto *card = qobject_cast<ZQTVINCaptureOverlayVC *>(screen->overlayView2());
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->titleLbl()->text(), readText ? "Find the VIN" : "Find the VIN barcode");
    EXPECT_EQ(card->descrLbl()->text().contains("printed VIN"), readText);
}

class TextReadingSession : public ScreenSessionTest, public ::testing::WithParamInterface<bool> {};

} // namespace

TEST_P(TextReadingSession, APrintedVinIsReadOnlyWithTheOption)
{
    const bool readText = GetParam();
    ASSERT_TRUE(CaptureDevice::addStandIn(printedSticker()));
    screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, claimId);
    EXPECT_FALSE(screen->enableVINTextReading()) << "off by default";
    screen->setEnableVINTextReading(readText);
    pushAndWait(host, screen, capture);
    EXPECT_EQ(hasTextOutput(screen), readText);
    EXPECT_EQ(screen->scanResultLbl()->text(),
              ZQTVINScanComponentConstants::getConfigStringForKey(readText ? "ScanningLabelTextPrintedVIN"
                                                                           : "ScanningLabelText"));
    EXPECT_EQ(screen->lastVINSource(), ZQTVINCaptureVC::VINSource::None);

    if (!readText) {
        // Well past the delay and the time a read takes: nothing is reported.
        QTest::qWait(3000);
        EXPECT_TRUE(delegate.calls().isEmpty());
        EXPECT_TRUE(screen->session()->isRunning());
        expectHelpCardFor(screen, readText);
        return;
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return !delegate.calls().isEmpty(); }, 20000));
    const auto calls = delegate.calls();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].vin, stickerVin);
    EXPECT_TRUE(calls[0].scanned);
    EXPECT_TRUE(calls[0].valid);
    EXPECT_TRUE(calls[0].error.isNull());
    EXPECT_EQ(screen->lastVINSource(), ZQTVINCaptureVC::VINSource::Text);
    EXPECT_EQ(screen->property("lastVINSource").value<ZQTVINCaptureVC::VINSource>(), ZQTVINCaptureVC::VINSource::Text);
    EXPECT_TRUE(QFileInfo(ZQTVINScanUtils::getPhotoPathWithClaimId(claimId, "VIN")).isFile());
    EXPECT_FALSE(screen->session()->isRunning());
    EXPECT_TRUE(capture.steps().contains("textOutput"));
    expectHelpCardFor(screen, readText);
}

INSTANTIATE_TEST_SUITE_P(Option, TextReadingSession, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool> &info) { return info.param ? "On" : "Off"; });
