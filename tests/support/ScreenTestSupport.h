// What the tests of the capture screen share: a phone profile, a window with a navigation
// controller, pushing a screen and waiting for its start-up, a camera stand-in of one colour, a
// delegate that records its calls from any thread, a recorder of the analytics notifications, and
// the fixture of a test that runs one screen on such a window.
#pragma once

#include "ZQTVINScanComponent.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Error.h"
#include "platform/ui/NavigationController.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/Window.h"
#include "support/LogCapture.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMutex>
#include <QPointer>
#include <QSizeF>
#include <QTest>
#include <QThread>
#include <QVariantMap>

// A VIN whose check digit is right, as the screens' tests read, type and report it.
inline const QString validVin = QStringLiteral("1HGCM82633A004352");

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

// How many capture screens have ended their start-up so far: with the scanner or the manual prompt.
inline qsizetype startUps(const LogCapture &log)
{
    const QStringList steps = log.steps();
    return steps.count(QStringLiteral("startBarCodeScanner")) + steps.count(QStringLiteral("promptForVin"));
}

// Pushes the screen on the host's stack, shows the window and waits for the end of its start-up.
inline ZQTVINCaptureVC *pushAndWait(PhoneHost &host, ZQTVINCaptureVC *screen, const LogCapture &log)
{
    const qsizetype before = startUps(log);
    host.navigation->pushViewController(screen, false);
    host.window.makeKeyAndVisible();
    EXPECT_TRUE(QTest::qWaitFor([&] { return startUps(log) > before; }, 5000)) << "the screen did not start up";
    return screen;
}

// A camera stand-in showing a 640 x 480 picture of one colour.
inline ZQTPlatform::CaptureDevice *addFlatCamera(const QColor &colour)
{
    return ZQTPlatform::CaptureDevice::addStandIn(TestData::filled(640, 480, colour));
}

// A colour of the configuration.
inline QColor configuredColour(const char *key)
{
    return ZQTVINScanComponentConstants::getGlobalColorForKey(QLatin1String(key));
}

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

// A test that runs one capture screen on a phone host with a recording delegate; the screen and
// the camera stand-ins go at its end.
class ScreenSessionTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        delete screen.data();
        ZQTPlatform::CaptureDevice::removeStandIns();
    }

    LogCapture capture;
    RecordingDelegate delegate;
    PhoneHost host;
    QPointer<ZQTVINCaptureVC> screen;
};
