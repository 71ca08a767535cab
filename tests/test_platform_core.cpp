// Platform stand-ins without pictures: the notification centre while observers change, and the
// main and global queues. Observing and posting themselves, bundles, fonts
// and the system version are exercised through the capture screen, configuration and image tests.
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/NotificationCenter.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

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
