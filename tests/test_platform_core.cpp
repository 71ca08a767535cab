// Platform stand-ins without pictures: the notification centre, the main and global queues,
// the device profile, bundles and fonts by exact name.
#include "platform/Bundle.h"
#include "platform/DeviceProfile.h"
#include "platform/Dispatch.h"
#include "platform/Font.h"
#include "platform/NotificationCenter.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

using namespace ZQTPlatform;

// --- notification centre ----------------------------------------------------------------------

TEST(NotificationCenterPosting, MatchingObserversAreCalledInOrderWithThePayload)
{
    NotificationCenter center;
    QStringList calls;
    int first = 0, second = 0, everything = 0, other = 0;
    center.addObserver(&first, "SAVE_IMAGE_COMPLETED", [&](const Notification &n) {
        calls << "first";
        EXPECT_EQ(n.name, "SAVE_IMAGE_COMPLETED");
        EXPECT_EQ(n.object.toString(), "claim-1");
        EXPECT_EQ(n.userInfo.value("title").toString(), "VIN");
    });
    center.addObserver(&everything, QString(), [&](const Notification &) { calls << "everything"; });
    center.addObserver(&second, "SAVE_IMAGE_COMPLETED", [&](const Notification &) { calls << "second"; });
    center.addObserver(&other, "ANALYTICS_INFO", [&](const Notification &) { calls << "other"; });

    center.postNotificationName("SAVE_IMAGE_COMPLETED", "claim-1", {{"title", "VIN"}});
    EXPECT_EQ(calls, (QStringList{"first", "everything", "second"}));
}

TEST(NotificationCenterPosting, RemovalByNameOrEntirely)
{
    NotificationCenter center;
    int observer = 0;
    int a = 0, b = 0;
    center.addObserver(&observer, "A", [&](const Notification &) { ++a; });
    center.addObserver(&observer, "B", [&](const Notification &) { ++b; });
    center.removeObserver(&observer, "A");
    center.postNotificationName("A");
    center.postNotificationName("B");
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 1);
    center.removeObserver(&observer);
    center.postNotificationName("B");
    EXPECT_EQ(b, 1);
}

TEST(NotificationCenterPosting, HandlersMayAddAndRemoveObserversWhilePosting)
{
    NotificationCenter center;
    int remover = 0, removed = 0, adder = 0, added = 0;
    int removedCalls = 0, addedCalls = 0;
    center.addObserver(&remover, "N", [&](const Notification &) { center.removeObserver(&removed); });
    center.addObserver(&removed, "N", [&](const Notification &) { ++removedCalls; });
    center.addObserver(&adder, "N", [&](const Notification &) {
        center.addObserver(&added, "N", [&](const Notification &) { ++addedCalls; });
        center.removeObserver(&adder);
    });

    center.postNotificationName("N");
    EXPECT_EQ(removedCalls, 0); // removed before its turn came
    EXPECT_EQ(addedCalls, 0);   // added during the post: waits for the next one
    center.postNotificationName("N");
    EXPECT_EQ(addedCalls, 1);
}

TEST(NotificationCenterPosting, ManyThreadsObserveAndPostAtOnce)
{
    NotificationCenter center;
    constexpr int kThreads = 6;
    constexpr int kPosts = 500;
    std::atomic<int> wildcardCalls{0};
    int wildcard = 0;
    center.addObserver(&wildcard, QString(), [&](const Notification &) { ++wildcardCalls; });

    std::vector<int> ownCalls(kThreads, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            const QString name = QStringLiteral("T%1").arg(t);
            center.addObserver(&ownCalls[size_t(t)], name, [&, t](const Notification &) { ++ownCalls[size_t(t)]; });
            for (int i = 0; i < kPosts; ++i) {
                center.postNotificationName(name);
                int transient = 0; // registered and removed while the others post
                center.addObserver(&transient, name, [](const Notification &) {});
                center.removeObserver(&transient);
            }
            center.removeObserver(&ownCalls[size_t(t)]);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(ownCalls[size_t(t)], kPosts);
    EXPECT_EQ(wildcardCalls.load(), kThreads * kPosts);
}

// --- main and global queues ---------------------------------------------------------------------

TEST(DispatchQueues, MainAsyncRunsOnALaterTurnInOrder)
{
    QStringList runs;
    Dispatch::mainAsync([&] { runs << "one"; });
    Dispatch::mainAsync([&] { runs << "two"; });
    EXPECT_TRUE(runs.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs.size() == 2; }, 2000));
    EXPECT_EQ(runs, (QStringList{"one", "two"}));
}

