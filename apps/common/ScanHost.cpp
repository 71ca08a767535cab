#include "ScanHost.h"

#include "Utils/ZQTVINScanUtils.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Exception.h"
#include "platform/ui/NavigationBar.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>

namespace ZqtApps {

namespace {

QJsonValue sourceName(ZQTVINCaptureVC::VINSource source)
{
    switch (source) {
    case ZQTVINCaptureVC::VINSource::Barcode:
        return QStringLiteral("barcode");
    case ZQTVINCaptureVC::VINSource::Text:
        return QStringLiteral("text");
    case ZQTVINCaptureVC::VINSource::Typed:
        return QStringLiteral("typed");
    default:
        return QJsonValue::Null;
    }
}

} // namespace

QJsonObject ScanResult::toJson() const
{
    QJsonValue errorValue = QJsonValue::Null;
    if (!error.isNull())
        errorValue = QJsonObject{{QStringLiteral("domain"), error.domain()},
                                 {QStringLiteral("code"), double(error.code())},
                                 {QStringLiteral("description"), error.localizedDescription()}};
    return {{QStringLiteral("vin"), vin},
            {QStringLiteral("isVINScanned"), isVINScanned},
            {QStringLiteral("isVINValid"), isVINValid},
            {QStringLiteral("source"), sourceName(source)},
            {QStringLiteral("error"), errorValue}};
}

namespace {
const QStringList requestSchemes = {QStringLiteral("tel"), QStringLiteral("mailto")};
} // namespace

UrlRequestPrinter::UrlRequestPrinter()
{
    for (const QString &scheme : requestSchemes)
        QDesktopServices::setUrlHandler(scheme, this, "openUrl");
}

UrlRequestPrinter::~UrlRequestPrinter()
{
    for (const QString &scheme : requestSchemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

void UrlRequestPrinter::openUrl(const QUrl &url)
{
    QTextStream(stderr) << QCoreApplication::applicationName() << ": would open " << url.toEncoded() << "\n";
}

ScanHost::ScanHost(const ScanHostOptions &options) : m_options(options)
{
    makeScreen();
}

ScanHost::~ScanHost()
{
    if (m_reportsUncaught)
        ZQTPlatform::setUncaughtExceptionHandler({});
    // The screen goes before the window that holds it, while this delegate still exists.
    delete m_screen.data();
}

void ScanHost::reportUncaughtExceptions(const QJsonObject &fields)
{
    m_reportsUncaught = true;
    // Runs on the thread that raised the exception; the screen is alive while its capture
    // thread works.
    ZQTPlatform::setUncaughtExceptionHandler([this, fields](const QString &name, const QString &reason) {
        const QString vin = m_screen ? m_screen->vinInProcess() : QString();
        QJsonObject line = fields;
        line.insert(QStringLiteral("vin"), vin.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(vin));
        line.insert(QStringLiteral("error"), QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("reason"), reason}});
        const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
        std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
        std::fflush(stdout);
        std::_Exit(kUncaughtExceptionStatus);
    });
}

void ScanHost::makeScreen()
{
    m_screen = m_options.manual
        ? ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(this, m_options.adjuster, m_options.claimId)
        : ZQTVINCaptureVC::createVinScannerViewWithDelegate(this, m_options.adjuster, m_options.claimId);
    if (m_screen) {
        m_screen->setShowManualEntry(m_options.manual);
        m_screen->setEnableLandscapeMode(m_options.landscape);
        m_screen->setEnableVINTextReading(m_options.readText);
    }
}

void ScanHost::show(const QSize &size)
{
    // Below this the help card's picture, title and text no longer fit one above the other.
    m_window.setMinimumSize(320, 360);
    m_window.resize(size);
    m_navigation = new ZQTPlatform::NavigationController;
    // The host's own bar (shown over the result card) in the component's header colours.
    m_navigation->navigationBar()->setBarTintColor(
        ZQTVINScanComponentConstants::getGlobalColorForKey(QStringLiteral("ApplicationHeaderColor")));
    m_navigation->navigationBar()->setTitleColor(
        ZQTVINScanComponentConstants::getGlobalColorForKey(QStringLiteral("VINScanIconTitleColor")));
    m_window.setRootViewController(m_navigation);
    m_window.makeKeyAndVisible();
    if (m_screen)
        showController(m_screen);
}

void ScanHost::showController(ZQTPlatform::ViewController *controller)
{
    if (m_options.modal)
        m_navigation->presentViewController(controller, false);
    else
        m_navigation->pushViewController(controller, false);
}

void ScanHost::showInsteadOfScreen(ZQTPlatform::ViewController *replacement)
{
    delete m_replacement.data();
    m_replacement = replacement;
    // A presented screen is dismissed (and deleted once gone); a pushed one leaves the stack.
    if (m_screen && m_options.modal)
        m_navigation->dismissViewControllerAnimated(false);
    else
        delete m_screen.data();
    m_navigation->pushViewController(replacement, false);
}

void ScanHost::startOver()
{
    delete m_replacement.data();
    delete m_screen.data();
    makeScreen();
    if (m_screen && m_navigation)
        showController(m_screen);
}

QString ScanHost::vinPhotoPath() const
{
    if (!m_screen || !m_screen->vinScanItem())
        return {};
    const QString path = ZQTVINScanUtils::getPhotoPathWithClaimId(m_options.claimId, m_screen->vinScanItem()->saveTitle());
    return QFileInfo(path).isFile() ? path : QString();
}

void ScanHost::didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid, const ZQTError &error)
{
    // The screen calling its delegate is alive; it set how the VIN was read before the call.
    const ScanResult result{VIN, isVINScanned, isVINValid, error,
                            m_screen ? m_screen->lastVINSource() : ZQTVINCaptureVC::VINSource::None};
    QMetaObject::invokeMethod(this, [this, result] { emit scanned(result); }, Qt::QueuedConnection);
}

} // namespace ZqtApps
