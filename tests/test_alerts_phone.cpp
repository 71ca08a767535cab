// The one-call alert (buttons reported by index, never stacked, only on systems from 8.0) and
// the display layout of phone numbers.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/ui/AlertController.h"
#include "platform/foundation/DeviceProfile.h"
#include "support/MarkupProbe.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

TEST(PhoneNumberLayout, FormatsByDigitCountAndKeepsOtherTextsAsTheyAre)
{
    const struct { QString in, out; } cases[] = {
        {"5551234", "555-1234"},
        {"5551234567", "(555)123-4567"},
        {"15551234567", "1 (555)123-4567"},
        {"445551234567", "+44 (555)123-4567"},
        {"(555) 123-4567", "(555)123-4567"},
        {"555-123.45", "555-123.45"},       // 8 digits: unchanged, separators included
        {"ext.", "ext."},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Constants::getFormatedPhoneNumber(c.in), c.out) << qPrintable(c.in);
}

namespace {

class OneCallAlert : public ::testing::Test
{
protected:
    void SetUp() override
    {
        useSystem(QStringLiteral("16.4"));
        window.resize(375, 812);
        window.setRootViewController(controller);
        window.makeKeyAndVisible();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    static void useSystem(const QString &version)
    {
        DeviceProfile profile = phoneProfile();
        profile.systemVersion = version;
        DeviceProfile::setCurrent(profile);
    }
    // Asks for an alert that records its presses.
    void ask(const QString &other, QList<QPair<QString, qint64>> *presses)
    {
        Constants::showAlertViewWithTitle("Title", "Message", "Cancel", other, controller,
                                          [presses](const QString &title, qint64 index) { *presses << qMakePair(title, index); });
    }
    AlertController *alert() const { return qobject_cast<AlertController *>(controller->presentedViewController()); }
    // Clicks the button and waits for the alert to dismiss itself.
    void press(const QString &title)
    {
        ASSERT_NE(alert(), nullptr);
        const QList<AlertAction *> actions = alert()->actions();
        const auto action = std::find_if(actions.begin(), actions.end(), [&](AlertAction *a) { return a->title() == title; });
        ASSERT_NE(action, actions.end()) << "no button " << qPrintable(title);
        QTest::mouseClick(alert()->buttonForAction(*action), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !alert(); }, 2000)) << qPrintable(title);
    }

    Window window;
    ViewController *controller = new ViewController;
};

} // namespace

TEST_F(OneCallAlert, ReportsCancelAsZeroAndTheOtherAsOneDropsASecondRequestWhileOneIsUpAndShowsPlainText)
{
    QList<QPair<QString, qint64>> presses, dropped;
    ask("Retry", &presses);
    AlertController *shown = alert();
    ASSERT_NE(shown, nullptr) << "presented at once, without animation";
    EXPECT_EQ(shown->preferredStyle(), AlertController::StyleAlert);
    ASSERT_EQ(shown->actions().size(), 2);
    EXPECT_EQ(shown->actions()[0]->style(), AlertAction::StyleCancel);
    EXPECT_EQ(shown->actions()[1]->style(), AlertAction::StyleDefault);
    ask("Other", &dropped);
    EXPECT_EQ(alert(), shown);
    EXPECT_EQ(window.findChildren<AlertController *>().size(), 1);
    press("Retry");
    ask("Retry", &presses);
    press("Cancel");
    QTest::qWait(50);
    EXPECT_EQ(presses, (QList<QPair<QString, qint64>>{{"Retry", 1}, {"Cancel", 0}}));
    EXPECT_TRUE(dropped.isEmpty()) << "the dropped alert's block is never called";

    // An empty other title gives the cancel button alone; a missing block is allowed. The title
    // and message are shown as written, never rendered as markup.
    Constants::showAlertViewWithTitle(greenMarkup(), greenMarkup(), "Cancel", "", controller, {});
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->actions().size(), 1);
    QList<QLabel *> texts;
    for (QLabel *label : alert()->findChildren<QLabel *>()) {
        if (label->text() == greenMarkup())
            texts << label;
    }
    EXPECT_EQ(texts.size(), 2);
    for (QLabel *label : texts)
        EXPECT_FALSE(drawsGreen(label));
    press("Cancel");
}

// Shown from "8.0" on; "10.0" is above "8.0" as numbers, though below it as text.
TEST_F(OneCallAlert, ComparesTheSystemVersionByParts)
{
    const QList<QPair<const char *, bool>> cases = {{"7.1.2", false}, {"unknown", false}, {"8.0", true}, {"10.0", true}};
    for (const auto &[version, shown] : cases) {
        useSystem(version);
        QList<QPair<QString, qint64>> presses;
        ask("OK", &presses);
        EXPECT_EQ(alert() != nullptr, shown) << version;
        if (alert())
            alert()->dismissViewControllerAnimated(false);
    }
}
