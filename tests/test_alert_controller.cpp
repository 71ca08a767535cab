// The platform's text field (every edit asked of its delegate first) and alert (one row of
// buttons, cancel first, disabled actions inert, handler run while presented, then dismissal).
#include "platform/ui/AlertController.h"
#include "platform/ui/TextField.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace ZQTPlatform;

namespace {

// Records every question as "location+length:replacement" and answers with `allow`.
struct AskingDelegate : TextFieldDelegate
{
    QStringList questions;
    bool allow = true;
    bool textFieldShouldChangeCharactersInRange(TextField *, int location, int length, const QString &replacement) override
    {
        questions << QStringLiteral("%1+%2:%3").arg(location).arg(length).arg(replacement);
        return allow;
    }
};

} // namespace

TEST(TextField, AsksBeforeTypingPastingAndCommittingWithTheRangeReplaced)
{
    TextField field;
    AskingDelegate delegate;
    field.setDelegate(&delegate);
    QSignalSpy changes(&field, &TextField::editingChanged);

    QTest::keyClicks(&field, "AB");
    field.setSelection(0, 2);
    QGuiApplication::clipboard()->setText("XYZ");
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "XYZ");
    field.setCursorPosition(1);
    QTest::keyClick(&field, Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(field.text(), "XXYZYZ");
    QInputMethodEvent commit;
    commit.setCommitString("Q");
    QCoreApplication::sendEvent(&field, &commit);
    EXPECT_EQ(field.text(), "XXYZQYZ");
    EXPECT_EQ(delegate.questions, QStringList({"0+0:A", "1+0:B", "0+2:XYZ", "1+0:XYZ", "4+0:Q"}));
    EXPECT_EQ(changes.count(), 5);

    field.setText("set by code");
    EXPECT_EQ(changes.count(), 5) << "only the user's edits are announced";
}

TEST(TextField, RefusedEditsLeaveTextAndCursorAsTheyWere)
{
    TextField field;
    AskingDelegate delegate;
    field.setDelegate(&delegate);
    QTest::keyClicks(&field, "VIN");
    delegate.allow = false;
    delegate.questions.clear();
    QSignalSpy changes(&field, &TextField::editingChanged);

    QTest::keyClicks(&field, "X");
    QGuiApplication::clipboard()->setText("PASTE");
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Backspace);
    QInputMethodEvent commit(QStringLiteral("ko"), {});
    commit.setCommitString("Z");
    QCoreApplication::sendEvent(&field, &commit);
    EXPECT_EQ(delegate.questions, QStringList({"3+0:X", "3+0:PASTE", "2+1:", "3+0:Z"})) << "deletions are asked about too";
    EXPECT_EQ(field.text(), "VIN");
    EXPECT_EQ(field.cursorPosition(), 3);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(field.inputMethodQuery(Qt::ImSurroundingText).toString(), "VIN");

    // The context menu's paste is asked about like the key.
    QTimer::singleShot(50, [] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction *action : menu->actions()) {
            if (action->text() == QLatin1String("&Paste"))
                action->trigger();
        }
        menu->close();
    });
    field.setCursorPosition(1);
    QContextMenuEvent menuRequest(QContextMenuEvent::Mouse, QPoint(4, 4), field.mapToGlobal(QPoint(4, 4)));
    delegate.questions.clear();
    QCoreApplication::sendEvent(&field, &menuRequest);
    EXPECT_EQ(delegate.questions, QStringList{"1+0:PASTE"});
    EXPECT_EQ(field.text(), "VIN");

    field.setDelegate(nullptr);
    field.end(false);
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(field.text(), "VI") << "no delegate allows every edit";
}

TEST(TextField, UndoTheClearButtonAndDroppedTextAreAskedAboutOnceMadeAndTakenBackWhenRefused)
{
    TextField field;
    field.setClearButtonEnabled(true);
    AskingDelegate delegate;
    field.setDelegate(&delegate);
    field.show();
    QTest::keyClicks(&field, "VIN12");
    delegate.questions.clear();
    QSignalSpy changes(&field, &TextField::editingChanged);
    auto *clearButton = field.findChild<QToolButton *>();
    ASSERT_NE(clearButton, nullptr);
    const auto drop = [&field](const QString &text) {
        QMimeData data;
        data.setText(text);
        const QPointF end(field.width() - 2, field.height() / 2);
        QDragEnterEvent enter(end.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&field, &enter);
        QDropEvent dropped(end, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&field, &dropped);
    };

    delegate.allow = false;
    QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
    QTest::mouseClick(clearButton, Qt::LeftButton);
    drop("XY");
    EXPECT_EQ(field.text(), "VIN12");
    EXPECT_EQ(changes.count(), 0);

    delegate.allow = true;
    drop("XY");
    EXPECT_EQ(field.text(), "VIN12XY");
    QTest::mouseClick(clearButton, Qt::LeftButton);
    EXPECT_EQ(field.text(), "");
    QTest::keyClicks(&field, "AB");
    QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "");
    field.setText("SET");
    QTest::mouseClick(clearButton, Qt::LeftButton);
    EXPECT_EQ(field.text(), "") << "the clear button after a change by code";
    EXPECT_EQ(delegate.questions, QStringList({"0+5:", "0+5:", "5+0:XY", // refused: undo, clear, drop
                                               "5+0:XY", "0+7:", "0+0:A", "1+0:B", "0+2:", "0+3:"}));
    EXPECT_EQ(changes.count(), 6);
}

