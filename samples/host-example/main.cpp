// A host application: shows the VIN capture screen for one claim on a navigation stack and prints
// the VIN it reports. An optional argument names a video or picture file that stands in for the
// camera (for example the installed share/ZQTVINScanComponent/samples/vin-label-code39.webm).
#include <ZQTVINScanComponent.h>
#include <platform/capture/CaptureDevice.h>
#include <platform/ui/NavigationController.h>
#include <platform/ui/Window.h>

#include <QApplication>
#include <QTextStream>

// Gets the screen's report. The barcode path calls it on a capture thread and the manual prompt
// on the GUI thread, so it hops to the GUI thread before it touches anything there.
class ClaimFlow : public QObject, public VinScannerVCDelegate
{
public:
    void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid,
                             const ZQTError &error) override
    {
        QMetaObject::invokeMethod(this, [=] {
            QTextStream(stdout) << VIN << (isVINScanned ? " scanned" : " typed")
                                << (isVINValid ? " valid" : " invalid")
                                << (error.isNull() ? QString() : " " + error.localizedDescription()) << Qt::endl;
            // The screen never closes itself; this host is done after one VIN.
            QApplication::quit();
        }, Qt::QueuedConnection);
    }
};

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc > 1 && !ZQTPlatform::CaptureDevice::addStandIn(QString::fromLocal8Bit(argv[1]))) {
        QTextStream(stderr) << "cannot play " << argv[1] << Qt::endl;
        return 2;
    }

    // The delegate is held by a plain pointer: it must outlive the screen, so it is made before
    // the window (locals are destroyed in reverse order).
    ClaimFlow flow;
    // The window owns its root view controller, here a navigation controller; the navigation
    // controller owns every screen pushed on it.
    ZQTPlatform::Window window;
    auto *navigation = new ZQTPlatform::NavigationController;
    window.setRootViewController(navigation);
    window.resize(375, 812);
    window.makeKeyAndVisible();

    ZQTVINCaptureVC *screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(&flow, QStringLiteral("CLAIM-1"));
    navigation->pushViewController(screen, true);
    return app.exec();
}
