#include "Model/ConfigurationFileCache_p.h"

#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QMutex>

namespace {

struct FileVersion
{
    qint64 size = -1;
    QDateTime modified;
    QDateTime changed;

    bool operator==(const FileVersion &other) const
    {
        return size == other.size && modified == other.modified && changed == other.changed;
    }
};

struct Entry
{
    FileVersion version;
    std::optional<QVariantMap> dictionary; // nothing: the file could not be used
};

// A host reads two files; tests point the main bundle at many folders over a run.
constexpr qsizetype kMaxEntries = 64;

QMutex cacheMutex;
QHash<QString, Entry> cache;

std::optional<QVariantMap> parse(const QString &path)
{
    QString error;
    const QVariant root = ZQTPlatform::PropertyList::readFile(path, &error);
    if (root.typeId() == QMetaType::QVariantMap)
        return root.toMap();
    if (root.isValid())
        error = QStringLiteral("the top level is not a dictionary");
    ZQTPlatform::log(QStringLiteral("Configuration file \"%1\" could not be read (%2); its values are ignored")
                         .arg(path, error));
    return std::nullopt;
}

} // namespace

std::optional<QVariantMap> ConfigurationFileCache::dictionaryAt(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return std::nullopt;
    const FileVersion version{info.size(), info.lastModified(), info.metadataChangeTime()};

    QMutexLocker lock(&cacheMutex);
    const auto found = cache.constFind(path);
    if (found != cache.cend() && found->version == version)
        return found->dictionary;
    // Parsing under the lock keeps the "one line per version" promise when threads race.
    Entry entry{version, parse(path)};
    if (cache.size() >= kMaxEntries)
        cache.clear();
    cache.insert(path, entry);
    return entry.dictionary;
}
