// The manual VIN prompt driven through the X server (xdotool): the field has the focus when the
// prompt opens; typed text is filtered and upper-cased as it goes in, so that the undo and redo
// keys take it back and bring it back; Return presses OK only while it is enabled; the clear
// button and a middle-click paste of the X selection go through the same filter and OK follows
// them; Escape presses Cancel, which goes back to scanning.
#include "platform/ui/AlertController.h"
#include "platform/ui/TextField.h"
#include "window/WindowTestSupport.h"
#include "window/XScreen.h"

#include <QApplication>
#include <QClipboard>
#include <QToolButton>

using namespace ZQTPlatform;

namespace {

QStringList at(const QWidget *widget)
{
    const QPoint centre = widget->mapToGlobal(widget->rect().center());
    return {"mousemove", QString::number(centre.x()), QString::number(centre.y())};
}

} // namespace

TEST_F(RealWindow, PromptTakesKeysReturnPressesAnEnabledOkEscapePressesCancelAndEveryEditMovesOk)
{
    screen = ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(&delegate, "CLM-KEYS");
    screen->setShowManualEntry(true);
    show(screen);
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->digitKeyboardView() != nullptr; }, 5000));
    host.window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&host.window));
    AlertController *prompt = screen->vinEntryAlertController();
    TextField *field = prompt->textFields().first();
    AlertAction *ok = screen->vinEntryAlertOKAction();
    EXPECT_EQ(QApplication::focusWidget(), field) << "the field has the focus when the prompt opens";

    ASSERT_TRUE(XScreen::xdotool({"type", "--delay", "15", "1hgcm-82633a0o435"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->text().size() == 16; }, 5000)) << field->text().toStdString();
    EXPECT_EQ(field->text(), "1HGCM82633A0O435");
    EXPECT_FALSE(ok->isEnabled());
    // Keys arrive in order: once the next character is in, the Return before it was handled.
    ASSERT_TRUE(XScreen::xdotool({"key", "Return", "type", "2"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->text().size() == 17; }, 5000));
    EXPECT_TRUE(delegate.calls().isEmpty()) << "Return with OK disabled presses nothing";
    EXPECT_TRUE(ok->isEnabled());

    // The typing is one undo step: undo empties the field, redo brings the VIN back.
    ASSERT_TRUE(XScreen::xdotool({"key", "ctrl+z"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->text().isEmpty(); }, 5000)) << field->text().toStdString();
    EXPECT_FALSE(ok->isEnabled());
    ASSERT_TRUE(XScreen::xdotool({"key", "ctrl+shift+z"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !field->text().isEmpty(); }, 5000));
    EXPECT_EQ(field->text(), "1HGCM82633A0O4352");
    EXPECT_TRUE(ok->isEnabled());

    // The clear button empties the field, and OK with it.
    auto *clear = field->findChild<QToolButton *>();
    ASSERT_NE(clear, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return clear->isVisible(); }, 3000));
    ASSERT_TRUE(XScreen::xdotool(at(clear) << "click" << "1"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->text().isEmpty(); }, 5000));
    EXPECT_FALSE(ok->isEnabled()) << "OK follows the clear button";

    // A middle click pastes the X selection through the filter.
    QGuiApplication::clipboard()->setText("1hgcm 82633a0o4352", QClipboard::Selection);
    ASSERT_TRUE(XScreen::xdotool(at(field) << "click" << "2"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !field->text().isEmpty(); }, 5000));
    EXPECT_EQ(field->text(), "1HGCM82633A0O4352");
    EXPECT_TRUE(ok->isEnabled());

    ASSERT_TRUE(XScreen::xdotool({"key", "Return"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return delegate.calls().size() == 1; }, 5000)) << "Return presses OK";
    const RecordingDelegate::Call call = delegate.calls().first();
    EXPECT_EQ(std::make_tuple(call.vin, call.scanned, call.valid), std::make_tuple(QString("1HGCM82633A004352"), false, true));
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->presentedViewController() == nullptr; }, 3000));

    // Opened again, Escape cancels it and scanning starts again.
    screen->handleManuallyEnterVINBtn();
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return screen->presentedViewController() && screen->vinEntryAlertController() == screen->presentedViewController();
    }, 5000));
    EXPECT_EQ(QApplication::focusWidget(), screen->vinEntryAlertController()->textFields().first());
    const qsizetype scans = capture.steps().count("startBarCodeScanner");
    ASSERT_TRUE(XScreen::xdotool({"key", "Escape"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen->presentedViewController() == nullptr; }, 5000)) << "Escape presses Cancel";
    EXPECT_EQ(capture.steps().count("startBarCodeScanner"), scans + 1);
    EXPECT_EQ(delegate.calls().size(), 1);
}
