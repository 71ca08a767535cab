#include "UI/Views/ZQTVINScanAdjusterInfo.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "lib/Categories/View+ZQTExtend.h"
#include "platform/ui/Application.h"
#include "platform/foundation/Dispatch.h"
#include "platform/ui/Font.h"
#include "platform/ui/LayoutConstraint.h"
#include "platform/foundation/Log.h"
#include "platform/ui/NavigationBar.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Storyboard.h"
#include "platform/foundation/URLOpening.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"
#include "platform/ui/Window.h"

#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

const QString interfaceFileName = QStringLiteral("ZQTVINScanAdjusterInfo");
const QString formatPlaceholder = QStringLiteral("%@");

// The panel's view tag lives in this dynamic property.
constexpr char tagProperty[] = "tag";

const bool registeredWithScenes = [] {
    Storyboard::registerWidgetClass(QStringLiteral("ZQTVINScanAdjusterInfo"),
                                    [](QWidget *parent) { return new ZQTVINScanAdjusterInfo(parent); });
    return true;
}();

ZQTVINScanAdjusterInfo *panelIn(const QWidget *window)
{
    if (!window)
        return nullptr;
    for (auto *panel : window->findChildren<ZQTVINScanAdjusterInfo *>()) {
        if (panel->property(tagProperty).toInt() == ZQTVINScanAdjusterInfo::viewTag)
            return panel;
    }
    return nullptr;
}

// The window the panel goes over: the key window when it is on screen, else the window that
// shows the controller (a host may embed the screen in a window of its own), else the active
// window, else any visible top-level window. nullptr when nothing is on screen.
QWidget *hostWindow(const QWidget *controller)
{
    if (Window *key = Window::keyWindow(); key && key->isVisible())
        return key;
    if (controller && controller->window()->isVisible())
        return controller->window();
    if (QWidget *active = QApplication::activeWindow())
        return active;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->isWindow())
            return widget;
    }
    return nullptr;
}

// The text without blanks and tabs at either end; line breaks stay.
QString trimmedOfSpacesAndTabs(const QString &text)
{
    const auto isBlank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}

// The text used as a format with one object argument, as the platform's string formatting
// reads it: "%%" is one percent sign, the first "%@" is the argument and any further "%@"
// stands for a missing argument, "(null)". Other "%" sequences are kept as written.
QString formattedWithOneObject(const QString &format, const QString &argument)
{
    QString result;
    result.reserve(format.size() + argument.size());
    bool argumentUsed = false;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format.at(i);
        const QChar next = i + 1 < format.size() ? format.at(i + 1) : QChar();
        if (c == QLatin1Char('%') && next == QLatin1Char('%')) {
            result += QLatin1Char('%');
            ++i;
        } else if (c == QLatin1Char('%') && next == QLatin1Char('@')) {
            result += argumentUsed ? QStringLiteral("(null)") : argument;
            argumentUsed = true;
            ++i;
        } else {
            result += c;
        }
    }
    return result;
}

QString digitsOf(QString text)
{
    text.removeIf([](QChar c) { return !c.isDigit(); });
    return text;
}

// Top offset of the content: the status bar and the controller's navigation bar, as the
// platform sums them (32-bit floats).
qreal barsHeight(const ViewController *controller)
{
    const float statusBar = float(Application::sharedApplication()->statusBarFrame().height());
    const NavigationController *navigation = controller ? controller->navigationController() : nullptr;
    const float navigationBar = navigation ? float(navigation->navigationBar()->height()) : 0.0f;
    return statusBar + navigationBar;
}

