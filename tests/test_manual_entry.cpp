// Manual VIN entry on the capture screen, driven by real key and mouse input: the filtered field
// and its undo history, the OK rule, the digit row, Cancel and the keyboard hiding; rendered to
// <build>/test-artifacts/manual_prompt.png.
#include "ZQTVINScanComponent.h"
#include "UI/Views/DigitKeyboardView.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Application.h"
#include "platform/capture/CaptureSession.h"
#include "support/ScreenTestSupport.h"

#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;

namespace {

class ManualEntry : public ScreenSessionTest
{
protected:
    void SetUp() override { addFlatCamera(QColor(70, 80, 90)); }

    // Pushes a screen of the manual-option factory and, with the prompt asked for, waits for it
    // and its digit row.
    AlertController *showScreen(bool showManualEntry = true)
    {
        screen = ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-7");
        screen->setShowManualEntry(showManualEntry);
        host.navigation->pushViewController(screen, false);
        host.window.makeKeyAndVisible();
        return showManualEntry ? waitForPrompt() : nullptr;
    }
    AlertController *waitForPrompt()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return screen->digitKeyboardView() != nullptr; }, 3000));
        return screen->vinEntryAlertController();
    }
    TextField *field() { return screen->vinEntryAlertController()->textFields().first(); }
    QWidget *okButton() { return screen->vinEntryAlertController()->buttonForAction(screen->vinEntryAlertOKAction()); }

};

} // namespace

// The prompt over the dimmed screen with the digit row along its bottom. (The picture for a typed
// VIN has no caller in the component or the apps; typing through the X server, Return and Escape:
// tests/window/test_manual_prompt_on_screen.cpp.)
TEST_F(ManualEntry, DigitRowTypedAndPastedTextFollowTheVinRulesAndOkReportsWithoutRestartingTheScanner)
{
    AlertController *alert = showScreen();
    ASSERT_NE(alert, nullptr);
    EXPECT_FALSE(screen->session()->isRunning()) << "the prompt opens instead of the scanner";
    EXPECT_EQ(alert->alertTitle(), ZQTVINScanComponentConstants::getConfigStringForKey("ManualEntryAlertTitle"));
    DigitKeyboardView *keys = screen->digitKeyboardView();
    ASSERT_EQ(keys->buttons().size(), 10);
    EXPECT_EQ(keys->parentWidget(), alert);
    EXPECT_EQ(keys->geometry().bottom() + 1, alert->height());
    EXPECT_EQ(keys->geometry().right() + 1, alert->width());
    const QRect first = keys->buttons().first()->geometry();
    const QRect second = keys->buttons().at(1)->geometry();
    EXPECT_NEAR(first.width(), (375 - 80) / 10.0 - 2, 1.0);
    EXPECT_EQ(second.left() - first.right() - 1, 2) << "2-point gaps";
    EXPECT_EQ(first.height(), keys->keybuttonContainView()->height());

    QTest::keyClicks(field(), validVin.left(9));
    QTest::qWait(100);
    const QImage image = host.window.grab().toImage();
    ASSERT_TRUE(image.save(TestData::artifactPath("manual_prompt.png")));
    ASSERT_EQ(image.size(), QSize(375, 812));
    const QRect card = alert->contentView()->geometry();
    EXPECT_GT(qGray(image.pixel(card.center().x(), card.top() + 8)), 230) << "a light card";
    EXPECT_LT(qGray(image.pixel(8, card.top())), 120) << "the screen beneath is dimmed";
    const QRect key = first.translated(keys->keybuttonContainView()->mapTo(&host.window, QPoint()));
    EXPECT_EQ(image.pixelColor(key.left() + 3, key.center().y()), QColor(Qt::white)) << "white keys";
    const QColor strip = image.pixelColor(20, 812 - 3);
    EXPECT_GT(qGray(strip.rgb()), 180) << "on a light grey strip";
    EXPECT_NE(strip, QColor(Qt::white));

    QTest::keyClicks(field(), validVin.mid(9, 7));
    field()->setCursorPosition(0);
    QTest::mouseClick(keys->buttons().at(5), Qt::LeftButton);
    EXPECT_EQ(field()->text(), validVin.left(16) + "5") << "appended at the end, wherever the cursor is";
    EXPECT_TRUE(okButton()->isEnabled());
    QTest::mouseClick(keys->buttons().at(7), Qt::LeftButton);
    EXPECT_EQ(field()->text().size(), 17);

    QTest::keyClick(field(), Qt::Key_Backspace);
    keys->setInputTextField(nullptr);
    QTest::mouseClick(keys->buttons().at(3), Qt::LeftButton);
    EXPECT_EQ(field()->text().size(), 16) << "a key with no field types nothing";

    // Typed text loses blanks and stops at seventeen characters.
    field()->clear();
    QTest::keyClicks(field(), "1h g-cm82633a0o4352");
    EXPECT_EQ(field()->text(), "1HGCM82633A0O4352") << "blanks and hyphens go at once";
    QTest::keyClicks(field(), "9");
    EXPECT_EQ(field()->text(), "1HGCM82633A0O4352") << "an 18th character is refused";

    // Pasted, twenty characters are taken; the last seventeen are reported (the O read as a zero:
    // the capture screen's manual report test).
    field()->clear();
    QGuiApplication::clipboard()->setText("XY-Z" + validVin);
    QTest::keyClick(field(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), "XYZ" + validVin);
    EXPECT_TRUE(okButton()->isEnabled());
    QTest::mouseClick(okButton(), Qt::LeftButton);
    ASSERT_EQ(delegate.calls().size(), 1);
    EXPECT_EQ(delegate.calls()[0].vin, validVin);
    EXPECT_TRUE(delegate.calls()[0].valid);
    QTest::qWait(50);
    EXPECT_FALSE(screen->session()->isRunning()) << "OK never restarts the scanner";
}

