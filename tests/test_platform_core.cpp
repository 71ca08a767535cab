// Platform stand-ins without pictures: the notification centre while observers change and
// threads post, and the main and global queues. Observing and posting themselves, bundles, fonts
// and the system version are exercised through the capture screen, configuration and image tests.
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/NotificationCenter.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

using namespace ZQTPlatform;

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
