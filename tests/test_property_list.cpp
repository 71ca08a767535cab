// Property lists: every value type survives a write and a read in both formats, dates count
// from 2001, and damaged input is refused rather than half-read.
#include "platform/PropertyList.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QPointF>
#include <QTemporaryDir>

#include <limits>

using ZQTPlatform::PropertyList;

namespace {

QDateTime utc(int y, int mo, int d, int h, int mi, int s, int ms = 0)
{
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms), Qt::UTC);
}

QVariantMap everyKind()
{
    QVariantMap nested;
    nested.insert("emptyList", QVariantList());
    nested.insert("emptyMap", QVariantMap());
    nested.insert("pages", QVariantList{QVariantMap{{"title", "Front"}, {"auto", true}},
                                        QVariantMap{{"title", "Rear"}, {"auto", false}}});
    QVariantMap root;
    root.insert("text", QStringLiteral("Scan VIN – ünïcødé ✓"));
    root.insert("empty", QString());
    root.insert("positive", qint64(42));
    root.insert("negative", qint64(-17));
    root.insert("large", qint64(1) << 40);
    root.insert("real", 12.625);
    root.insert("yes", true);
    root.insert("no", false);
    root.insert("date", utc(2019, 7, 4, 12, 30, 15));
    root.insert("beforeReference", utc(1999, 12, 31, 23, 59, 0));
    root.insert("data", QByteArray("\x00\x01\xfe\xff", 4));
    root.insert("list", QVariantList{"a", qint64(2), 3.5, QVariantList{"deep"}});
    root.insert("nested", nested);
    return root;
}

class PropertyListRoundTrip : public ::testing::TestWithParam<PropertyList::Format>
{
};

} // namespace

TEST_P(PropertyListRoundTrip, EveryValueKindComesBackEqual)
{
    QString error;
    const QByteArray bytes = PropertyList::toData(everyKind(), GetParam(), &error);
    ASSERT_FALSE(bytes.isEmpty()) << error.toStdString();
    const QVariant back = PropertyList::fromData(bytes, &error);
    ASSERT_TRUE(back.isValid()) << error.toStdString();
    EXPECT_EQ(back.toMap(), everyKind());
    EXPECT_EQ(back.toMap().value("positive").typeId(), QMetaType::LongLong);
    EXPECT_EQ(back.toMap().value("data").typeId(), QMetaType::QByteArray);
}

TEST_P(PropertyListRoundTrip, ATopLevelArrayKeepsItsOrder)
{
    const QVariantList list{"z", "a", qint64(-1), QVariantMap{{"k", "v"}}};
    EXPECT_EQ(PropertyList::fromData(PropertyList::toData(list, GetParam())).toList(), list);
}

TEST_P(PropertyListRoundTrip, QtIntegerAndStringListTypesAreWrittenAsPlistValues)
{
    const QVariantMap in{{"int", 7}, {"uint", 8u}, {"float", 0.5f}, {"strings", QStringList{"Off", "On"}}};
    const QVariantMap out = PropertyList::fromData(PropertyList::toData(in, GetParam())).toMap();
    EXPECT_EQ(out.value("int"), QVariant(qint64(7)));
    EXPECT_EQ(out.value("uint"), QVariant(qint64(8)));
    EXPECT_EQ(out.value("float"), QVariant(0.5));
    EXPECT_EQ(out.value("strings"), QVariant(QVariantList{"Off", "On"}));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, PropertyListRoundTrip,
                         ::testing::Values(PropertyList::Format::Xml, PropertyList::Format::Binary),
                         [](const auto &info) {
                             return info.param == PropertyList::Format::Xml ? "Xml" : "Binary";
                         });

