// Several processes writing one preferences file at once, each its own key of one claim (the way
// a host app and zqt-vin settings share a file): every update of every writer reaches the file.
#include "platform/foundation/UserDefaults.h"
#include "support/TemporarySettingsStore.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <memory>
#include <vector>

TEST(SettingsManyWriters, EightWritersLoseNoUpdate)
{
    constexpr int kWriters = 8, kUpdatesPerWriter = 50;
    TemporarySettingsStore store;
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < kWriters; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->start(QStringLiteral(ZQT_SETTINGS_WRITER_BINARY),
                              {store.path(), "claim", QStringLiteral("writer%1").arg(i), QString::number(kUpdatesPerWriter)});
    }
    for (const auto &writer : writers) {
        ASSERT_TRUE(writer->waitForFinished(90000));
        EXPECT_EQ(writer->exitCode(), 0);
    }
    const QVariantMap claim = store.onDisk().value("ClaimList").toMap().value("claim").toMap();
    EXPECT_EQ(claim.size(), kWriters);
    for (int i = 0; i < kWriters; ++i)
        EXPECT_EQ(claim.value(QStringLiteral("writer%1").arg(i)).toLongLong(), kUpdatesPerWriter) << "writer " << i;
}

TEST(SettingsOtherProcess, UpdatesMadeHereLandOnItsFile)
{
    TemporarySettingsStore store;
    auto &defaults = ZQTPlatform::UserDefaults::standardUserDefaults();
    defaults.setObject("mine", "here");
    ASSERT_TRUE(defaults.synchronize());
    // Another process writes the file after this one read it.
    QProcess other;
    other.start(QStringLiteral(ZQT_SETTINGS_WRITER_BINARY), {store.path(), "claim", "count", "3"});
    ASSERT_TRUE(other.waitForFinished(30000));

    defaults.update("list", [](const QVariant &list) { return QVariant(list.toList() << "item"); });
    defaults.setObject("again", "here");
    ASSERT_TRUE(defaults.synchronize());
    const QVariantMap expected{{"here", "again"},
                               {"list", QVariantList{"item"}},
                               {"ClaimList", QVariantMap{{"claim", QVariantMap{{"count", qint64(3)}}}}}};
    EXPECT_EQ(store.onDisk(), expected);
    // What the other process wrote is now read from memory too.
    EXPECT_EQ(defaults.dictionaryRepresentation(), expected);
}
