// A host for one capture screen: a window with a navigation controller, the screen pushed on it
// (or presented), and the delegate, whose calls arrive as one signal on the GUI thread.
#pragma once

#include "ZQTVINScanComponent.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

namespace ZqtApps {

struct ScanResult
{
    QString vin;
    bool isVINScanned = false;
    bool isVINValid = false;
    ZQTError error;
    ZQTVINCaptureVC::VINSource source = ZQTVINCaptureVC::VINSource::None;

    // {"vin": ..., "isVINScanned": ..., "isVINValid": ..., "source": "barcode" | "text" | "typed",
    //  "error": null | {domain, code, description}}
    QJsonObject toJson() const;
};

struct ScanHostOptions
{
    QString claimId;
    bool manual = false;     // open with the manual prompt
    bool landscape = false;  // the screen's landscape mode
    bool modal = false;      // present the screen instead of pushing it
    bool readText = false;   // also read printed VINs (the screen's enableVINTextReading)
    std::optional<ZQTVINScanAdjuster> adjuster;
};

// Stands in for the phone and mail applications: while it lives, every "tel:" and "mailto:"
// request (the adjuster panel's call and e-mail buttons) is printed on standard error.
class UrlRequestPrinter : public QObject
{
    Q_OBJECT

public:
    UrlRequestPrinter();
    ~UrlRequestPrinter() override;

public Q_SLOTS:
    // GUI thread, called by QDesktopServices::openUrl.
    void openUrl(const QUrl &url);
};

class ScanHost : public QObject, public VinScannerVCDelegate
{
    Q_OBJECT

public:
    explicit ScanHost(const ScanHostOptions &options);
    ~ScanHost() override;

    ZQTPlatform::Window &window() { return m_window; }
    ZQTVINCaptureVC *screen() const { return m_screen; }
    ZQTPlatform::NavigationController *navigation() const { return m_navigation; }
    // Shows the window and the screen in it.
    void show(const QSize &size);
    // Shows the view controller (for example a result card) instead of the screen, which is
    // deleted; the host takes ownership of the view controller.
    void showInsteadOfScreen(ZQTPlatform::ViewController *replacement);
    // A fresh screen for the same claim in place of what is shown (which is deleted).
    void startOver();
    // The path of the claim's VIN photo, or empty when there is none (yet).
    QString vinPhotoPath() const;
    // Installs the process's uncaught-exception handler for as long as this host lives: a platform
    // exception nothing caught (NotEnoughFreeSpaceException while the VIN photo is saved, on the
    // capture thread) is printed on standard output as one JSON line, the given fields and
    // {"vin": the VIN read or null, "error": {"name", "reason"}}, and the process exits with
    // kUncaughtExceptionStatus.
    void reportUncaughtExceptions(const QJsonObject &fields = {});
    static constexpr int kUncaughtExceptionStatus = 4;

    // Any thread: forwarded to the GUI thread as scanned().
    void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid, const ZQTError &error) override;

Q_SIGNALS:
    void scanned(const ZqtApps::ScanResult &result);

private:
    void makeScreen();
    // Pushes the controller, or presents it with the modal option.
    void showController(ZQTPlatform::ViewController *controller);

    ScanHostOptions m_options;
    ZQTPlatform::Window m_window;
    QPointer<ZQTPlatform::NavigationController> m_navigation;
    QPointer<ZQTVINCaptureVC> m_screen;
    QPointer<ZQTPlatform::ViewController> m_replacement;
    bool m_reportsUncaught = false;
};

} // namespace ZqtApps
