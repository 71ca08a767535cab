// The one-call alert (buttons reported by index, never stacked, only on systems from 8.0) and
// the display layout of phone numbers.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/AlertController.h"
#include "platform/DeviceProfile.h"
#include "platform/Window.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

TEST(PhoneNumberLayout, FormatsByDigitCountAndKeepsOtherTextsAsTheyAre)
{
    const struct
    {
        QString in, out;
    } cases[] = {
        {"5551234", "555-1234"},
        {"5551234567", "(555)123-4567"},
        {"15551234567", "1 (555)123-4567"},
        {"445551234567", "+44 (555)123-4567"},
        {"(555) 123-4567", "(555)123-4567"},
        {"+44 555.123.4567", "+44 (555)123-4567"},
        {"1-800-555-0199", "1 (800)555-0199"},
        {"555-123.45", "555-123.45"},       // 8 digits: unchanged, separators included
        {" 12345 6789 ", " 12345 6789 "},   // 9 digits
        {"5551234567890", "5551234567890"}, // 13 digits
        {"", ""},
        {"ext.", "ext."},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Constants::getFormatedPhoneNumber(c.in), c.out) << qPrintable(c.in);
}

namespace {

class OneCallAlert : public ::testing::Test
{
protected:
    void SetUp() override { useSystem(QStringLiteral("16.4")); }

    static void useSystem(const QString &version)
    {
        DeviceProfile profile;
        profile.mainScreenBounds = QSizeF(375, 812);
        profile.interfaceIdiom = DeviceProfile::Idiom::Phone;
        profile.systemVersion = version;
        DeviceProfile::setCurrent(profile);
    }
    // Shows the window with the controller and asks for an alert that records its presses.
    void ask(const QString &other, QList<QPair<QString, qint64>> *presses)
    {
        if (!window.isVisible()) {
            window.resize(375, 812);
            window.setRootViewController(controller);
            window.makeKeyAndVisible();
        }
        Constants::showAlertViewWithTitle("Title", "Message", "Cancel", other, controller,
                                          [presses](const QString &title, qint64 index) { *presses << qMakePair(title, index); });
    }
    AlertController *alert() const { return qobject_cast<AlertController *>(controller->presentedViewController()); }
    void press(const QString &title)
    {
        ASSERT_NE(alert(), nullptr);
        for (AlertAction *action : alert()->actions()) {
            if (action->title() == title) {
                QWidget *button = alert()->buttonForAction(action);
                ASSERT_NE(button, nullptr);
                ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        FAIL() << "no button " << qPrintable(title);
    }

    Window window;
    ViewController *controller = new ViewController;
};

} // namespace

TEST_F(OneCallAlert, ReportsCancelAsZeroAndTheOtherAsOne)
{
    QList<QPair<QString, qint64>> presses;
    ask("Retry", &presses);
    ASSERT_NE(alert(), nullptr) << "presented at once, without animation";
    EXPECT_EQ(alert()->preferredStyle(), AlertController::StyleAlert);
    ASSERT_EQ(alert()->actions().size(), 2);
    EXPECT_EQ(alert()->actions()[0]->style(), AlertAction::StyleCancel);
    EXPECT_EQ(alert()->actions()[1]->style(), AlertAction::StyleDefault);
    press("Retry");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000)) << "the alert dismisses itself";
    ask("Retry", &presses);
    press("Cancel");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000));
    EXPECT_EQ(presses, (QList<QPair<QString, qint64>>{{"Retry", 1}, {"Cancel", 0}}));

    // An empty other title gives the cancel button alone.
    presses.clear();
    ask("", &presses);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->actions().size(), 1);
    press("Cancel");
    EXPECT_EQ(presses, (QList<QPair<QString, qint64>>{{"Cancel", 0}}));
}

TEST_F(OneCallAlert, ASecondRequestWhileOneIsUpIsDropped)
{
    QList<QPair<QString, qint64>> first, second;
    ask("OK", &first);
    AlertController *shown = alert();
    ASSERT_NE(shown, nullptr);
    ask("Other", &second);
    EXPECT_EQ(alert(), shown);
    EXPECT_EQ(window.findChildren<AlertController *>().size(), 1);
    press("OK");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000));
    QTest::qWait(50);
    EXPECT_EQ(first.size(), 1);
    EXPECT_TRUE(second.isEmpty()) << "the dropped alert's block is never called";

    // A missing block is allowed.
    Constants::showAlertViewWithTitle("T", "M", "Cancel", "OK", controller, {});
    press("OK");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000));
}

TEST_F(OneCallAlert, ComparesTheSystemVersionByParts)
{
    for (const char *version : {"7.1.2", "7", "0.9", "unknown"}) {
        useSystem(version);
        QList<QPair<QString, qint64>> presses;
        ask("OK", &presses);
        EXPECT_EQ(alert(), nullptr) << version;
    }
    // "10.0" is above "8.0" as numbers, though below it as text.
    for (const char *version : {"8.0", "8", "10.0", "8.0.1"}) {
        useSystem(version);
        QList<QPair<QString, qint64>> presses;
        ask("OK", &presses);
        ASSERT_NE(alert(), nullptr) << version;
        press("OK");
        EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000)) << version;
    }
}
