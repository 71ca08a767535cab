// The one-call alert and the display layout of phone numbers.
#include "Model/ZQTVINScanComponentConstants.h"

#include "platform/ui/AlertController.h"
#include "platform/foundation/DeviceProfile.h"

#include <QStringList>

using namespace ZQTPlatform;

namespace {

// The oldest system that shows these alerts.
const QString alertSystemVersion = QStringLiteral("8.0");

// Compares two dotted version texts part by part as numbers ("10.2" is above "8.0"); a missing
// part counts as 0 and a part that is not a number as 0. Negative, zero or positive like strcmp.
int compareVersions(const QString &left, const QString &right)
{
    const QStringList leftParts = left.split(QLatin1Char('.'));
    const QStringList rightParts = right.split(QLatin1Char('.'));
    for (qsizetype i = 0; i < qMax(leftParts.size(), rightParts.size()); ++i) {
        const qulonglong a = i < leftParts.size() ? leftParts.at(i).trimmed().toULongLong() : 0;
        const qulonglong b = i < rightParts.size() ? rightParts.at(i).trimmed().toULongLong() : 0;
        if (a != b)
            return a < b ? -1 : 1;
    }
    return 0;
}

// An action that reports its button to the block (when there is one) and then dismisses the alert.
AlertAction *reportingAction(const QString &title, AlertAction::Style style, qint64 index,
                             const ZQTVINScanComponentConstants::AlertButtonClicked &buttonClicked)
{
    return new AlertAction(title, style, [title, index, buttonClicked](AlertAction *action) {
        if (buttonClicked)
            buttonClicked(title, index);
        if (AlertController *alert = action->alertController())
            alert->dismissViewControllerAnimated(true);
    });
}

} // namespace

void ZQTVINScanComponentConstants::showAlertViewWithTitle(const QString &title, const QString &message,
                                                          const QString &cancelButton, const QString &otherButton,
                                                          ViewController *withController,
                                                          const AlertButtonClicked &buttonClicked)
{
    if (compareVersions(DeviceProfile::current().systemVersion, alertSystemVersion) < 0)
        return;
    // Alerts are never stacked: a request while one is up is dropped.
    if (!withController || qobject_cast<AlertController *>(withController->presentedViewController()))
        return;

    auto *alert = new AlertController(title, message, AlertController::StyleAlert);
    alert->addAction(reportingAction(cancelButton, AlertAction::StyleCancel, 0, buttonClicked));
    if (!otherButton.isEmpty())
        alert->addAction(reportingAction(otherButton, AlertAction::StyleDefault, 1, buttonClicked));
    withController->presentViewController(alert, false);
}

QString ZQTVINScanComponentConstants::getFormatedPhoneNumber(const QString &phone)
{
    QString digits = phone;
    digits.removeIf([](QChar c) { return !c.isDigit(); });
    const QStringView d(digits);
    switch (d.size()) {
    case 7:
        return QStringLiteral("%1-%2").arg(d.mid(0, 3), d.mid(3));
    case 10:
        return QStringLiteral("(%1)%2-%3").arg(d.mid(0, 3), d.mid(3, 3), d.mid(6));
    case 11:
        return QStringLiteral("%1 (%2)%3-%4").arg(d.mid(0, 1), d.mid(1, 3), d.mid(4, 3), d.mid(7));
    case 12:
        return QStringLiteral("+%1 (%2)%3-%4").arg(d.mid(0, 2), d.mid(2, 3), d.mid(5, 3), d.mid(8));
    default:
        return phone;
    }
}
