// The application's standard preferences store: a dictionary of property-list values kept in
// one property-list file, read at first use and then served from memory; synchronize() writes
// the whole file again by atomic replacement, so it survives restarts and crashes whole.
//
// The file is "<generic configuration folder>/<organization>/<application>.plist", the place
// QSettings would use for the same application ("~/.config/zqt-vin.plist" for the tool). Keys
// are strings; a null key names nothing. Every operation is safe from any thread. Processes
// sharing the file lose no update: synchronize() holds an advisory lock on the file while it
// writes, and when another process wrote the file since it was read, reads it again and applies
// this process's unwritten changes to it. Between writes, reads come from memory.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace ZQTPlatform {

class ZQT_EXPORT UserDefaults
{
public:
    // The one store of the process.
    static UserDefaults &standardUserDefaults();
    // The file the standard store uses unless it is pointed elsewhere.
    static QString defaultFilePath();

    QString filePath() const;
    // Points the store at another file (tools and tests), or back at the default one with an
    // empty path. What is held in memory is dropped; the file is read at the next use. Not to be
    // called while other threads use the store.
    void setFilePath(const QString &path);

    // The value under the key; an invalid QVariant when there is none.
    QVariant objectForKey(const QString &key) const;
    // Sets the value in memory; an invalid QVariant removes the key. A value that is not a
    // property-list value that reads back equal (see PropertyList::isPropertyListValue), or a null
    // key or one holding U+0000, is refused with a log line and changes nothing; the result says
    // whether the value was taken.
    bool setObject(const QVariant &value, const QString &key);
    // Why setObject() would refuse the value under the key; empty when it would take it.
    static QString refusalReason(const QVariant &value, const QString &key);
    void removeObjectForKey(const QString &key);
    // Sets the key to change(its value now); an invalid result removes it. The change is made at
    // once and, when another process wrote the file meanwhile, made again on the file's value at
    // the next write, so a read-modify-write of one key (a dictionary of entries) keeps the
    // entries other processes changed. The result must be a property-list value.
    void update(const QString &key, const std::function<QVariant(const QVariant &)> &change);
    // A copy of every top-level key and value.
    QVariantMap dictionaryRepresentation() const;

    // Writes the store to its file when memory holds changes the file lacks; true when the file
    // now holds everything set before the call. A failed write is logged and tried again at the
    // next call.
    bool synchronize();

    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

private:
    UserDefaults();
    ~UserDefaults();

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
