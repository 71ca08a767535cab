#include "Model/ConfigurationFileCache_p.h"

#include "platform/foundation/Log.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RegularFile_p.h"

#include <QHash>
#include <QMutex>

namespace {

// A parsed file with the exact bytes it was parsed from.
struct Entry
{
    std::optional<QByteArray> content; // nothing: the file exists but cannot be opened
    std::optional<QVariantMap> dictionary; // nothing: the file could not be used
};

// A host reads two files; tests point the main bundle at many folders over a run.
constexpr qsizetype kMaxEntries = 64;

QMutex cacheMutex;
QHash<QString, Entry> cache;

std::optional<QVariantMap> parse(const QString &path, const std::optional<QByteArray> &content, QString error)
{
    const QVariant root = content ? ZQTPlatform::PropertyList::fromData(*content, &error) : QVariant();
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
    if (path.isEmpty())
        return std::nullopt;
    // The file is read on every call and its bytes decide whether the parsed copy still holds:
    // sizes and times cannot tell apart two writes of one size within a tick of the clock.
    // Reading a configuration file costs a small part of parsing it (bench_configuration).
    // Only a regular file of a sane size is read: a FIFO or a link to a device counts as unreadable.
    ZQTPlatform::RegularFileContent file = ZQTPlatform::readRegularFile(path);
    if (file.status == ZQTPlatform::RegularFileContent::Status::Missing)
        return std::nullopt;
    std::optional<QByteArray> content;
    if (file.status == ZQTPlatform::RegularFileContent::Status::Read)
        content = std::move(file.data);

    QMutexLocker lock(&cacheMutex);
    const auto found = cache.constFind(path);
    if (found != cache.cend() && found->content == content)
        return found->dictionary;
    // Parsing under the lock keeps the "one line per version" promise when threads race.
    Entry entry{content, parse(path, content, file.error)};
    if (cache.size() >= kMaxEntries)
        cache.clear();
    cache.insert(path, entry);
    return entry.dictionary;
}
