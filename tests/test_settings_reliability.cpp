// The settings store under stress: concurrent scoped writers, and a writer process killed at
// random moments. Both check what the store holds afterwards, never how long anything took.
#include "support/TemporarySettingsStore.h"

#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "platform/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <chrono>
#include <random>
#include <thread>
#include <vector>

static QString keyOf(int thread, int index)
{
    return QStringLiteral("thread%1-key%2").arg(thread).arg(index);
}

TEST(SettingsReliability, EightThreadsWritingOneClaimLoseNoUpdate)
{
    constexpr int kThreads = 8, kKeysPerThread = 500;
    const QString claim = QStringLiteral("CLM-concurrent");
    TemporarySettingsStore store;

    std::vector<std::thread> writers;
    for (int t = 0; t < kThreads; ++t) {
        writers.emplace_back([t, claim] {
            for (int i = 0; i < kKeysPerThread; ++i)
                ZQTUserDefaults::setInteger(t * kKeysPerThread + i, keyOf(t, i), claim);
        });
    }
    for (std::thread &writer : writers)
        writer.join();

    const auto expectAllValues = [&](const QVariantMap &values, const char *where) {
        SCOPED_TRACE(where);
        ASSERT_EQ(values.size(), kThreads * kKeysPerThread);
        int wrong = 0;
        for (int t = 0; t < kThreads; ++t)
            for (int i = 0; i < kKeysPerThread; ++i)
                wrong += values.value(keyOf(t, i)).toInt() != t * kKeysPerThread + i;
        EXPECT_EQ(wrong, 0);
    };
    expectAllValues(ZQTUserDefaults::getDictionaryForClaim(claim), "in memory");

    expectAllValues(store.onDisk().value("ClaimList").toMap().value(claim).toMap(), "in the file");
}

// A child writes an increasing counter, printing each value once written; after each random kill
// the file parses, the other claim is untouched, and the counter is the last reported one or the next.
TEST(SettingsReliability, AWriterKilledAtRandomMomentsLeavesTheOldOrTheNewValue)
{
    constexpr int kKills = 200;
    const QString claim = QStringLiteral("CLM-killed");
    const QString key = QStringLiteral("counter");
    TemporarySettingsStore store;
    // Other data in the file makes each write take long enough for kills to land inside it.
    QVariantMap photos;
    for (int i = 0; i < 400; ++i)
        photos.insert(QStringLiteral("photo %1").arg(i), QStringLiteral("/documents/ZQTPhotos/CLM-other/%1.jpg").arg(i));
    ZQTUserDefaults::setObject(photos, "PHOTOS_NAMES_TO_BE_SAVED", "CLM-other");
    const QVariantMap otherClaim = store.onDisk().value("ClaimList").toMap().value("CLM-other").toMap();
    ASSERT_EQ(otherClaim.value("PHOTOS_NAMES_TO_BE_SAVED").toMap().size(), 400);

    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "random seed " << seed);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delayMicroseconds(0, 15000);

    qint64 onDisk = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        QProcess writer;
        writer.start(QStringLiteral(ZQT_SETTINGS_WRITER_BINARY), {store.path(), claim, key});
        ASSERT_TRUE(writer.waitForReadyRead(30000)) << "kill " << kill;
        std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds(random)));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(30000));

        // Complete lines only: "start N" (the value it found), then each value it committed.
        QList<QByteArray> lines = writer.readAllStandardOutput().split('\n');
        lines.removeLast();
        ASSERT_FALSE(lines.isEmpty());
        ASSERT_EQ(lines.first(), "start " + QByteArray::number(onDisk)) << "kill " << kill;
        const qint64 lastReported = lines.size() > 1 ? lines.last().toLongLong() : onDisk;

        QString error;
        const QVariant root = ZQTPlatform::PropertyList::readFile(store.path(), &error);
        ASSERT_TRUE(root.isValid()) << "kill " << kill << ": " << error.toStdString();
        const QVariantMap claims = root.toMap().value("ClaimList").toMap();
        ASSERT_EQ(claims.value("CLM-other").toMap(), otherClaim) << "kill " << kill;
        const qint64 counter = claims.value(claim).toMap().value(key).toLongLong();
        ASSERT_TRUE(counter == lastReported || counter == lastReported + 1)
            << "kill " << kill << ": file holds " << counter << ", the child reported " << lastReported;
        onDisk = counter;
    }
    EXPECT_GT(onDisk, 0) << "the child never got a write done";
}