TEST(DispatchQueues, OnMainRunsAtOnceOnTheGuiThreadAndIsQueuedFromAWorker)
{
    bool ranAtOnce = false;
    Dispatch::onMain([&] { ranAtOnce = true; });
    EXPECT_TRUE(ranAtOnce);

    std::atomic<bool> ran{false};
    std::atomic<bool> ranBeforeWorkerReturned{false};
    QThread *ranOn = nullptr;
    std::thread worker([&] {
        EXPECT_FALSE(Dispatch::isMainThread());
        Dispatch::onMain([&] {
            ranOn = QThread::currentThread();
            ran = true;
        });
        // The GUI thread is blocked in join(), so the work cannot have run yet.
        ranBeforeWorkerReturned = ran.load();
    });
    worker.join();
    EXPECT_FALSE(ranBeforeWorkerReturned);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ran.load(); }, 2000));
    EXPECT_EQ(ranOn, QCoreApplication::instance()->thread());
    EXPECT_TRUE(Dispatch::isMainThread());
}

TEST(DispatchQueues, MainAfterWaitsForTheDelayAndKeepsDeadlineOrder)
{
    QElapsedTimer clock;
    clock.start();
    QStringList runs;
    qint64 lateAt = -1;
    Dispatch::mainAfter(0.15, [&] { runs << "late"; lateAt = clock.elapsed(); });
    Dispatch::mainAfter(0.03, [&] { runs << "early"; });
    QCoreApplication::processEvents();
    EXPECT_TRUE(runs.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs.size() == 2; }, 3000));
    EXPECT_EQ(runs, (QStringList{"early", "late"}));
    EXPECT_GE(lateAt, 140);
}

TEST(DispatchQueues, GlobalWorkRunsOffTheGuiThreadAndCanScheduleDelayedMainWork)
{
    std::atomic<bool> offMain{false};
    std::atomic<bool> delayedRanOnMain{false};
    Dispatch::globalAsync([&] {
        offMain = !Dispatch::isMainThread();
        Dispatch::mainAfter(0.01, [&] { delayedRanOnMain = Dispatch::isMainThread(); });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return delayedRanOnMain.load(); }, 3000));
    EXPECT_TRUE(offMain);
}

// --- device profile -------------------------------------------------------------------------------

class DeviceProfileTest : public ::testing::Test
{
protected:
    void TearDown() override { DeviceProfile::resetToScreen(); }
};

TEST_F(DeviceProfileTest, SystemVersionReadsAsAFloat)
{
    DeviceProfile profile;
    const QList<std::pair<QString, float>> cases = {
        {"8.0", 8.0f}, {"16.4.1", 16.4f}, {" 12", 12.0f}, {"7.1beta", 7.1f}, {"", 0.0f}, {"abc", 0.0f}};
    for (const auto &[text, value] : cases) {
        profile.systemVersion = text;
        EXPECT_FLOAT_EQ(profile.systemVersionValue(), value) << text.toStdString();
    }
}

TEST_F(DeviceProfileTest, TheDefaultIsThePrimaryScreenAndTheSystemVersion)
{
    const DeviceProfile profile = DeviceProfile::current();
    EXPECT_EQ(profile.mainScreenBounds, QSizeF(QGuiApplication::primaryScreen()->size()));
    EXPECT_EQ(profile.systemVersion, QSysInfo::productVersion());
    EXPECT_EQ(profile.interfaceIdiom, DeviceProfile::Idiom::Unspecified);
    EXPECT_EQ(profile.deviceOrientation, 1);
}

TEST_F(DeviceProfileTest, AChosenProfileAndTheDeviceStateLastUntilReset)
{
    DeviceProfile phone;
    phone.name = "iPhone X";
    phone.mainScreenBounds = QSizeF(375, 812);
    phone.interfaceIdiom = DeviceProfile::Idiom::Phone;
    phone.statusBarHeight = 44;
    phone.systemVersion = "16.4";
    DeviceProfile::setCurrent(phone);
    DeviceProfile::setDeviceOrientation(3);
    DeviceProfile::setStatusBarHidden(true);

    const DeviceProfile now = DeviceProfile::current();
    EXPECT_EQ(now.name, "iPhone X");
    EXPECT_EQ(now.mainScreenBounds, QSizeF(375, 812));
    EXPECT_EQ(now.interfaceIdiom, DeviceProfile::Idiom::Phone);
    EXPECT_EQ(now.statusBarHeight, 44);
    EXPECT_EQ(now.deviceOrientation, 3);
    EXPECT_TRUE(now.statusBarHidden);

    DeviceProfile::resetToScreen();
    EXPECT_EQ(DeviceProfile::current().deviceOrientation, 1);
    EXPECT_FALSE(DeviceProfile::current().statusBarHidden);
    EXPECT_EQ(DeviceProfile::current().systemVersion, QSysInfo::productVersion());
}

