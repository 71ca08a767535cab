// Every label that shows host text, configuration text or barcode text shows it as plain text:
// markup in any of them is drawn as the characters it is made of, never rendered.
#include "ResultCard.h"
#include "ZQTVINScanComponent.h"
#include "support/MarkupProbe.h"
#include "support/ScreenTestSupport.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

namespace {

// The labels below the widget that show the markup probe, and those of them that render it.
struct ProbeLabels { int showing = 0; QStringList rendering; };

ProbeLabels probeLabels(QWidget *root)
{
    ProbeLabels found;
    for (QLabel *label : root->findChildren<QLabel *>()) {
        if (!label->text().contains(greenMarkup()))
            continue;
        ++found.showing;
        if (drawsGreen(label))
            found.rendering << label->objectName() + QLatin1String(" in ")
                    + (label->parentWidget() ? label->parentWidget()->objectName() : QString());
    }
    return found;
}

} // namespace

TEST(PlainTextLabels, CaptureScreenShowsConfiguredTextsAsWritten)
{
    const TemporaryMainBundle host;
    QByteArray entries;
    for (const char *key : {"TextTitle", "ScanningLabelText", "CameraUnavailableText", "ManualVINButtonText",
                            "HelpOverlayTextCloseLabel"})
        entries += "<key>" + QByteArray(key) + "</key><string>" + greenMarkup().toHtmlEscaped().toUtf8() + "</string>";
    host.writeSettings(entries);
    PhoneHost phone;
    RecordingDelegate delegate;
    QPointer<ZQTVINCaptureVC> screen = ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "C-1");
    phone.navigation->pushViewController(screen, false);
    phone.window.makeKeyAndVisible();
    QTest::qWait(1500); // the help card comes up half a second after the screen
    const ProbeLabels labels = probeLabels(&phone.window);
    EXPECT_GE(labels.showing, 3) << "the configured texts reach labels";
    EXPECT_TRUE(labels.rendering.isEmpty()) << labels.rendering.join(' ').toStdString();
    delete screen.data();
}

TEST(PlainTextLabels, ResultCardShowsTheReadTextAsWritten)
{
    ZqtApps::ScanResult result;
    result.vin = greenMarkup();
    result.isVINScanned = true;
    ZqtApps::ResultCard card(result, QString());
    card.resize(375, 812);
    card.show();
    const ProbeLabels labels = probeLabels(&card);
    EXPECT_EQ(labels.showing, 1);
    EXPECT_TRUE(labels.rendering.isEmpty()) << labels.rendering.join(' ').toStdString();
}
