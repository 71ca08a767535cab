// What the preferences store takes reads back equal after a restart; what it cannot keep whole is
// refused with a log line; and no file, however made, leaves the store unable to write.
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TemporarySettingsStore.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

using TestData::utc;
using ZQTPlatform::UserDefaults;

namespace {

UserDefaults &defaults()
{
    return UserDefaults::standardUserDefaults();
}

const QString kNul = QString(QChar(0));

} // namespace

TEST(SettingsValues, ReadBackEqualOrAreRefusedWithALogLine)
{
    const struct { const char *name; QVariant value; } values[] = {
        {"TextWithNul", QString("a" + kNul + "b")},
        {"KeysThatDifferAfterNul", QVariantMap{{"a" + kNul + "b", 1}, {"a" + kNul + "c", 2}}},
        {"ListWithNulText", QVariantList{"ok", kNul}},
        {"DateAfter2069", utc(2100, 1, 1, 0, 0, 0)},
        {"DateBefore1932", utc(1900, 6, 1, 12, 0, 0)},
        {"LastDateBefore2069Limit", utc(2069, 1, 19, 3, 14, 7)},
        {"FirstDateAfter1932Limit", utc(1932, 12, 13, 20, 45, 53)},
        {"FractionJustBefore2001", utc(2000, 12, 31, 23, 59, 59, 250)},
        {"FractionAfter2001", utc(2001, 1, 1, 0, 0, 0, 250)},
    };
    for (const auto &[name, value] : values) {
        SCOPED_TRACE(name);
        TemporarySettingsStore store;
        LogCapture log;
        const bool taken = defaults().setObject(value, "value");
        EXPECT_TRUE(defaults().synchronize());
        store.restart();
        if (taken) {
            EXPECT_EQ(defaults().objectForKey("value"), value);
            EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();
        } else {
            EXPECT_FALSE(defaults().objectForKey("value").isValid());
            EXPECT_EQ(log.lines().size(), 1);
        }
    }
    // A key holding U+0000 is refused the same way.
    const TemporarySettingsStore store;
    EXPECT_FALSE(defaults().setObject(1, "key" + kNul + "x"));
}

TEST(SettingsFile, WithADateNoStoreCanHoldStillTakesWrites)
{
    TemporarySettingsStore store;
    // A date of 1e300 seconds, which no writer of the store makes: the one-second date's double
    // (1.0) is patched in the binary list.
    QByteArray data = ZQTPlatform::PropertyList::toData(QVariantMap{{"kept", "yes"}, {"when", utc(2001, 1, 1, 0, 0, 1)}},
                                                        ZQTPlatform::PropertyList::Format::Binary);
    const QByteArray one = QByteArray::fromHex("333ff0000000000000");
    ASSERT_EQ(data.count(one), 1);
    data.replace(one, QByteArray::fromHex("337e37e43c8800759c"));
    writeTestFile(store.path(), data);

    EXPECT_TRUE(defaults().setObject("later", "write"));
    EXPECT_TRUE(defaults().synchronize());
    EXPECT_EQ(store.onDisk(), (QVariantMap{{"write", "later"}}));
}
