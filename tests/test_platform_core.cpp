// Platform stand-ins without pictures: the notification centre, the main and global queues,
// the system version of the device profile, bundles and fonts by exact name.
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DeviceProfile.h"
#include "platform/foundation/Dispatch.h"
#include "platform/ui/Font.h"
#include "platform/foundation/NotificationCenter.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFontInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

using namespace ZQTPlatform;

TEST(NotificationCenterPosting, MatchingObserversAreCalledInOrderWithThePayloadUntilRemoved)
{
    NotificationCenter center;
    QStringList calls;
    int first = 0, second = 0, everything = 0, other = 0;
    center.addObserver(&first, "SAVE", [&](const Notification &n) {
        calls << "first:" + n.name + ":" + n.object.toString() + ":" + n.userInfo.value("title").toString();
    });
    center.addObserver(&everything, QString(), [&](const Notification &) { calls << "everything"; });
    center.addObserver(&second, "SAVE", [&](const Notification &) { calls << "second"; });
    center.addObserver(&second, "OTHER", [&](const Notification &) { calls << "second:other"; });
    center.addObserver(&other, "OTHER", [&](const Notification &) { calls << "other"; });
    center.postNotificationName("SAVE", "claim-1", {{"title", "VIN"}});
    EXPECT_EQ(calls, (QStringList{"first:SAVE:claim-1:VIN", "everything", "second"}));

    calls.clear();
    center.removeObserver(&second, "SAVE");
    center.removeObserver(&everything);
    center.postNotificationName("SAVE");
    center.postNotificationName("OTHER");
    EXPECT_EQ(calls, (QStringList{"first:SAVE::", "second:other", "other"}));
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
    EXPECT_EQ(removedCalls, 0) << "removed before its turn came";
    EXPECT_EQ(addedCalls, 0) << "added during the post: waits for the next one";
    center.postNotificationName("N");
    EXPECT_EQ(addedCalls, 1);
}

TEST(NotificationCenterPosting, ManyThreadsObserveAndPostAtOnce)
{
    NotificationCenter center;
    constexpr int kThreads = 6, kPosts = 500;
    std::atomic<int> wildcardCalls{0}, ownCalls{0};
    int wildcard = 0;
    center.addObserver(&wildcard, QString(), [&](const Notification &) { ++wildcardCalls; });
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            const QString name = QStringLiteral("T%1").arg(t);
            int own = 0;
            center.addObserver(&own, name, [&](const Notification &) { ++ownCalls; });
            for (int i = 0; i < kPosts; ++i) {
                center.postNotificationName(name);
                int transient = 0; // registered and removed while the others post
                center.addObserver(&transient, name, [](const Notification &) {});
                center.removeObserver(&transient);
            }
            center.removeObserver(&own);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(ownCalls.load(), kThreads * kPosts) << "each observer sees its own posts only";
    EXPECT_EQ(wildcardCalls.load(), kThreads * kPosts);
}

TEST(DispatchQueues, MainAsyncAndMainAfterRunOnALaterTurnInOrder)
{
    QElapsedTimer clock;
    clock.start();
    QStringList runs;
    qint64 lateAt = -1;
    Dispatch::mainAfter(0.15, [&] { runs << "late"; lateAt = clock.elapsed(); });
    Dispatch::mainAfter(0.03, [&] { runs << "early"; });
    Dispatch::mainAsync([&] { runs << "one"; });
    Dispatch::mainAsync([&] { runs << "two"; });
    EXPECT_TRUE(runs.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs.size() == 4; }, 3000));
    EXPECT_EQ(runs, (QStringList{"one", "two", "early", "late"}));
    EXPECT_GE(lateAt, 140);
}

TEST(DispatchQueues, OnMainRunsAtOnceOnTheGuiThreadAndIsQueuedFromAWorker)
{
    bool ranAtOnce = false;
    Dispatch::onMain([&] { ranAtOnce = true; });
    EXPECT_TRUE(ranAtOnce);

    std::atomic<bool> ran{false}, ranBeforeWorkerReturned{false};
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

    // Global work runs off the GUI thread and may schedule delayed work back onto it.
    std::atomic<bool> offMain{false}, delayedRanOnMain{false};
    Dispatch::globalAsync([&] {
        offMain = !Dispatch::isMainThread();
        Dispatch::mainAfter(0.01, [&] { delayedRanOnMain = Dispatch::isMainThread(); });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return delayedRanOnMain.load(); }, 3000));
    EXPECT_TRUE(offMain);
}

TEST(DeviceProfileTest, SystemVersionReadsAsAFloat)
{
    DeviceProfile profile;
    for (const auto &[text, value] : {std::pair<QString, float>{"8.0", 8.0f}, {"16.4.1", 16.4f}, {" 12", 12.0f},
                                      {"7.1beta", 7.1f}, {"", 0.0f}, {"abc", 0.0f}}) {
        profile.systemVersion = text;
        EXPECT_FLOAT_EQ(profile.systemVersionValue(), value) << text.toStdString();
    }
}

// The framework bundle and folder lookups are exercised by the configuration and image tests.
TEST(Bundles, ResourceNamesMayCarryTheirExtensionAndAreNotSearchedForInSubFolders)
{
    EXPECT_EQ(Bundle::mainBundle().bundlePath(), QCoreApplication::applicationDirPath()) << "the default main bundle";
    QTemporaryDir dir;
    const QString flash = writeTestFile(dir.filePath("ZQTMedia.bundle/icons/flash.png"), QByteArray());
    const Bundle bundle = Bundle::bundleWithPath(dir.path());
    EXPECT_EQ(bundle.pathForResource("ZQTMedia.bundle/icons/flash", "png"), flash);
    EXPECT_EQ(bundle.pathForResource("ZQTMedia.bundle/icons/flash.png", QString()), flash);
    EXPECT_TRUE(bundle.pathForResource("flash", "png").isEmpty());
    EXPECT_TRUE(bundle.pathForResource(QString(), QString()).isEmpty());
    EXPECT_TRUE(Bundle::bundleWithPath(flash).isNull()) << "a file is no bundle";
    EXPECT_TRUE(Bundle().pathForResource("ZQTMedia", "bundle").isEmpty());
}

// Fonts by PostScript name are exercised by the configuration and label tests.
TEST(FontsByName, FullNamesFindTheFaceAtWholePixelSizesAndNearMissesFindNothing)
{
    const std::optional<QFont> byFullName = Font::fontWithName("Liberation Sans Bold", 17.6);
    ASSERT_TRUE(byFullName);
    EXPECT_EQ(QFontInfo(*byFullName).family(), "Liberation Sans");
    EXPECT_TRUE(QFontInfo(*byFullName).bold());
    EXPECT_EQ(byFullName->pixelSize(), 18);
    EXPECT_EQ(Font::fontWithName("DejaVuSans", 0.2)->pixelSize(), 1);
    EXPECT_EQ(Font::systemFontOfSize(13.0).pixelSize(), 13);
    for (const char *name : {"Helvetica-Bold-NoSuch", "DejaVuSans-Bol", "(null)", ""})
        EXPECT_FALSE(Font::fontWithName(name, 10.0)) << name;
}
