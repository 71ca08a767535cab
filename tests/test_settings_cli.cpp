// zqt-vin settings, run as a separate process per call the way scripts use it: every call
// reads the store file anew, so each check also covers persistence across processes.
#include "support/TemporarySettingsStore.h"
#include "support/ZqtVinRun.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace {

// zqt-vin settings ACTION --store STORE ARGS...
ZqtVinRun settingsIn(const QString &storePath, QStringList args)
{
    args.insert(qMin(args.size(), qsizetype(1)), QStringLiteral("--store"));
    args.insert(qMin(args.size(), qsizetype(2)), storePath);
    args.prepend(QStringLiteral("settings"));
    return runZqtVin(args);
}

} // namespace

TEST(ZqtVinSettings, ValuesAreReadAndPrintedAsJsonWithClaimsTopLevelRemovalAndExitStatuses)
{
    const TemporarySettingsStore store;
    const auto settings = [&store](const QStringList &args) { return settingsIn(store.path(), args); };
    const struct { const char *value, *printed; QMetaType::Type stored; } cases[] = {
        {"12", "12", QMetaType::LongLong},
        {"2.5", "2.5", QMetaType::Double},
        {"{\"b\": {\"c\": 1}, \"a\": [2.5]}", "{\"a\":[2.5],\"b\":{\"c\":1}}", QMetaType::QVariantMap},
        {"\"12\"", "\"12\"", QMetaType::QString},
        {"12 apples", "\"12 apples\"", QMetaType::QString},
        {"", "\"\"", QMetaType::QString},
        {"Grüße \"quoted\"", "\"Grüße \\\"quoted\\\"\"", QMetaType::QString},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.value);
        const ZqtVinRun set = settings({"set", "--claim", "CLM-1", "key", QString::fromUtf8(c.value)});
        ASSERT_EQ(set.status, 0) << set.err.toStdString();
        const QVariant stored = store.onDisk().value("ClaimList").toMap().value("CLM-1").toMap().value("key");
        EXPECT_EQ(stored.typeId(), int(c.stored));
        const ZqtVinRun get = settings({"get", "--claim", "CLM-1", "key"});
        EXPECT_EQ(get.status, 0);
        EXPECT_EQ(get.out, QString::fromUtf8(c.printed) + "\n");
    }

    // Claims, the top level, removal and exit statuses.
    ASSERT_EQ(settings({"clear", "--claim", "CLM-1"}).status, 0);
    ASSERT_EQ(settings({"set", "--claim", "CLM-1", "SAVE_IMAGE_COMPLETED", "true"}).status, 0);
    ASSERT_EQ(settings({"set", "--claim", "CLM-2", "SAVE_IMAGE_COMPLETED", "false"}).status, 0);
    ASSERT_EQ(settings({"set", "note", "top"}).status, 0);

    const ZqtVinRun missing = settings({"get", "--claim", "CLM-1", "absent"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "null\n");
    EXPECT_EQ(settings({"get", "note"}).out, "\"top\"\n");
    EXPECT_EQ(settings({"get", "--claim", "CLM-3"}).out, "{}\n");
    EXPECT_EQ(settings({"get"}).out,
              "{\"ClaimList\":{\"CLM-1\":{\"SAVE_IMAGE_COMPLETED\":true},\"CLM-2\":{\"SAVE_IMAGE_COMPLETED\":false}},"
              "\"note\":\"top\"}\n");

    // JSON null is nil: the key goes, the claim stays.
    EXPECT_EQ(settings({"set", "--claim", "CLM-1", "SAVE_IMAGE_COMPLETED", "null"}).status, 0);
    EXPECT_EQ(settings({"get", "--claim", "CLM-1"}).out, "{}\n");
    EXPECT_EQ(settings({"clear", "--claim", "CLM-1"}).status, 0);
    EXPECT_EQ(settings({"remove", "note"}).status, 0);
    EXPECT_EQ(settings({"get"}).out, "{\"ClaimList\":{\"CLM-2\":{\"SAVE_IMAGE_COMPLETED\":false}}}\n");

    // Usage errors of their own (the others: test_command_line_manners.cpp).
    const QList<QStringList> usageErrors{{"frobnicate"}, {"get", "--verbose"}, {"get", "--claim"}, {"set", "key", "[1, null]"}};
    for (const QStringList &args : usageErrors) {
        SCOPED_TRACE(args.join(' ').toStdString());
        const ZqtVinRun run = settings(args);
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.err.contains("usage: zqt-vin settings"));
    }

    // The store's folder cannot be made: the value never reaches a file.
    const QString blocked = QDir(store.folder()).filePath("blocked");
    QFile blocker(blocked);
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const ZqtVinRun failed = settingsIn(blocked + "/app.plist", {"set", "--claim", "CLM-1", "key", "1"});
    EXPECT_EQ(failed.status, 3);
    EXPECT_TRUE(failed.err.contains(blocked + "/app.plist"));
}
