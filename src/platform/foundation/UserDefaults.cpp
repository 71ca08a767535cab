#include "platform/foundation/UserDefaults.h"

#include "platform/foundation/Log.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaultsFile_p.h"

#include <QCoreApplication>
#include <QMutex>
#include <QStandardPaths>
#include <QWaitCondition>

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

namespace ZQTPlatform {

namespace {

// PropertyList::isPropertyListValue() on a whole dictionary builds a libplist node for every
// value in it, which makes rewriting a large dictionary slow. Containers are walked here and
// the common kinds that are always property-list values are checked at once; any other value is
// left to PropertyList. Fills *why when the value cannot be stored.
bool isStorable(const QVariant &value, QString *why)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap entries = value.toMap();
        for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
            if (!PropertyList::isPropertyListText(it.key(), why) || !isStorable(it.value(), why))
                return false;
        }
        return true;
    }
    case QMetaType::QVariantList: {
        const QVariantList items = value.toList();
        return std::all_of(items.cbegin(), items.cend(), [why](const QVariant &item) { return isStorable(item, why); });
    }
    case QMetaType::QString:
        return PropertyList::isPropertyListText(value.toString(), why);
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return true;
    default:
        return PropertyList::isPropertyListValue(value, why);
    }
}

} // namespace

class UserDefaults::Private
{
public:
    // A change not yet written: the key's new value made from its value before (invalid: removed).
    struct Change
    {
        quint64 number; // changeCount once the change was made
        QString key;
        std::function<QVariant(const QVariant &)> make;
    };

    // Reads the file at first use; called with dataMutex held.
    void ensureLoaded();
    // Makes a change of the values and keeps it until it is written; called with dataMutex held.
    // A change that ignores the value before (a set, a removal) drops earlier changes of its key.
    void change(const QString &key, std::function<QVariant(const QVariant &)> make, bool keepsEarlier);
    static void apply(QVariantMap &values, const Change &change);

    // Guards everything below.
    QMutex dataMutex;
    QString path;
    std::optional<UserDefaultsFile> file; // empty until the first use
    QVariantMap values;
    quint64 changeCount = 0;  // changes made to the values since the file was read
    quint64 flushedCount = 0; // changeCount as of the last successful write
    std::vector<Change> unwritten; // in the order they were made, to replay on another process's file
    // One caller writes the file at a time, with dataMutex released; the others wait for it.
    bool writing = false;
    QWaitCondition writeFinished;
};

void UserDefaults::Private::ensureLoaded()
{
    if (file)
        return;
    file.emplace(path.isEmpty() ? UserDefaults::defaultFilePath() : path);
    values = file->read();
    changeCount = flushedCount = 0;
    unwritten.clear();
}

void UserDefaults::Private::apply(QVariantMap &values, const Change &change)
{
    const QVariant value = change.make(values.value(change.key));
    if (value.isValid())
        values.insert(change.key, value);
    else
        values.remove(change.key);
}

void UserDefaults::Private::change(const QString &key, std::function<QVariant(const QVariant &)> make,
                                   bool keepsEarlier)
{
    if (!keepsEarlier) {
        unwritten.erase(std::remove_if(unwritten.begin(), unwritten.end(),
                                       [&key](const Change &earlier) { return earlier.key == key; }),
                        unwritten.end());
    }
    unwritten.push_back({++changeCount, key, std::move(make)});
    apply(values, unwritten.back());
}

UserDefaults::UserDefaults()
    : d(std::make_unique<Private>())
{
}

UserDefaults::~UserDefaults() = default;

UserDefaults &UserDefaults::standardUserDefaults()
{
    static UserDefaults store;
    return store;
}

QString UserDefaults::defaultFilePath()
{
    QString application = QCoreApplication::applicationName();
    if (application.isEmpty()) // no application object yet
        application = QStringLiteral("ZQTVINScanComponent");
    const QString organization = QCoreApplication::organizationName();
    QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/');
    if (!organization.isEmpty())
        path += organization + QLatin1Char('/');
    return path + application + QStringLiteral(".plist");
}

QString UserDefaults::filePath() const
{
    QMutexLocker lock(&d->dataMutex);
    return d->file ? d->file->path() : (d->path.isEmpty() ? defaultFilePath() : d->path);
}

void UserDefaults::setFilePath(const QString &path)
{
    QMutexLocker lock(&d->dataMutex);
    while (d->writing)
        d->writeFinished.wait(&d->dataMutex);
    d->path = path;
    d->file.reset();
    d->values.clear();
    d->unwritten.clear();
}

QString UserDefaults::refusalReason(const QVariant &value, const QString &key)
{
    if (!value.isValid())
        return QString();
    if (key.isNull())
        return QStringLiteral("the key is null");
    QString why;
    if (!PropertyList::isPropertyListText(key, &why) || !isStorable(value, &why))
        return why;
    return QString();
}

QVariant UserDefaults::objectForKey(const QString &key) const
{
    if (key.isNull())
        return QVariant();
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    return d->values.value(key);
}

bool UserDefaults::setObject(const QVariant &value, const QString &key)
{
    if (!value.isValid()) {
        removeObjectForKey(key);
        return true;
    }
    const QString refusal = refusalReason(value, key);
    if (!refusal.isEmpty()) {
        log(QStringLiteral("UserDefaults: refused to store a value of type %1 for key \"%2\": %3")
                .arg(QString::fromLatin1(value.typeName()), key, refusal));
        return false;
    }
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    d->change(key, [value](const QVariant &) { return value; }, false);
    return true;
}

void UserDefaults::removeObjectForKey(const QString &key)
{
    if (key.isNull())
        return;
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    if (d->values.contains(key))
        d->change(key, [](const QVariant &) { return QVariant(); }, false);
}

void UserDefaults::update(const QString &key, const std::function<QVariant(const QVariant &)> &change)
{
    if (key.isNull())
        return;
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    d->change(key, change, true);
}

QVariantMap UserDefaults::dictionaryRepresentation() const
{
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    return d->values;
}

bool UserDefaults::synchronize()
{
    QMutexLocker lock(&d->dataMutex);
    d->ensureLoaded();
    const quint64 wanted = d->changeCount; // the changes made before this call
    while (d->flushedCount < wanted) {
        if (d->writing) {
            // Another caller's write may well take these changes along: concurrent writers share
            // file writes instead of queueing one write each.
            d->writeFinished.wait(&d->dataMutex);
            continue;
        }
        d->writing = true;
        const QVariantMap snapshot = d->values;
        const quint64 snapshotCount = d->changeCount;
        const std::vector<Private::Change> changes = d->unwritten;
        // Readers and setters go on while the file is written.
        lock.unlock();
        const auto replay = [&changes](QVariantMap &values) {
            for (const Private::Change &change : changes)
                Private::apply(values, change);
        };
        const std::optional<QVariantMap> written = d->file->write(snapshot, replay);
        lock.relock();
        d->writing = false;
        if (written) {
            d->flushedCount = snapshotCount;
            d->unwritten.erase(std::remove_if(d->unwritten.begin(), d->unwritten.end(),
                                              [snapshotCount](const Private::Change &change) {
                                                  return change.number <= snapshotCount;
                                              }),
                               d->unwritten.end());
            // What another process wrote is taken in, with the changes made meanwhile on top.
            if (*written != snapshot) {
                d->values = *written;
                for (const Private::Change &change : d->unwritten)
                    Private::apply(d->values, change);
            }
        }
        d->writeFinished.wakeAll();
        if (!written)
            return false;
    }
    return true;
}

} // namespace ZQTPlatform