TEST(PropertyListDates, CountFromTheFirstOfJanuary2001)
{
    const QByteArray xml = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
                           "<key>d</key><date>2001-01-01T00:00:10Z</date></dict></plist>";
    EXPECT_EQ(PropertyList::fromData(xml).toMap().value("d").toDateTime(), utc(2001, 1, 1, 0, 0, 10));

    // In binary form a date is the marker 0x33 and a big-endian double of seconds since 2001.
    const QByteArray binary = PropertyList::toData(QVariantList{utc(2001, 1, 1, 0, 0, 10)},
                                                   PropertyList::Format::Binary);
    EXPECT_TRUE(binary.contains(QByteArray::fromHex("334024000000000000"))) << binary.toHex().toStdString();
}

TEST(PropertyListDates, BinaryKeepsMillisecondsAndXmlWholeSeconds)
{
    const QDateTime date = utc(2023, 3, 9, 8, 7, 6, 250);
    const QVariantMap in{{"d", date}};
    EXPECT_EQ(PropertyList::fromData(PropertyList::toData(in, PropertyList::Format::Binary)).toMap().value("d"),
              QVariant(date));
    const QByteArray xml = PropertyList::toData(in, PropertyList::Format::Xml);
    EXPECT_TRUE(xml.contains("<date>2023-03-09T08:07:06Z</date>")) << xml.toStdString();
}

TEST(PropertyListRefusal, TruncatedXmlIsRefusedNotHalfRead)
{
    const QByteArray whole = PropertyList::toData(everyKind(), PropertyList::Format::Xml);
    // Losing only the closing "</plist>" is the cut that libplist itself would accept.
    const QList<qsizetype> cuts = {whole.size() / 3, whole.size() * 9 / 10, whole.lastIndexOf("</plist>")};
    for (const qsizetype cut : cuts) {
        QString error;
        const QVariant parsed = PropertyList::fromData(whole.left(cut), &error);
        EXPECT_FALSE(parsed.isValid()) << "cut at " << cut << " of " << whole.size();
        EXPECT_FALSE(error.isEmpty());
    }
}

TEST(PropertyListRefusal, DamagedBinaryIsRefused)
{
    const QByteArray whole = PropertyList::toData(everyKind(), PropertyList::Format::Binary);
    for (const int length : {8, 20, int(whole.size()) / 2, int(whole.size()) - 4}) {
        QString error;
        EXPECT_FALSE(PropertyList::fromData(whole.left(length), &error).isValid()) << "length " << length;
        EXPECT_FALSE(error.isEmpty());
    }
}

TEST(PropertyListRefusal, GarbageEmptyAndForeignXmlAreRefused)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("hello, world"), QByteArray("\x01\x02\x03", 3),
                                    QByteArray("<html><body>no plist</body></html>")}) {
        QString error;
        EXPECT_FALSE(PropertyList::fromData(bytes, &error).isValid()) << bytes.toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}

TEST(PropertyListFiles, WriteThenReadAFileAndReportAMissingOne)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("settings.plist");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(PropertyList::toData(everyKind(), PropertyList::Format::Binary));
    file.close();
    EXPECT_EQ(PropertyList::readFile(path).toMap(), everyKind());

    QString error;
    EXPECT_FALSE(PropertyList::readFile(dir.filePath("missing.plist"), &error).isValid());
    EXPECT_FALSE(error.isEmpty());
}

TEST(PropertyListValues, OnlyPropertyListTypesCanBeWritten)
{
    EXPECT_TRUE(PropertyList::isPropertyListValue(everyKind()));
    EXPECT_FALSE(PropertyList::isPropertyListValue(QVariant()));
    EXPECT_FALSE(PropertyList::isPropertyListValue(QPointF(1, 2)));
    EXPECT_FALSE(PropertyList::isPropertyListValue(QVariantMap{{"ok", 1}, {"bad", QVariantList{QPointF()}}}));
    EXPECT_FALSE(PropertyList::isPropertyListValue(QDateTime()));
    EXPECT_FALSE(PropertyList::isPropertyListValue(std::numeric_limits<quint64>::max()));

    QString error;
    EXPECT_TRUE(PropertyList::toData(QVariantList{QPointF()}, PropertyList::Format::Xml, &error).isEmpty());
    EXPECT_TRUE(error.contains("QPointF")) << error.toStdString();
}
