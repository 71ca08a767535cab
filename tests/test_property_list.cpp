// Property lists: every value type survives a write and a read in both formats, dates count
// from 2001, and damaged input is refused rather than half-read.
#include "platform/foundation/PropertyList.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QPointF>

#include <limits>

using ZQTPlatform::PropertyList;
using Format = PropertyList::Format;
using TestData::utc;

namespace {

QVariantMap everyKind()
{
    const QVariantList pages{QVariantMap{{"title", "Front"}, {"auto", true}}, QVariantMap{{"title", "Rear"}}};
    return {{"text", QStringLiteral("Scan VIN – ünïcødé ✓")}, {"empty", QString()},
            {"negative", qint64(-17)}, {"large", qint64(1) << 40}, {"real", 12.625}, {"yes", true}, {"no", false},
            {"date", utc(2019, 7, 4, 12, 30, 15)}, {"beforeReference", utc(1999, 12, 31, 23, 59, 0)},
            {"data", QByteArray("\x00\x01\xfe\xff", 4)},
            {"list", QVariantList{"z", "a", qint64(2), 3.5, QVariantList{"deep"}}},
            {"nested", QVariantMap{{"emptyList", QVariantList()}, {"emptyMap", QVariantMap()}, {"pages", pages}}}};
}

QVariant roundTrip(const QVariant &value, Format format)
{
    QString error;
    const QVariant back = PropertyList::fromData(PropertyList::toData(value, format, &error), &error);
    EXPECT_TRUE(back.isValid()) << error.toStdString();
    return back;
}

class PropertyListRoundTrip : public ::testing::TestWithParam<Format> {};

} // namespace

TEST_P(PropertyListRoundTrip, EveryValueKindComesBackEqualWithPlistTypes)
{
    const QVariantMap back = roundTrip(everyKind(), GetParam()).toMap();
    EXPECT_EQ(back, everyKind());
    EXPECT_EQ(back.value("large").typeId(), QMetaType::LongLong);
    EXPECT_EQ(back.value("data").typeId(), QMetaType::QByteArray);
    const QVariantList topLevelList{"z", "a", qint64(-1), QVariantMap{{"k", "v"}}};
    EXPECT_EQ(roundTrip(topLevelList, GetParam()).toList(), topLevelList);

    // Qt's own integer, float and string-list types are written as the plist kinds.
    const QVariantMap qtTypes = roundTrip(QVariantMap{{"int", 7}, {"uint", 8u}, {"float", 0.5f},
                                                      {"strings", QStringList{"Off", "On"}}}, GetParam()).toMap();
    EXPECT_EQ(qtTypes, (QVariantMap{{"int", qint64(7)}, {"uint", qint64(8)}, {"float", 0.5},
                                    {"strings", QVariantList{"Off", "On"}}}));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, PropertyListRoundTrip, ::testing::Values(Format::Xml, Format::Binary),
                         [](const auto &info) { return info.param == Format::Xml ? "Xml" : "Binary"; });

TEST(PropertyListDates, CountFrom2001WithMillisecondsOnlyInBinary)
{
    const QByteArray xml = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
                           "<key>d</key><date>2001-01-01T00:00:10Z</date></dict></plist>";
    EXPECT_EQ(PropertyList::fromData(xml).toMap().value("d").toDateTime(), utc(2001, 1, 1, 0, 0, 10));
    // In binary form a date is the marker 0x33 and a big-endian double of seconds since 2001.
    const QByteArray binary = PropertyList::toData(QVariantList{utc(2001, 1, 1, 0, 0, 10)}, Format::Binary);
    EXPECT_TRUE(binary.contains(QByteArray::fromHex("334024000000000000"))) << binary.toHex().toStdString();

    const QDateTime date = utc(2023, 3, 9, 8, 7, 6, 250);
    EXPECT_EQ(roundTrip(QVariantList{date}, Format::Binary).toList().value(0), QVariant(date));
    const QByteArray written = PropertyList::toData(QVariantList{date}, Format::Xml);
    EXPECT_TRUE(written.contains("<date>2023-03-09T08:07:06Z</date>")) << written.toStdString();
}

TEST(PropertyListRefusal, TruncatedDamagedAndForeignInputIsRefusedNotHalfReadAndOnlyPropertyListTypesAreWritten)
{
    const QByteArray xml = PropertyList::toData(everyKind(), Format::Xml);
    const QByteArray binary = PropertyList::toData(everyKind(), Format::Binary);
    // Losing only the closing "</plist>" is the cut that libplist itself would accept.
    const QList<QByteArray> inputs = {
        xml.left(xml.size() / 3), xml.left(xml.size() * 9 / 10), xml.left(xml.lastIndexOf("</plist>")),
        binary.left(8), binary.left(20), binary.left(binary.size() / 2), binary.left(binary.size() - 4),
        QByteArray(), "hello, world", QByteArray("\x01\x02\x03", 3), "<html><body>no plist</body></html>"};
    for (const QByteArray &bytes : inputs) {
        QString error;
        EXPECT_FALSE(PropertyList::fromData(bytes, &error).isValid()) << bytes.left(60).toStdString();
        EXPECT_FALSE(error.isEmpty());
    }

    // Only property-list types can be written. (Reading files, missing, malformed or changed: the
    // configuration tests.)
    EXPECT_TRUE(PropertyList::isPropertyListValue(everyKind()));
    for (const QVariant &bad : {QVariant(), QVariant(QPointF(1, 2)), QVariant(QDateTime()),
                                QVariant(std::numeric_limits<quint64>::max()),
                                QVariant(QVariantMap{{"ok", 1}, {"bad", QVariantList{QPointF()}}})})
        EXPECT_FALSE(PropertyList::isPropertyListValue(bad)) << bad.typeName();
    QString error;
    EXPECT_TRUE(PropertyList::toData(QVariantList{QPointF()}, Format::Xml, &error).isEmpty());
    EXPECT_TRUE(error.contains("QPointF")) << error.toStdString();
}
