#include "platform/foundation/RegularFile_p.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZQTPlatform {

namespace {

RegularFileContent failed(RegularFileContent::Status status, const QString &error)
{
    RegularFileContent content;
    content.status = status;
    content.error = error;
    return content;
}

FileVersion versionOf(const struct stat &info)
{
    FileVersion version;
    version.device = quint64(info.st_dev);
    version.inode = quint64(info.st_ino);
    version.size = qint64(info.st_size);
    version.modifiedNs = qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    return version;
}

// Closes the descriptor when it goes out of scope.
struct Descriptor
{
    int fd;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace

FileVersion fileVersion(const QString &path)
{
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return FileVersion();
    return versionOf(info);
}

RegularFileContent readRegularFile(const QString &path, qint64 limit)
{
    using Status = RegularFileContent::Status;
    // A Qt resource (the framework bundle) is compiled in: nothing else can stand at its path.
    if (path.startsWith(QLatin1Char(':'))) {
        QFile resource(path);
        if (!resource.open(QIODevice::ReadOnly))
            return failed(Status::Missing, resource.errorString());
        RegularFileContent content;
        content.status = Status::Read;
        content.data = resource.readAll();
        return content;
    }
    const Descriptor file{::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (file.fd < 0) {
        const int reason = errno;
        return failed(reason == ENOENT || reason == ENOTDIR ? Status::Missing : Status::Unreadable,
                      qt_error_string(reason));
    }
    struct stat info = {};
    if (::fstat(file.fd, &info) != 0)
        return failed(Status::Unreadable, qt_error_string(errno));
    if (!S_ISREG(info.st_mode))
        return failed(Status::Unreadable, QStringLiteral("not a regular file"));
    const QString tooLarge = QStringLiteral("larger than %1 bytes").arg(limit);
    if (info.st_size > limit)
        return failed(Status::Unreadable, tooLarge);

    RegularFileContent content;
    content.status = Status::Read;
    content.version = versionOf(info);
    content.data.resize(qsizetype(info.st_size));
    qsizetype used = 0;
    for (;;) {
        if (used == content.data.size()) {
            // The file may have grown since fstat; one byte past the limit tells it is too large.
            if (used > limit)
                return failed(Status::Unreadable, tooLarge);
            content.data.resize(qsizetype(qMin<qint64>(limit + 1, qint64(used) * 2 + 4096)));
        }
        const ssize_t got = ::read(file.fd, content.data.data() + used, size_t(content.data.size() - used));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failed(Status::Unreadable, qt_error_string(errno));
        if (got == 0)
            break;
        used += got;
    }
    content.data.truncate(used);
    return content;
}

} // namespace ZQTPlatform
