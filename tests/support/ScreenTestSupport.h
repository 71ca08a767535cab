// What the tests of the capture screen share: a phone profile, a window with a navigation
// controller, a delegate that records its calls from any thread, and a recorder of the analytics
// notifications.
#pragma once

#include "ViewControllers/VinScannerVCDelegate.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Error.h"
#include "platform/ui/NavigationController.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/Window.h"

#include <QCoreApplication>
#include <QMutex>
#include <QSizeF>
#include <QThread>
#include <QVariantMap>

// A phone of that size in points with a 44-point status bar and a current system.
inline ZQTPlatform::DeviceProfile phoneProfile(const QSizeF &bounds = QSizeF(375, 812))
{
    ZQTPlatform::DeviceProfile profile;
    profile.mainScreenBounds = bounds;
    profile.interfaceIdiom = ZQTPlatform::DeviceProfile::Idiom::Phone;
    profile.statusBarHeight = 44.0;
    profile.systemVersion = QStringLiteral("16.4");
    return profile;
}

// A window of the phone's size (made current) with a navigation controller at its root.
struct PhoneHost
{
    explicit PhoneHost(const QSize &size = QSize(375, 812)) : navigation(new ZQTPlatform::NavigationController)
    {
        ZQTPlatform::DeviceProfile::setCurrent(phoneProfile(QSizeF(size)));
        window.resize(size);
        window.setRootViewController(navigation);
    }
    ZQTPlatform::Window window;
    ZQTPlatform::NavigationController *navigation;
};

// The delegate's calls, from whichever thread makes them.
struct RecordingDelegate : VinScannerVCDelegate
{
    struct Call
    {
        QString vin;
        bool scanned, valid;
        ZQTPlatform::Error error;
        bool onGuiThread;
    };
    void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid, const ZQTError &error) override
    {
        const QMutexLocker locker(&lock);
        recorded.append({VIN, isVINScanned, isVINValid, error, QThread::currentThread() == qApp->thread()});
    }
    QList<Call> calls() const
    {
        const QMutexLocker locker(&lock);
        return recorded;
    }
    void clear()
    {
        const QMutexLocker locker(&lock);
        recorded.clear();
    }

private:
    mutable QMutex lock;
    QList<Call> recorded;
};

// The "ANALYTICS_INFO" notifications posted while the object lives.
struct AnalyticsRecorder
{
    AnalyticsRecorder()
    {
        ZQTPlatform::NotificationCenter::defaultCenter().addObserver(
            this, "ANALYTICS_INFO", [this](const ZQTPlatform::Notification &n) { events << n.object.toMap(); });
    }
    ~AnalyticsRecorder() { ZQTPlatform::NotificationCenter::defaultCenter().removeObserver(this); }
    QList<QVariantMap> events;
};