// --- bundles ----------------------------------------------------------------------------------------

TEST(Bundles, TheFrameworkBundleHoldsItsConfiguration)
{
    const Bundle framework = Bundle::frameworkBundle();
    EXPECT_FALSE(framework.isNull());
    EXPECT_FALSE(framework.pathForResource("ZQTConfig", "plist").isEmpty());
    EXPECT_TRUE(framework.pathForResource("NoSuchFile", "plist").isEmpty());
    EXPECT_NE(framework, Bundle::mainBundle());
}

TEST(Bundles, PathsForFilesAndFoldersThatExistOnly)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkpath("ZQTMedia.bundle/icons");
    QFile file(dir.filePath("ZQTMedia.bundle/icons/flash.png"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    const Bundle bundle = Bundle::bundleWithPath(dir.path());
    ASSERT_FALSE(bundle.isNull());
    EXPECT_EQ(bundle.pathForResource("ZQTMedia", "bundle"), dir.filePath("ZQTMedia.bundle"));
    EXPECT_EQ(bundle.pathForResource("ZQTMedia.bundle/icons/flash", "png"), file.fileName());
    EXPECT_EQ(bundle.pathForResource("ZQTMedia.bundle/icons/flash.png", QString()), file.fileName());
    EXPECT_TRUE(bundle.pathForResource("flash", "png").isEmpty());
    EXPECT_TRUE(bundle.pathForResource(QString(), QString()).isEmpty());

    EXPECT_TRUE(Bundle::bundleWithPath(dir.filePath("missing")).isNull());
    EXPECT_TRUE(Bundle::bundleWithPath(file.fileName()).isNull());
    EXPECT_TRUE(Bundle().pathForResource("ZQTMedia", "bundle").isEmpty());
}

TEST(Bundles, TheMainBundleIsChosenByTheHostAndDefaultsBesideTheExecutable)
{
    EXPECT_EQ(Bundle::mainBundle().bundlePath(), QCoreApplication::applicationDirPath());
    QTemporaryDir dir;
    Bundle::setMainBundlePath(dir.path());
    EXPECT_EQ(Bundle::mainBundle().bundlePath(), dir.path());
    Bundle::setMainBundlePath(QString());
    EXPECT_EQ(Bundle::mainBundle().bundlePath(), QCoreApplication::applicationDirPath());
}

// --- fonts by exact name ----------------------------------------------------------------------------

TEST(FontsByName, PostScriptAndFullNamesFindTheInstalledFace)
{
    const std::optional<QFont> bold = Font::fontWithName("DejaVuSans-Bold", 18.0);
    ASSERT_TRUE(bold);
    EXPECT_EQ(bold->pixelSize(), 18);
    const QFontInfo boldInfo(*bold);
    EXPECT_EQ(boldInfo.family(), "DejaVu Sans");
    EXPECT_TRUE(boldInfo.bold());

    const std::optional<QFont> regular = Font::fontWithName("LiberationSans", 10.0);
    ASSERT_TRUE(regular);
    EXPECT_EQ(QFontInfo(*regular).family(), "Liberation Sans");
    EXPECT_FALSE(QFontInfo(*regular).bold());

    const std::optional<QFont> byFullName = Font::fontWithName("Liberation Sans Bold", 10.0);
    ASSERT_TRUE(byFullName);
    EXPECT_TRUE(QFontInfo(*byFullName).bold());
}

TEST(FontsByName, UnknownAndNearMissNamesFindNothing)
{
    EXPECT_FALSE(Font::fontWithName("Helvetica-Bold-NoSuch", 10.0));
    EXPECT_FALSE(Font::fontWithName("DejaVuSans-Bol", 10.0));
    EXPECT_FALSE(Font::fontWithName("(null)", 10.0));
    EXPECT_FALSE(Font::fontWithName(QString(), 10.0));
}

TEST(FontsByName, SizesArePixelSizesRoundedToWholePixels)
{
    EXPECT_EQ(Font::fontWithName("DejaVuSans", 17.6)->pixelSize(), 18);
    EXPECT_EQ(Font::fontWithName("DejaVuSans", 0.2)->pixelSize(), 1);
    EXPECT_EQ(Font::systemFontOfSize(13.0).pixelSize(), 13);
}
