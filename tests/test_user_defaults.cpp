// Per-claim settings over the standard preferences store: the "ClaimList" layout on disk, the
// nil rules, persistence across a restart, refused values and damaged store files.
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TemporarySettingsStore.h"

#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPoint>

namespace {

using U = ZQTUserDefaults;

const QString kClaim = QStringLiteral("CLM-1001");
const QString kOtherClaim = QStringLiteral("CLM-2002");
const QString kNil; // a nil claim id

class ZQTUserDefaultsTest : public ::testing::Test
{
protected:
    QVariantMap claimListOnDisk() const { return store.onDisk().value("ClaimList").toMap(); }
    QVariantMap claimOnDisk(const QString &claimID) const { return claimListOnDisk().value(claimID).toMap(); }

    TemporarySettingsStore store;
};

} // namespace

TEST_F(ZQTUserDefaultsTest, ScopedValuesOfEveryKindAreFlushedUnderClaimListAndSurviveARestartAndOthersAreRefusedAndLogged)
{
    const QDateTime when = QDateTime(QDate(2024, 5, 17), QTime(9, 30, 12, 250), Qt::UTC);
    const QVariantMap photos{{"VIN", true}, {"Front", false}};
    // Each setter the component calls (not the integer, float and double ones) flushes at once:
    // the file already holds the value, under ClaimList / claim id.
    const auto typeOnDisk = [this](const char *key) { return QMetaType::Type(claimOnDisk(kClaim).value(key).typeId()); };
    U::setBool(true, "SAVE_IMAGE_COMPLETED", kClaim);
    EXPECT_EQ(typeOnDisk("SAVE_IMAGE_COMPLETED"), QMetaType::Bool);
    U::setObject(photos, "PHOTOS_NAMES_TO_BE_SAVED", kClaim);
    EXPECT_EQ(typeOnDisk("PHOTOS_NAMES_TO_BE_SAVED"), QMetaType::QVariantMap);
    U::setObjectForKeyWithClaimID(when, "date", kClaim);
    EXPECT_EQ(typeOnDisk("date"), QMetaType::QDateTime);
    EXPECT_EQ(store.onDisk().keys(), QStringList{"ClaimList"}) << "scoped values stay out of the top level";
    EXPECT_EQ(claimListOnDisk().keys(), QStringList{kClaim});
    EXPECT_EQ(U::getDictionaryForClaim(kClaim).size(), 3);

    for (const char *moment : {"as written", "after a restart"}) {
        SCOPED_TRACE(moment);
        EXPECT_TRUE(U::boolForKey("SAVE_IMAGE_COMPLETED", kClaim));
        EXPECT_EQ(U::objectForKey("PHOTOS_NAMES_TO_BE_SAVED", kClaim), QVariant(photos));
        EXPECT_EQ(U::objectForKey("date", kClaim).toDateTime(), when);
        store.restart();
    }

    // Values that are not property lists are refused and logged.
    U::setObject("old", "key", kClaim);
    U::setObject("old", "key");
    const QVariantMap before = store.onDisk();
    const QList<QPair<const char *, QVariant>> refused{
        {"a point", QPoint(1, 2)},
        {"a dictionary holding a null", QVariantMap{{"a", QVariant::fromValue(nullptr)}}},
    };
    for (const auto &[name, value] : refused) {
        SCOPED_TRACE(name);
        LogCapture log;
        U::setObject(value, "key", kClaim);
        U::setObject(value, "key");
        U::setObject(value, "key", kNil);
        EXPECT_EQ(log.lines().size(), 3);
        for (const QString &line : log.lines())
            EXPECT_TRUE(line.contains("\"key\"") && line.contains("not a property-list type")) << line.toStdString();
        EXPECT_EQ(U::objectForKey("key", kClaim).toString(), "old");
        EXPECT_EQ(U::objectForKey("key").toString(), "old");
        EXPECT_EQ(store.onDisk(), before);
    }
}