namespace {

// Whether the widget draws the platform's blue tint somewhere (an action title).
bool drawsTint(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (const QColor c = image.pixelColor(x, y); c.blue() > 200 && c.red() < 80 && c.green() < 160)
                return true;
    return false;
}

// Shows the host's window and presents the alert from its root.
AlertController *presentedAlert(PhoneHost &host, AlertController *alert)
{
    host.window.makeKeyAndVisible();
    host.navigation->presentViewController(alert, false);
    QTest::qWait(10);
    return alert;
}

} // namespace

TEST(AlertController, CentresTheCardWithTheFieldAboveOneRowOfButtonsCancelFirst)
{
    PhoneHost host;
    auto *alert = new AlertController("Title", "Message");
    auto *ok = new AlertAction("OK", AlertAction::StyleDefault);
    auto *other = new AlertAction("Other", AlertAction::StyleDestructive);
    auto *cancel = new AlertAction("Cancel", AlertAction::StyleCancel);
    for (AlertAction *action : {ok, other, cancel})
        alert->addAction(action);
    alert->addTextFieldWithConfigurationHandler([](TextField *field) { field->setPlaceholderText("VIN"); });
    presentedAlert(host, alert);

    const QRect card = alert->contentView()->geometry();
    EXPECT_NEAR(card.center().x(), host.window.width() / 2, 1);
    const auto left = [&](AlertAction *a) { return alert->buttonForAction(a)->mapTo(alert, QPoint()).x(); };
    const auto top = [&](AlertAction *a) { return alert->buttonForAction(a)->mapTo(alert, QPoint()).y(); };
    EXPECT_LT(left(cancel), left(ok));
    EXPECT_LT(left(ok), left(other));
    EXPECT_EQ(top(cancel), top(ok));
    EXPECT_EQ(top(ok), top(other));
    EXPECT_GT(top(ok), alert->textFields().first()->mapTo(alert, QPoint()).y()) << "the field is above the row";
    EXPECT_EQ(alert->textFields().first()->placeholderText(), "VIN");
    EXPECT_TRUE(alert->textFields().first()->hasFocus());
}

TEST(AlertController, DisabledActionsAreInertAndHandlersRunWhilePresented)
{
    PhoneHost host;
    QPointer<AlertController> alert = new AlertController("Title", QString());
    bool presentedDuringHandler = false;
    int okRuns = 0;
    auto *ok = new AlertAction("OK", AlertAction::StyleDefault, [&](AlertAction *action) {
        ++okRuns;
        presentedDuringHandler = host.navigation->presentedViewController() == action->alertController();
    });
    ok->setEnabled(false);
    alert->addAction(ok);
    presentedAlert(host, alert);

    QWidget *button = alert->buttonForAction(ok);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(okRuns, 0);
    EXPECT_EQ(host.navigation->presentedViewController(), alert.data());
    EXPECT_FALSE(drawsTint(button)) << "a disabled action's title is grey";

    ok->setEnabled(true);
    EXPECT_TRUE(drawsTint(button));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(okRuns, 1);
    EXPECT_TRUE(presentedDuringHandler);
    EXPECT_EQ(host.navigation->presentedViewController(), nullptr) << "dismissed after the handler";
    EXPECT_TRUE(QTest::qWaitFor([&] { return alert.isNull(); }, 2000)) << "deleted once gone";
}

TEST(AlertController, AHandlerThatDismissesAndPresentsAgainKeepsTheNewAlert)
{
    PhoneHost host;
    auto *first = new AlertController("First", QString());
    auto *second = new AlertController("Second", QString());
    first->addAction(new AlertAction("Next", AlertAction::StyleCancel, [&](AlertAction *action) {
        action->alertController()->dismissViewControllerAnimated(false);
        host.navigation->presentViewController(second, false);
    }));
    presentedAlert(host, first);
    QTest::mouseClick(first->buttonForAction(first->actions().first()), Qt::LeftButton);
    EXPECT_EQ(host.navigation->presentedViewController(), second);
}
