// Reads whole files named by paths that may name anything: only regular files are read, opening
// never waits (a FIFO without a writer would block), and a size limit stops a file without end
// (a link to /dev/zero, a file still growing) from taking all memory.
#pragma once

#include <QByteArray>
#include <QString>

namespace ZQTPlatform {

// Far above any configuration, preferences or NMEA file the component reads.
constexpr qint64 kRegularFileLimit = 64 * 1024 * 1024;

struct RegularFileContent
{
    enum class Status { Read, Missing, Unreadable };
    Status status = Status::Missing;
    QByteArray data;  // the whole file when Read
    QString error;    // why, when Missing or Unreadable
};

RegularFileContent readRegularFile(const QString &path, qint64 limit = kRegularFileLimit);

} // namespace ZQTPlatform
