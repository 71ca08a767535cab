// The file behind a preferences store: read once into a dictionary, with a damaged file kept
// aside instead of being written over, and written by atomic whole-file replacement.
#pragma once

#include <QString>
#include <QVariantMap>

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

    // Replaces the file with the dictionary as a binary property list: a temporary file in the
    // same folder is written and synced to disk, then renamed over the file, and the folder is
    // synced. On failure (logged) the previous file is left as it was.
    bool write(const QVariantMap &values);

private:
    void keepAside(const QString &reason);
    bool fail(const QString &reason) const;

    QString m_path;
    bool m_replaceable = true;
};

} // namespace ZQTPlatform
