// Reads whole files named by paths that may name anything: only regular files are read, opening
// never waits (a FIFO without a writer would block), and a size limit stops a file without end
// (a link to /dev/zero, a file still growing) from taking all memory.
#pragma once

#include <QByteArray>
#include <QString>

namespace ZQTPlatform {

// Far above any configuration, preferences or NMEA file the component reads.
constexpr qint64 kRegularFileLimit = 64 * 1024 * 1024;

// Tells one version of a file from another: a file replaced by rename has a new inode, one
// rewritten in place a new size or modification time. All zero for a missing file.
struct FileVersion
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;

    bool operator==(const FileVersion &other) const
    {
        return device == other.device && inode == other.inode && size == other.size && modifiedNs == other.modifiedNs;
    }
    bool operator!=(const FileVersion &other) const { return !(*this == other); }
};

// The version of the file at the path now.
FileVersion fileVersion(const QString &path);

struct RegularFileContent
{
    enum class Status { Read, Missing, Unreadable };
    Status status = Status::Missing;
    QByteArray data;  // the whole file when Read
    QString error;    // why, when Missing or Unreadable
    FileVersion version; // of the file read, when Read
};

// Qt resource paths (":/...") are read as they are.
RegularFileContent readRegularFile(const QString &path, qint64 limit = kRegularFileLimit);

} // namespace ZQTPlatform
