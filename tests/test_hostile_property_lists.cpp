// Property lists made to hurt the reader: none may end the process, and each is treated as an
// unreadable file (preferences: kept aside, the reason logged).
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TemporarySettingsStore.h"

#include <gtest/gtest.h>

#include <QDir>

using ZQTPlatform::PropertyList;

namespace {

// A binary property list of one dictionary { KEY: 1 }, KEY given as its whole string object
// (marker byte and characters).
QByteArray binaryDictionaryWithKey(const QByteArray &keyObject)
{
    QByteArray data("bplist00");
    data += QByteArray::fromHex("d10102");                         // object 0: dictionary, key 1, value 2
    const char keyOffset = char(data.size());
    data += keyObject;                                             // object 1: the key
    const char valueOffset = char(data.size());
    data += QByteArray::fromHex("1001");                           // object 2: integer 1
    const char tableOffset = char(data.size());
    data += QByteArray("\x08", 1) + keyOffset + valueOffset;       // offsets, one byte each
    data += QByteArray(6, '\0') + "\x01\x01";                      // offset and reference sizes
    data += QByteArray::fromHex("0000000000000003") + QByteArray(8, '\0');
    data += QByteArray(7, '\0') + tableOffset;
    return data;
}

struct HostileList { const char *name; QByteArray data; };

std::vector<HostileList> hostileLists()
{
    return {
        {"UTF-16 key with U+0000", binaryDictionaryWithKey(QByteArray::fromHex("63006100000062"))},
        {"UTF-16 key of U+0000 alone", binaryDictionaryWithKey(QByteArray::fromHex("610000"))},
        {"ASCII key with NUL", binaryDictionaryWithKey(QByteArray::fromHex("53610062"))},
        {"key length past the end", binaryDictionaryWithKey(QByteArray::fromHex("5f10ff61"))},
    };
}

} // namespace

TEST(HostilePropertyLists, AreRefusedWithoutEndingTheProcess)
{
    // The well-made list of the same shape reads.
    EXPECT_EQ(PropertyList::fromData(binaryDictionaryWithKey(QByteArray::fromHex("53616162"))).toMap(),
              (QVariantMap{{"aab", qint64(1)}}));
    for (const HostileList &list : hostileLists()) {
        QString error;
        EXPECT_FALSE(PropertyList::fromData(list.data, &error).isValid()) << list.name;
        EXPECT_FALSE(error.isEmpty()) << list.name;
    }
}

TEST(HostilePropertyLists, AsPreferencesAreKeptAside)
{
    const TemporarySettingsStore store;
    writeTestFile(store.path(), hostileLists().front().data);
    LogCapture log;
    EXPECT_TRUE(ZQTPlatform::UserDefaults::standardUserDefaults().dictionaryRepresentation().isEmpty());
    EXPECT_EQ(QDir(store.folder()).entryList({"app.plist.corrupt-*"}, QDir::Files).size(), 1);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().front().contains("U+0000")) << log.lines().front().toStdString();
}
