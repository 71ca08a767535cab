// The file behind a preferences store: read into a dictionary, with a damaged file kept aside
// instead of being written over, and written by atomic whole-file replacement under an advisory
// lock that every process writing the file takes.
#pragma once

#include "platform/foundation/RegularFile_p.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace ZQTPlatform {

class UserDefaultsFile
{
public:
    explicit UserDefaultsFile(const QString &path);

    QString path() const { return m_path; }

    // The file's top-level dictionary; empty when the file does not exist. A file that was read
    // but is not a complete property list or whose root is not a dictionary is logged in one
    // line, renamed to "<file>.corrupt-<UTC time>" and reads as empty. A file that cannot be read
    // at all (no permission, not a regular file, too large) is logged and left in place, as is a
    // corrupt one that cannot be renamed: both read as empty and write() refuses to replace them,
    // so the only copy of the user's data is never lost.
    QVariantMap read();

    // Replaces the file with the dictionary as a binary property list, holding the lock
    // "<file>.lock" that every writer of the file takes. When another process changed the file
    // since this object last read or wrote it, the file is read again under the lock, replay()
    // applies this process's unwritten changes to what it holds, and that is written instead.
    // The dictionary written, or nothing when the write failed (logged; the previous file is left
    // as it was).
    std::optional<QVariantMap> write(const QVariantMap &values, const std::function<void(QVariantMap &)> &replay);

private:
    // A temporary file in the same folder is written and synced to disk, then renamed over the
    // file, and the folder is synced.
    bool replace(const QVariantMap &values);
    void keepAside(const QString &reason);
    bool fail(const QString &reason) const;

    QString m_path;
    bool m_replaceable = true;
    FileVersion m_version; // as last read or written here
};

} // namespace ZQTPlatform
