// What the documentation promises stays true of the code: the README shows the host example's
// real text, and the configuration reference covers every key the component ships.
#include "platform/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSet>
#include <QVariantList>
#include <QVariantMap>

namespace {

QString sourceFile(const QString &relativePath)
{
    QFile file(QStringLiteral(ZQT_SOURCE_DIR "/") + relativePath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Every dictionary key at any depth, inside arrays too.
void collectKeys(const QVariant &value, QSet<QString> &keys)
{
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            keys.insert(it.key());
            collectKeys(it.value(), keys);
        }
    } else if (value.typeId() == QMetaType::QVariantList) {
        for (const QVariant &item : value.toList())
            collectKeys(item, keys);
    }
}

} // namespace

TEST(Documentation, TheReadmeShowsTheHostExampleAsItIsAndTheReferenceAndExampleSettingsAgreeWithTheShippedKeys)
{
    const QString example = sourceFile(QStringLiteral("samples/host-example/main.cpp"));
    const QString readme = sourceFile(QStringLiteral("README.md"));
    ASSERT_FALSE(example.isEmpty());
    const QString marker = QStringLiteral("<!-- samples/host-example/main.cpp -->\n```cpp\n");
    const qsizetype start = readme.indexOf(marker);
    ASSERT_GE(start, 0) << "the README has no host example block";
    const qsizetype textStart = start + marker.size();
    const qsizetype end = readme.indexOf(QStringLiteral("\n```\n"), textStart);
    ASSERT_GT(end, textStart);
    EXPECT_EQ(readme.mid(textStart, end + 1 - textStart).toStdString(), example.toStdString())
        << "copy samples/host-example/main.cpp into the README";

    // The configuration reference covers every key the component ships, and the example host
    // settings use only such keys.
    QString error;
    const QVariant shipped = ZQTPlatform::PropertyList::readFile(QStringLiteral(ZQT_SOURCE_DIR "/src/resources/ZQTConfig.plist"), &error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    QSet<QString> keys;
    collectKeys(shipped, keys);
    ASSERT_GT(keys.size(), 40);
    const QString reference = sourceFile(QStringLiteral("docs/configuration.md"));
    QStringList missing;
    for (const QString &key : std::as_const(keys)) {
        if (!reference.contains(QLatin1Char('`') + key + QLatin1Char('`')))
            missing << key;
    }
    missing.sort();
    EXPECT_TRUE(missing.isEmpty()) << "not in docs/configuration.md: " << missing.join(", ").toStdString();

    const QVariantMap exampleSettings = ZQTPlatform::PropertyList::readFile(
        QStringLiteral(ZQT_SOURCE_DIR "/docs/Default_Settings.example.plist"), &error).toMap();
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    int entries = 0;
    for (const QVariant &group : exampleSettings) {
        for (const QString &key : group.toMap().keys()) {
            ++entries;
            EXPECT_TRUE(keys.contains(key)) << "the component has no key " << key.toStdString();
        }
    }
    EXPECT_GE(entries, 3) << "a colour, a text and a font at least";
}
