// The platform's text field (every edit asked of its delegate first, entered text filtered as it
// goes in) and alert (one row of buttons, cancel first, disabled actions inert, handler run while
// presented, then dismissal).
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

#include <functional>

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

// Pastes through the field's context menu.
void pasteFromMenu(TextField &field)
{
    QTimer::singleShot(50, [] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction *action : menu->actions()) {
            if (action->text() == QLatin1String("&Paste"))
                action->trigger();
        }
        menu->close();
    });
    QContextMenuEvent request(QContextMenuEvent::Mouse, QPoint(4, 4), field.mapToGlobal(QPoint(4, 4)));
    QCoreApplication::sendEvent(&field, &request);
}

} // namespace

// Each way an edit reaches the field asks the delegate first, with the range it replaces; a
// refused edit leaves the text and the cursor as they were and announces nothing. (Shortcut
// pastes go the way typing does, and undo and drops the way of the backspace; the manual VIN
// prompt's tests paste and type through its filter.)
TEST(TextField, EveryEditIsAskedAboutWithItsRangeAndARefusedOneChangesNothing)
{
    using Edit = std::function<void(TextField &)>;
    const QList<std::tuple<const char *, Edit, QString, QString>> edits = {
        {"typing", [](TextField &f) { QTest::keyClicks(&f, "X"); }, "3+0:X", "VINX"},
        {"backspace", [](TextField &f) { QTest::keyClick(&f, Qt::Key_Backspace); }, "2+1:", "VI"},
        {"input method", [](TextField &f) {
             QInputMethodEvent commit(QStringLiteral("ko"), {});
             commit.setCommitString("Z");
             QCoreApplication::sendEvent(&f, &commit);
         }, "3+0:Z", "VINZ"},
        {"context menu paste", pasteFromMenu, "3+0:PASTE", "VINPASTE"},
        {"clear button", [](TextField &f) { QTest::mouseClick(f.findChild<QToolButton *>(), Qt::LeftButton); }, "0+3:", ""},
    };
    QGuiApplication::clipboard()->setText("PASTE");
    for (const bool allow : {false, true}) {
        for (const auto &[what, edit, question, allowed] : edits) {
            SCOPED_TRACE(std::string(what) + (allow ? ", allowed" : ", refused"));
            TextField field;
            field.setClearButtonEnabled(true);
            field.show();
            QTest::keyClicks(&field, "VIN");
            AskingDelegate delegate;
            delegate.allow = allow;
            field.setDelegate(&delegate);
            QSignalSpy changes(&field, &TextField::editingChanged);
            edit(field);
            EXPECT_EQ(delegate.questions, QStringList{question});
            EXPECT_EQ(field.text(), allow ? allowed : "VIN");
            EXPECT_EQ(changes.count(), allow ? 1 : 0);
            if (!allow) {
                EXPECT_EQ(field.cursorPosition(), 3);
            }
        }
    }

    // Text set by code is neither asked about nor announced; without a delegate every edit goes.
    TextField field;
    AskingDelegate delegate;
    delegate.allow = false;
    field.setDelegate(&delegate);
    QSignalSpy changes(&field, &TextField::editingChanged);
    field.setText("SET");
    EXPECT_EQ(field.text(), "SET");
    EXPECT_TRUE(delegate.questions.isEmpty());
    EXPECT_EQ(changes.count(), 0);
    field.setDelegate(nullptr);
    QTest::keyClicks(&field, "AB");
    EXPECT_EQ(field.text(), "SETAB") << "no delegate allows every edit";
}

namespace {

// Drops the text at the field's right end, as a drag from another program would. (The application
// passes a drop on only while a drag is under way, so the event goes to the field itself.)
void dropAtEnd(TextField &field, const QString &text)
{
    QMimeData data;
    data.setText(text);
    QDropEvent drop(QPointF(field.width() - 2, field.height() / 2), Qt::CopyAction, &data, Qt::LeftButton, {});
    static_cast<QObject &>(field).event(&drop);
}

} // namespace

