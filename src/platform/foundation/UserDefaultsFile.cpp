#include "platform/foundation/UserDefaultsFile_p.h"

#include "platform/foundation/Log.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RegularFile_p.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace ZQTPlatform {

namespace {

// Makes a finished rename durable: the folder entry is on disk once its folder is synced.
void syncFolder(const QString &folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// A name beside the file that nothing uses yet.
QString unusedAsideName(const QString &path)
{
    const QString base = path + QStringLiteral(".corrupt-")
                         + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    QString name = base;
    for (int n = 1; QFileInfo::exists(name) || QFileInfo(name).isSymLink(); ++n)
        name = base + QLatin1Char('-') + QString::number(n);
    return name;
}

// Holds an exclusive advisory lock on a file beside the settings for its lifetime. Without a
// lock file (a folder that cannot be written) the write goes on unlocked and fails on its own.
class FileLock
{
public:
    explicit FileLock(const QString &path)
        : m_fd(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        while (m_fd >= 0 && ::flock(m_fd, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~FileLock()
    {
        if (m_fd >= 0)
            ::close(m_fd); // releases the lock
    }
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

private:
    int m_fd;
};

} // namespace

UserDefaultsFile::UserDefaultsFile(const QString &path)
    : m_path(path)
{
}

QVariantMap UserDefaultsFile::read()
{
    m_replaceable = true;
    const RegularFileContent content = readRegularFile(m_path);
    m_version = content.version;
    if (content.status == RegularFileContent::Status::Missing)
        return {};
    if (content.status == RegularFileContent::Status::Unreadable) {
        // Nothing was read, so nothing says the file is damaged: it stays where it is, untouched.
        m_replaceable = false;
        log(QStringLiteral("UserDefaults: the settings file \"%1\" cannot be read (%2); it is left as it is, the "
                           "settings start empty and will not be written over it")
                .arg(m_path, content.error));
        return {};
    }
    QString error;
    const QVariant root = PropertyList::fromData(content.data, &error);
    if (root.typeId() == QMetaType::QVariantMap)
        return root.toMap();
    if (root.isValid())
        error = QStringLiteral("its root is not a dictionary");
    keepAside(error);
    return {};
}

void UserDefaultsFile::keepAside(const QString &reason)
{
    const QString aside = unusedAsideName(m_path);
    if (QDir().rename(m_path, aside)) {
        log(QStringLiteral("UserDefaults: the settings file \"%1\" could not be read (%2); it was kept as \"%3\" "
                           "and the settings start empty")
                .arg(m_path, reason, aside));
        return;
    }
    m_replaceable = false;
    log(QStringLiteral("UserDefaults: the settings file \"%1\" could not be read (%2) nor be kept aside; the "
                       "settings start empty and will not be written over it")
            .arg(m_path, reason));
}

bool UserDefaultsFile::fail(const QString &reason) const
{
    log(QStringLiteral("UserDefaults: could not write the settings file \"%1\": %2").arg(m_path, reason));
    return false;
}

bool UserDefaultsFile::replace(const QVariantMap &values)
{
    QString error;
    const QByteArray data = PropertyList::toData(values, PropertyList::Format::Binary, &error);
    if (data.isEmpty())
        return fail(error);
    const QString folder = QFileInfo(m_path).absolutePath();
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    if (file.write(data) != data.size() || !file.flush()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return fail(reason);
    }
    // QSaveFile::commit() syncs too, but ignores a failure; this sync's result is checked.
    if (::fsync(file.handle()) != 0) {
        const QString reason = qt_error_string(errno);
        file.cancelWriting();
        return fail(reason);
    }
    if (!file.commit())
        return fail(file.errorString());
    syncFolder(folder);
    m_version = fileVersion(m_path);
    return true;
}

std::optional<QVariantMap> UserDefaultsFile::write(const QVariantMap &values,
                                                   const std::function<void(QVariantMap &)> &replay)
{
    if (!m_replaceable) {
        fail(QStringLiteral("it holds settings that could not be read and are kept where they are"));
        return std::nullopt;
    }
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QDir().mkpath(folder)) {
        fail(QStringLiteral("its folder \"%1\" cannot be created").arg(folder));
        return std::nullopt;
    }
    const FileLock lock(m_path + QStringLiteral(".lock"));
    QVariantMap merged = values;
    // Until the write succeeds, the caller's dictionary still lacks what another process wrote:
    // a failed write must leave the file to be read again next time.
    const FileVersion known = m_version;
    // A file that is gone was removed, not written by another process: memory is written whole.
    const FileVersion now = fileVersion(m_path);
    if (now != m_version && now != FileVersion()) {
        merged = read();
        replay(merged);
    }
    if (!m_replaceable || !replace(merged)) {
        m_version = known;
        return std::nullopt;
    }
    return merged;
}

} // namespace ZQTPlatform
