#include "ScanHost.h"

#include "Utils/ZQTVINScanUtils.h"
#include "platform/Dispatch.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QJsonObject>
#include <QTextStream>

namespace ZqtApps {

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
    m_screen = options.manual
        ? ZQTVINCaptureVC::createVinScannerManualOptionViewWithDelegate(this, options.adjuster, options.claimId)
        : ZQTVINCaptureVC::createVinScannerViewWithDelegate(this, options.adjuster, options.claimId);
    if (m_screen) {
        m_screen->setShowManualEntry(options.manual);
        m_screen->setEnableLandscapeMode(options.landscape);
    }
}

ScanHost::~ScanHost()
{
    // The screen goes before the window that holds it, while this delegate still exists.
    delete m_screen.data();
}

void ScanHost::show(const QSize &size)
{
    m_window.resize(size);
    m_navigation = new ZQTPlatform::NavigationController;
    m_window.setRootViewController(m_navigation);
    m_window.makeKeyAndVisible();
    if (!m_screen)
        return;
    if (m_options.modal)
        m_navigation->presentViewController(m_screen, false);
    else
        m_navigation->pushViewController(m_screen, false);
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
    const ScanResult result{VIN, isVINScanned, isVINValid, error};
    QMetaObject::invokeMethod(this, [this, result] { emit scanned(result); }, Qt::QueuedConnection);
}

} // namespace ZqtApps