// Text entered any way goes through the field's filter before the delegate is asked about it and
// before it goes in, so the undo history holds the filtered entry: undo takes it back whole, redo
// brings it back filtered.
TEST(TextField, EnteredTextIsFilteredAsItGoesInAndUndoneWhole)
{
    using Edit = std::function<void(TextField &)>;
    const QList<std::tuple<const char *, Edit, QString, QString>> entries = {
        {"typing", [](TextField &f) { QTest::keyClicks(&f, "x"); }, "3+0:X", "VINX"},
        {"shortcut paste", [](TextField &f) { QTest::keyClick(&f, Qt::Key_V, Qt::ControlModifier); }, "3+0:PQ", "VINPQ"},
        {"context menu paste", pasteFromMenu, "3+0:PQ", "VINPQ"},
        {"input method", [](TextField &f) {
             QInputMethodEvent commit(QString(), {});
             commit.setCommitString("z-");
             QCoreApplication::sendEvent(&f, &commit);
         }, "3+0:Z", "VINZ"},
        {"drop", [](TextField &f) { dropAtEnd(f, "d-e"); }, "3+0:DE", "VINDE"},
    };
    QGuiApplication::clipboard()->setText("p-q");
    for (const auto &[what, edit, question, entered] : entries) {
        SCOPED_TRACE(what);
        TextField field;
        field.show();
        field.setText("VIN");
        AskingDelegate delegate;
        field.setDelegate(&delegate);
        field.setInputFilter([](const QString &text) { return text.toUpper().remove(QLatin1Char('-')); });
        edit(field);
        EXPECT_EQ(delegate.questions.value(0), question);
        EXPECT_EQ(field.text(), entered);
        field.undo();
        EXPECT_EQ(field.text(), "VIN");
        field.redo();
        EXPECT_EQ(field.text(), entered);
    }
}

namespace {

// Whether the widget draws the platform's blue tint somewhere (an action title).
bool drawsTint(QWidget *widget)
{
    return TestData::countPixels(widget->grab().toImage(),
                                 [](const QColor &c) { return c.blue() > 200 && c.red() < 80 && c.green() < 160; }) > 0;
}

} // namespace

TEST(AlertController, OneRowOfButtonsCancelFirstBelowTheFieldDisabledActionsInertHandlersRunWhilePresentedAndMayPresentTheNext)
{
    PhoneHost host;
    QPointer<AlertController> alert = new AlertController("Title", "Message");
    bool presentedDuringHandler = false;
    int okRuns = 0;
    auto *ok = new AlertAction("OK", AlertAction::StyleDefault, [&](AlertAction *action) {
        ++okRuns;
        presentedDuringHandler = host.navigation->presentedViewController() == action->alertController();
    });
    ok->setEnabled(false);
    auto *other = new AlertAction("Other", AlertAction::StyleDestructive);
    auto *cancel = new AlertAction("Cancel", AlertAction::StyleCancel);
    for (AlertAction *action : {ok, other, cancel})
        alert->addAction(action);
    alert->addTextFieldWithConfigurationHandler({});
    host.window.makeKeyAndVisible();
    host.navigation->presentViewController(alert, false);
    QTest::qWait(10);

    const QRect card = alert->contentView()->geometry();
    EXPECT_NEAR(card.center().x(), host.window.width() / 2, 1);
    const auto left = [&](AlertAction *a) { return alert->buttonForAction(a)->mapTo(alert, QPoint()).x(); };
    const auto top = [&](AlertAction *a) { return alert->buttonForAction(a)->mapTo(alert, QPoint()).y(); };
    EXPECT_LT(left(cancel), left(ok));
    EXPECT_LT(left(ok), left(other));
    EXPECT_EQ(top(cancel), top(ok));
    EXPECT_EQ(top(ok), top(other));
    EXPECT_GT(top(ok), alert->textFields().first()->mapTo(alert, QPoint()).y()) << "the field is above the row";

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

    // A handler that dismisses its alert and presents another keeps the new one.
    auto *first = new AlertController("First", QString());
    auto *second = new AlertController("Second", QString());
    first->addAction(new AlertAction("Next", AlertAction::StyleCancel, [&](AlertAction *action) {
        action->alertController()->dismissViewControllerAnimated(false);
        host.navigation->presentViewController(second, false);
    }));
    host.navigation->presentViewController(first, false);
    QTest::qWait(10);
    QTest::mouseClick(first->buttonForAction(first->actions().first()), Qt::LeftButton);
    EXPECT_EQ(host.navigation->presentedViewController(), second);
}
