// The overlays of the capture screen as the X server shows them: the help card whole at its
// first show, during its fade and at rest, and the other overlays (manual prompt, adjuster panel,
// also after a resize, an alert) drawn on screen as their widgets draw them.
#include "UI/Views/ZQTVINScanAdjusterInfo.h"
#include "ViewControllers/ZQTVINCaptureOverlayVC.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/ViewAnimation.h"
#include "support/TestData.h"
#include "window/WindowTestSupport.h"
#include "window/XScreen.h"

#include <QLabel>

using namespace ZQTPlatform;

namespace {

// Whatever is on screen where the widgets would draw something else.
constexpr double sameShareWanted = 0.99;
// Enough pixels of a text's colour for a line of text, few enough for a short word.
constexpr int textPixels = 30;

// An adjuster the panel shows a name and a telephone row for.
ZQTVINScanAdjuster adjuster()
{
    ZQTVINScanAdjuster dana;
    dana.setRecipientName(QStringLiteral("Dana Reyes"));
    dana.setRecipientPhone(QStringLiteral("5551234567"));
    return dana;
}

} // namespace

TEST_F(RealWindow, TheHelpCardWholeAtFirstShowWhileFadingAndAtRestAndEveryOtherOverlayAreOnTheXScreenAsDrawn)
{
    const auto expectOnScreen = [](const QWidget *overlay, const char *file) {
        const XScreen::Comparison seen = XScreen::settledComparison(overlay, sameShareWanted);
        EXPECT_GE(seen.sameShare(), sameShareWanted) << file;
        EXPECT_TRUE(seen.onScreen.save(TestData::artifactPath(file)));
    };

    show(ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, adjuster(), "CLM-OVERLAYS"));
    // The VIN slot's card comes up by itself and fades in.
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->overlayView2() != nullptr; }, 5000));
    auto *card = qobject_cast<ZQTVINCaptureOverlayVC *>(screen->overlayView2());
    ASSERT_NE(card, nullptr);
    double worstWhileFading = 1.0;
    for (int sample = 0; sample < 100 && alpha(card) < 1.0; ++sample) {
        worstWhileFading = qMin(worstWhileFading, XScreen::compareWindow(card).sameShare());
        QTest::qWait(20);
    }
    EXPECT_GE(worstWhileFading, sameShareWanted) << "the fading card is on screen as drawn";
    ASSERT_TRUE(QTest::qWaitFor([&] { return alpha(card) == 1.0; }, 3000));

    const XScreen::Comparison rest = XScreen::compareWindow(card);
    EXPECT_TRUE(rest.onScreen.save(TestData::artifactPath("window_help_card_xscreen.png")));
    EXPECT_GE(rest.sameShare(), sameShareWanted);
    const QImage &x = rest.onScreen;
    EXPECT_GT(XScreen::pixelsNear(x, XScreen::rectInWindow(card->titleLbl()), configuredColour("HelpOverlayMidTitleLabelColor")), textPixels);
    EXPECT_GT(XScreen::pixelsNear(x, XScreen::rectInWindow(card->descrLbl()), configuredColour("HelpOverlayMidSubTitleLabelColor")), textPixels);
    EXPECT_GT(XScreen::pixelsNear(x, XScreen::rectInWindow(card->headerLbl()), configuredColour("HelpOverlayVehiclePhotoLabelColor")), textPixels);
    EXPECT_GT(XScreen::pixelsNear(x, XScreen::rectInWindow(card->lblTapAnyWhere()), configuredColour("HelpOverlayTapAnywhereLabelColor")), textPixels);
    // The backdrop fills the card around its texts and picture.
    const QRect cardRect = XScreen::rectInWindow(card);
    EXPECT_GT(XScreen::pixelsNear(x, cardRect, configuredColour("HelpOverlayBackgroundColor"), 4),
              cardRect.width() * cardRect.height() / 2);

    // Every alpha between the ends shows the whole card, blended.
    for (const qreal a : {0.3, 0.7}) {
        setAlpha(card, a);
        EXPECT_GE(XScreen::compareWindow(card).sameShare(), sameShareWanted) << a;
    }

    // The other overlays come over the help card.
    screen->showAdjusterInfo();
    ASSERT_TRUE(QTest::qWaitFor([] { return ZQTVINScanAdjusterInfo::shownPanel() != nullptr; }, 3000));
    expectOnScreen(ZQTVINScanAdjusterInfo::shownPanel(), "window_overlay_adjuster_panel.png");
    // It keeps covering the window when the window changes size.
    const QString window = QString::number(host.window.winId());
    ASSERT_TRUE(XScreen::xdotool({"windowsize", window, "640", "400"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return ZQTVINScanAdjusterInfo::shownPanel()->size() == QSize(640, 400); }, 3000));
    expectOnScreen(ZQTVINScanAdjusterInfo::shownPanel(), "window_overlay_adjuster_panel_640x400.png");
    ASSERT_TRUE(XScreen::xdotool({"windowsize", window, "375", "812"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return host.window.size() == QSize(375, 812); }, 3000));
    ZQTVINScanAdjusterInfo::shownPanel()->deleteLater();
    ASSERT_TRUE(QTest::qWaitFor([] { return ZQTVINScanAdjusterInfo::shownPanel() == nullptr; }, 3000));

    screen->handleManuallyEnterVINBtn();
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->digitKeyboardView() != nullptr; }, 3000));
    expectOnScreen(screen->vinEntryAlertController(), "window_overlay_manual_prompt.png");
    screen->vinEntryAlertController()->dismissViewControllerAnimated(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->presentedViewController() == nullptr; }, 3000));

    auto *alert = new AlertController("Photo saved", "The VIN photo is stored with the claim.");
    alert->addAction(new AlertAction("OK", AlertAction::StyleDefault));
    screen->presentViewController(alert, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return alert->isVisible(); }, 3000));
    expectOnScreen(alert, "window_overlay_alert.png");
}