void showIcon(QLabel *imageView, const QString &name)
{
    const Image icon = Constants::getGlobalImageWithName(name, Constants::getGlobalColorForKey(
                                                                   QStringLiteral("AdjusterInfoPhoneNumberColor")));
    imageView->setPixmap(icon.isNull() ? QPixmap()
                                       : QPixmap::fromImage(icon.bitmap().scaled(
                                             imageView->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

// The call and e-mail buttons: action colour, header-coloured bold title, rounded.
void styleActionButton(QPushButton *button)
{
    const QColor action = Constants::getGlobalColorForKey(QStringLiteral("AdjusterInfoPhoneNumberColor"));
    const QFont font = Font::fontWithName(Constants::getGlobalFontBold(), 14.0).value_or(Font::systemFontOfSize(14.0));
    Constants::configButton(button, action, button->text(), action.darker(115), float(button->maximumHeight()) / 2.0f,
                            QColor(), 0.0f, font, Constants::getGlobalColorForKey(QStringLiteral("ApplicationHeaderColor")));
}

// Collapses the row when the label has nothing to show.
void collapseIfEmpty(const QLabel *label, LayoutConstraint *rowHeight)
{
    if (label->text().isEmpty())
        rowHeight->setConstant(0.0);
}

// One plain e-mail address: a local part and a domain of letters, digits and ".-_+'", nothing that
// a "mailto:" request would read as a second recipient ("," ";"), a header ("?" "&") or an encoding.
bool isPlainAddress(const QString &address)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9._+'-]+@[A-Za-z0-9-]+(\\.[A-Za-z0-9-]+)*$"));
    return plain.match(address).hasMatch();
}

// A header of an e-mail request, its value percent-encoded.
struct MailHeader
{
    QString name;
    QString value;
};

// Why the e-mail request must not be opened: a recipient that is not one plain address, or a
// header value (subject, copy address) that still holds the header separator "&" once encoded.
QString mailRequestRefusal(const QString &address, const QList<MailHeader> &headers)
{
    if (!isPlainAddress(address))
        return QStringLiteral("the recipient \"%1\" is not one plain e-mail address").arg(address);
    for (const MailHeader &header : headers) {
        if (header.value.contains(QLatin1Char('&')))
            return QStringLiteral("the header value \"%1\" would carry a header separator").arg(header.value);
    }
    return QString();
}

// "mailto:ADDRESS", with "?name=value&..." when there are headers.
QString mailRequest(const QString &address, const QList<MailHeader> &headers)
{
    QStringList fields;
    for (const MailHeader &header : headers)
        fields << header.name + QLatin1Char('=') + header.value;
    const QString query = fields.join(QLatin1Char('&'));
    return QStringLiteral("mailto:") + address + (query.isEmpty() ? QString() : QLatin1Char('?') + query);
}

} // namespace

ZQTVINScanAdjusterInfo::ZQTVINScanAdjusterInfo(QWidget *parent) : QWidget(parent) {}

void ZQTVINScanAdjusterInfo::showInViewController(ViewController *controller,
                                                  const std::optional<ZQTVINScanAdjuster> &adjusterInfo)
{
    Dispatch::mainAsync([controller = QPointer<ViewController>(controller), adjusterInfo] {
        QWidget *window = hostWindow(controller);
        if (!window) {
            log(QStringLiteral("The adjuster panel cannot be shown: no window is on screen"));
            return;
        }
        if (panelIn(window))
            return;
        ZQTVINScanAdjusterInfo *panel = initWithFrame(window->rect(), controller, adjusterInfo);
        if (!panel)
            return;
        panel->setAdjusterInfo(adjusterInfo);
        panel->setProperty(tagProperty, viewTag);
        addSubview(window, panel);
        // The panel covers the window at every size the window takes.
        ZQTExtend::addConstraintToFillInSupperView(panel);
    });
}

ZQTVINScanAdjusterInfo *ZQTVINScanAdjusterInfo::shownPanel()
{
    if (ZQTVINScanAdjusterInfo *panel = panelIn(Window::keyWindow()))
        return panel;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (ZQTVINScanAdjusterInfo *panel = panelIn(window))
            return panel;
    }
    return nullptr;
}

ZQTVINScanAdjusterInfo *ZQTVINScanAdjusterInfo::initWithFrame(const QRectF &frame, ViewController *mainView,
                                                              const std::optional<ZQTVINScanAdjuster> &adjusterInfo)
{
    QWidget *root = Storyboard::loadNibNamed(interfaceFileName, Bundle::frameworkBundle());
    auto *panel = qobject_cast<ZQTVINScanAdjusterInfo *>(root);
    if (!panel || !panel->findParts()) {
        delete root;
        return nullptr;
    }
    panel->setGeometry(frame.toRect());
    panel->m_adjusterInfo = adjusterInfo;
    panel->m_constraintAdjusterTop->setConstant(barsHeight(mainView));
    panel->fill();
    panel->m_controller = mainView;
    return panel;
}

bool ZQTVINScanAdjusterInfo::findParts()
{
    const auto constraint = [this](const char *name) { return findChild<LayoutConstraint *>(QLatin1String(name)); };
    const auto label = [this](const char *name) { return findChild<QLabel *>(QLatin1String(name)); };
    m_constraintAdjusterTop = constraint("constraintAdjusterTop");
    m_constraintAdjusterClaimNumberHeight = constraint("constraintAdjusterClaimNumberHeight");
    m_constraintAdjusterNameHeight = constraint("constraintAdjusterNameHeight");
    m_constraintAdjusterPhoneHeight = constraint("constraintAdjusterPhoneHeight");
    m_constraintAdjusterEmailHeight = constraint("constraintAdjusterEmailHeight");
    m_viewAdjusterInfo = findChild<QWidget *>(QStringLiteral("viewAdjusterInfo"));
    m_viewBG = findChild<QWidget *>(QStringLiteral("viewBG"));
    m_labelClaim = label("labelClaim");
    m_labelUserType = label("labelUserType");
    m_lblClaimNumber = label("lblClaimNumber");
    m_lblOffice = label("lblOffice");
    m_lblEmail = label("lblEmail");
    m_labelUserName = label("labelUserName");
    m_labelofficeNumber = label("labelofficeNumber");
    m_labelEmail = label("labelEmail");
    m_imagePhone = label("imagePhone");
    m_imageEmail = label("imageEmail");
    m_lblContactMsg = label("lblContactMsg");
    // The record's fields and the configured texts are shown as written: a name or address that
    // looks like markup (a link, a picture) is never rendered.
    for (QLabel *text : {m_labelClaim, m_labelUserType, m_lblClaimNumber, m_lblOffice, m_lblEmail, m_labelUserName,
                         m_labelofficeNumber, m_labelEmail, m_lblContactMsg}) {
        if (text)
            text->setTextFormat(Qt::PlainText);
    }
    // The weak captions and the e-mail icon are decoration; the rest is needed.
    return m_constraintAdjusterTop && m_constraintAdjusterClaimNumberHeight && m_constraintAdjusterNameHeight
        && m_constraintAdjusterPhoneHeight && m_constraintAdjusterEmailHeight && m_viewAdjusterInfo && m_viewBG
        && m_labelClaim && m_labelUserType && m_labelUserName && m_labelofficeNumber && m_labelEmail && m_imagePhone;
}

void ZQTVINScanAdjusterInfo::fill()
{
    setBackgroundColor(m_viewBG, Constants::getGlobalColorForKey(QStringLiteral("ApplicationHeaderColor")));
    showIcon(m_imagePhone, QStringLiteral("phoneIcon"));
    if (m_imageEmail)
        showIcon(m_imageEmail, QStringLiteral("mailIcon"));
    for (const char *name : {"callButton", "emailButton"}) {
        if (auto *button = findChild<QPushButton *>(QLatin1String(name)))
            styleActionButton(button);
    }

    const ZQTVINScanAdjuster record = m_adjusterInfo.value_or(ZQTVINScanAdjuster());
    m_labelClaim->setText(trimmedOfSpacesAndTabs(record.custClmRefID()));
    m_labelEmail->setText(trimmedOfSpacesAndTabs(record.recipientEmailAddress()));
    m_labelUserType->setText(trimmedOfSpacesAndTabs(record.userType()));
    m_labelUserName->setText(trimmedOfSpacesAndTabs(record.recipientName()));

    const QString phone = trimmedOfSpacesAndTabs(record.recipientPhone());
    m_labelofficeNumber->setText(!phone.isEmpty() ? phone
                                                  : Constants::getFormatedPhoneNumber(Constants::getConfigStringForKey(
                                                        QStringLiteral("AdjusterInfoPhoneNumber"))));

    collapseIfEmpty(m_labelofficeNumber, m_constraintAdjusterPhoneHeight);
    collapseIfEmpty(m_labelEmail, m_constraintAdjusterEmailHeight);
    collapseIfEmpty(m_labelUserName, m_constraintAdjusterNameHeight);
    collapseIfEmpty(m_labelClaim, m_constraintAdjusterClaimNumberHeight);
}

void ZQTVINScanAdjusterInfo::dismissAdjusterInfo()
{
    Dispatch::mainAsync([] {
        if (ZQTVINScanAdjusterInfo *panel = shownPanel()) {
            removeFromSuperview(panel);
            panel->deleteLater();
        }
    });
}

void ZQTVINScanAdjusterInfo::callNumber()
{
    QString number = m_labelofficeNumber->text();
    const QString separator = Constants::getConfigStringForKey(QStringLiteral("AdjusterInfoExtentionSeperator"));
    if (!separator.isEmpty() && number.contains(separator))
        number.truncate(number.indexOf(separator)); // the extension is not dialled
    openURL(QStringLiteral("tel:%1").arg(digitsOf(number)));
}

void ZQTVINScanAdjusterInfo::sendEmail()
{
    dismissAdjusterInfo();

    QString subject = Constants::getConfigStringForKey(QStringLiteral("AdjusterInfoEmailSubject"));
    if (Constants::getGlobalBoolForKey(QStringLiteral("AdjusterInfoEmailSubjectAppendClaim"))
        && subject.contains(formatPlaceholder)) {
        // The subject is a format whose one argument is the claim.
        subject = formattedWithOneObject(subject, m_labelClaim->text());
    } else {
        subject.remove(formatPlaceholder);
    }

    QList<MailHeader> headers;
    if (!subject.isEmpty())
        headers.append({QStringLiteral("subject"), percentEncodedForURLHost(subject)});
    const QString copyAddress = Constants::getConfigStringForKey(QStringLiteral("AdjusterInfoGenericInboxEmail"));
    if (!copyAddress.isEmpty())
        headers.append({QStringLiteral("cc"), percentEncodedForURLHost(copyAddress)});

    // The address goes in as it is shown, not encoded, so it must be one plain address; the host
    // and the claim reference may not add headers or recipients.
    const QString address = m_labelEmail->text();
    const QString refusal = mailRequestRefusal(address, headers);
    if (!refusal.isEmpty()) {
        log(QStringLiteral("Not opening the e-mail request: %1").arg(refusal));
        return;
    }
    // A request that cannot be opened is dropped.
    openURL(mailRequest(address, headers));
}