// Text goes into the field upper-cased and filtered as it is typed or pasted, so the field's undo
// history holds what went in: undo takes back the last edit (the typing since the cursor last
// moved, or one paste), redo brings it back as it went in, and OK follows both.
TEST_F(ManualEntry, TextGoesInUpperCasedAndUndoTakesBackTheLastEdit)
{
    showScreen();
    QTest::keyClicks(field(), "1hg");
    EXPECT_EQ(field()->text(), "1HG");
    QTest::keyClick(field(), Qt::Key_Left);
    QTest::keyClick(field(), Qt::Key_End);
    QTest::keyClicks(field(), "cm-82 633");
    EXPECT_EQ(field()->text(), "1HGCM82633");
    QGuiApplication::clipboard()->setText("a0o4-352");
    QTest::keyClick(field(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), "1HGCM82633A0O4352");
    EXPECT_TRUE(okButton()->isEnabled());

    QTest::keySequence(field(), QKeySequence::Undo);
    EXPECT_EQ(field()->text(), "1HGCM82633") << "undo takes back the paste";
    EXPECT_FALSE(okButton()->isEnabled());
    QTest::keySequence(field(), QKeySequence::Undo);
    EXPECT_EQ(field()->text(), "1HG") << "then the typing since the cursor moved";
    QTest::keySequence(field(), QKeySequence::Redo);
    QTest::keySequence(field(), QKeySequence::Redo);
    EXPECT_EQ(field()->text(), "1HGCM82633A0O4352");
    EXPECT_TRUE(okButton()->isEnabled());
}

TEST_F(ManualEntry, ButtonStopsTheScannerAndHidingTheKeyboardTakesTheRowAway)
{
    showScreen(false);
    ASSERT_TRUE(QTest::qWaitFor([this] { return screen->session() && screen->session()->isRunning(); }, 3000));
    auto *manualButton = screen->findChild<QPushButton *>("manuallyEnterVINBtn");
    ASSERT_NE(manualButton, nullptr);
    QTest::mouseClick(manualButton, Qt::LeftButton);
    EXPECT_FALSE(screen->session()->isRunning());
    AlertController *alert = waitForPrompt();
    ASSERT_NE(alert, nullptr);

    QPointer<DigitKeyboardView> keys = screen->digitKeyboardView();
    Application::sharedApplication()->keyboardWillHide();
    EXPECT_EQ(screen->digitKeyboardView(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return keys.isNull(); }, 1000));
    EXPECT_EQ(alert->findChild<DigitKeyboardView *>(), nullptr);
}
