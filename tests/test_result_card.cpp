// The capture app's result card: what the person at the claim sees after each report, and the
// scan-again loop through the app's host (a fresh screen for the same claim).
#include "BarcodeArt.h"
#include "ResultCard.h"
#include "ScanHost.h"
#include "support/ScreenTestSupport.h"
#include "support/TestData.h"

#include "platform/capture/CaptureDevice.h"
#include "platform/ui/NavigationBar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;

namespace {

QString labelText(const QWidget *card, const char *name)
{
    const auto *label = card->findChild<QLabel *>(name);
    return label ? label->text() : QStringLiteral("<missing>");
}

} // namespace

// A typed VIN that fails its check: the mark says so, and the photo's place says why it is empty.
// (A read VIN with its photo: the scan-again test below; markup in a payload:
// test_plain_text_labels.cpp.)
TEST(ResultCard, ShowsATypedVinItsVerdictAndWhyThereIsNoPhoto)
{
    PhoneHost host;
    auto *typed = new ZqtApps::ResultCard({"1HGCM82634A004352", false, false, {}}, QString());
    host.navigation->pushViewController(typed, false);
    host.window.makeKeyAndVisible();
    EXPECT_EQ(labelText(typed, "resultVin"), "1HGCM82634A004352");
    EXPECT_TRUE(labelText(typed, "resultVerdict").contains("Not a valid VIN"));
    EXPECT_TRUE(labelText(typed, "resultPhoto").contains("No photo"));
    EXPECT_EQ(host.navigation->navigationBar()->title(), "VIN typed");
}

// The app's loop: a read replaces the screen by the card; "scan again" gives a fresh screen for
// the same claim, which reads and reports again.
TEST(ResultCard, ScanAgainGivesAFreshScreenForTheSameClaim)
{
    DeviceProfile::setCurrent(phoneProfile());
    ASSERT_TRUE(CaptureDevice::addStandIn(
        BarcodeArt::renderScene(BarcodeArt::renderSymbol(BarcodeArt::Symbology::Code39, validVin, 3), {})));
    ZqtApps::ScanHostOptions options;
    options.claimId = QStringLiteral("CLM-AGAIN");
    ZqtApps::ScanHost host(options);
    QList<ZqtApps::ScanResult> reports;
    QPointer<ZqtApps::ResultCard> card;
    QObject::connect(&host, &ZqtApps::ScanHost::scanned, [&](const ZqtApps::ScanResult &result) {
        reports << result;
        card = new ZqtApps::ResultCard(result, host.vinPhotoPath());
        QObject::connect(card, &ZqtApps::ResultCard::scanAgainRequested, &host, &ZqtApps::ScanHost::startOver,
                         Qt::QueuedConnection);
        host.showInsteadOfScreen(card);
    });
    host.show(QSize(375, 812));
    ASSERT_TRUE(QTest::qWaitFor([&] { return card; }, 10000));
    QPointer<ZQTVINCaptureVC> first = host.screen();
    EXPECT_TRUE(first.isNull()) << "the card replaces the screen";
    EXPECT_EQ(host.navigation()->topViewController(), card.data());
    EXPECT_FALSE(host.navigation()->isNavigationBarHidden()) << "the screen gave the host's bar back";
    EXPECT_EQ(host.navigation()->navigationBar()->title(), "VIN read");
    EXPECT_EQ(labelText(card, "resultVin"), validVin);
    EXPECT_TRUE(labelText(card, "resultVerdict").contains("Valid VIN"));
    // The photo is read off the GUI thread and fitted into its place.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !card->photoView()->pixmap().isNull(); }, 3000));
    const QSize shown = card->photoView()->pixmap().size();
    EXPECT_LE(shown.width(), card->photoView()->width());
    EXPECT_LE(shown.height(), card->photoView()->height());
    EXPECT_GT(shown.width(), 100);
    EXPECT_TRUE(host.window().grab().save(TestData::artifactPath("result_card_after_scan.png")));

    QTest::mouseClick(card->scanAgainButton(), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return card.isNull() && host.screen(); }, 3000));
    EXPECT_EQ(host.screen()->claimId(), "CLM-AGAIN");
    EXPECT_EQ(host.navigation()->topViewController(), host.screen());
    ASSERT_TRUE(QTest::qWaitFor([&] { return reports.size() == 2; }, 10000));
    EXPECT_EQ(reports[1].vin, validVin);
    EXPECT_TRUE(reports[1].isVINScanned && reports[1].isVINValid);
    CaptureDevice::removeStandIns();
}