TEST_F(ZQTUserDefaultsTest, ReadsNeverCreateClaimsAndClaimsKeepSeparateValuesAndClearingOneLeavesTheOthers)
{
    U::setBool(false, "SAVE_IMAGE_COMPLETED", kOtherClaim);
    EXPECT_EQ(U::integerForKey("SAVE_IMAGE_COMPLETED", kClaim), 0);
    EXPECT_FALSE(U::boolForKey("SAVE_IMAGE_COMPLETED", kClaim));
    EXPECT_FALSE(U::getObjectForKey("x", kClaim).isValid());
    EXPECT_TRUE(U::getDictionaryForClaim(kClaim).isEmpty());
    EXPECT_EQ(U::getAllClaimsDictionary().keys(), QStringList{kOtherClaim});
    EXPECT_EQ(claimListOnDisk().keys(), QStringList{kOtherClaim});

    U::setBool(true, "SAVE_IMAGE_COMPLETED", kClaim);
    U::setInteger(3, "count", kOtherClaim);
    U::setObject("top-level value", kClaim); // a top-level key spelled like the claim id
    EXPECT_TRUE(U::boolForKey("SAVE_IMAGE_COMPLETED", kClaim));
    EXPECT_FALSE(U::boolForKey("SAVE_IMAGE_COMPLETED", kOtherClaim));

    U::clearUserDefaultsForClaimID(kClaim);
    EXPECT_EQ(claimListOnDisk().keys(), QStringList{kOtherClaim});
    EXPECT_EQ(claimOnDisk(kOtherClaim), (QVariantMap{{"SAVE_IMAGE_COMPLETED", false}, {"count", 3}}));
    EXPECT_EQ(store.onDisk().value(kClaim).toString(), "top-level value");
    EXPECT_FALSE(U::boolForKey("SAVE_IMAGE_COMPLETED", kClaim));

    // A nil claim id clears nothing, neither a claim nor a top-level key.
    const QVariantMap before = store.onDisk();
    U::clearUserDefaultsForClaimID(kNil);
    U::clearUserDefaultsForClaimID("CLM-unknown");
    EXPECT_EQ(store.onDisk(), before);

    // An empty claim id is not nil: it is a claim of its own. (The nil id's top level, and nil
    // values removing a key but keeping the claim: the settings command's tests.)
    U::setInteger(9, "count", QStringLiteral(""));
    EXPECT_EQ(claimOnDisk("").value("count").toInt(), 9);
    EXPECT_FALSE(store.onDisk().contains("count"));
}

TEST_F(ZQTUserDefaultsTest, RemovingAKeyTheClaimDoesNotHoldWritesNothing)
{
    U::setInteger(1, "kept", kClaim);
    // With the file gone, any write would bring it back.
    ASSERT_TRUE(QFile::remove(store.path()));
    U::removeObjectForKey("absent", kClaim);
    U::removeObjectForKeyWithClaimID("kept", "CLM-unknown");
    U::clearUserDefaultsForClaimID("CLM-unknown");
    EXPECT_FALSE(QFileInfo::exists(store.path()));
    EXPECT_TRUE(U::getAllClaimsDictionary().keys() == QStringList{kClaim}) << "and creates no claim";

    U::removeObjectForKey("kept", kClaim);
    EXPECT_TRUE(QFileInfo::exists(store.path()));
    EXPECT_TRUE(claimListOnDisk().contains(kClaim));
    EXPECT_TRUE(claimOnDisk(kClaim).isEmpty());
}

TEST_F(ZQTUserDefaultsTest, ADamagedStoreFileIsKeptAsideAndTheStoreStartsEmpty)
{
    // (A folder in the file's place is not read at all: test_unreadable_settings.cpp.)
    const struct { const char *name; QByteArray bytes; } damaged[] = {
        {"text that is no property list", "user settings, sort of"},
        {"a list whose root is an array", "<plist version=\"1.0\"><array><string>a</string></array></plist>"},
        {"an empty file", QByteArray()},
    };
    for (const auto &c : damaged) {
        SCOPED_TRACE(c.name);
        TemporarySettingsStore local;
        writeTestFile(local.path(), c.bytes);

        LogCapture log;
        EXPECT_TRUE(U::getAllClaimsDictionary().isEmpty());
        ASSERT_EQ(log.lines().size(), 1);
        EXPECT_TRUE(log.lines().first().contains(local.path())) << log.lines().first().toStdString();

        const QStringList aside = QDir(local.folder()).entryList({"app.plist.corrupt-*"});
        ASSERT_EQ(aside.size(), 1);
        const QString asidePath = local.folder() + '/' + aside.first();
        EXPECT_TRUE(log.lines().first().contains(asidePath));

        U::setInteger(2, "n", "CLM-2");
        EXPECT_EQ(local.onDisk(), (QVariantMap{{"ClaimList", QVariantMap{{"CLM-2", QVariantMap{{"n", 2}}}}}}));
        QFile kept(asidePath);
        EXPECT_TRUE(kept.open(QIODevice::ReadOnly) && kept.readAll() == c.bytes) << "the user's data is kept byte for byte";
    }
}
