// The one-call alert that hosts may call (the component itself does not) and the display layout of
// phone numbers.
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

// Shown at once from "8.0" on (the phone's "16.4" is above "8.0" as numbers, though below it as
// text); a second request while one is up is dropped with its block; title and message as written.
TEST(OneCallAlert, ReportsButtonsByIndexShowsOneAtATimeAndOnlyFromSystemEight)
{
    PhoneHost host;
    host.window.makeKeyAndVisible();
    ViewController *controller = host.navigation;
    QList<QPair<QString, qint64>> presses;
    const auto ask = [&](const QString &other) {
        Constants::showAlertViewWithTitle(greenMarkup(), greenMarkup(), "Cancel", other, controller,
                                          [&](const QString &title, qint64 index) { presses << qMakePair(title, index); });
        return qobject_cast<AlertController *>(controller->presentedViewController());
    };
    const auto press = [&](AlertController *alert, int action) {
        ASSERT_NE(alert, nullptr);
        QTest::mouseClick(alert->buttonForAction(alert->actions().value(action)), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !controller->presentedViewController(); }, 2000));
    };
    AlertController *shown = ask("Retry");
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->preferredStyle(), AlertController::StyleAlert);
    ASSERT_EQ(shown->actions().size(), 2);
    EXPECT_EQ(shown->actions()[0]->style(), AlertAction::StyleCancel);
    EXPECT_EQ(shown->actions()[1]->style(), AlertAction::StyleDefault);
    EXPECT_EQ(ask("Other"), shown);
    EXPECT_EQ(host.window.findChildren<AlertController *>().size(), 1);
    int asWritten = 0;
    for (QLabel *label : shown->findChildren<QLabel *>())
        asWritten += label->text() == greenMarkup() && !drawsGreen(label);
    EXPECT_EQ(asWritten, 2);
    press(shown, 1);
    press(ask("Retry"), 0);
    EXPECT_EQ(presses, (QList<QPair<QString, qint64>>{{"Retry", 1}, {"Cancel", 0}}));

    // An empty other title gives the cancel button alone; a missing block is allowed.
    Constants::showAlertViewWithTitle("Title", "Message", "Cancel", "", controller, {});
    auto *alone = qobject_cast<AlertController *>(controller->presentedViewController());
    ASSERT_NE(alone, nullptr);
    EXPECT_EQ(alone->actions().size(), 1);
    press(alone, 0);

    DeviceProfile profile = phoneProfile();
    profile.systemVersion = QStringLiteral("7.1.2");
    DeviceProfile::setCurrent(profile);
    EXPECT_EQ(ask("OK"), nullptr);
}
