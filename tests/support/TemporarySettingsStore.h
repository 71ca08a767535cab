// Points the application's standard preferences store at a file in a throwaway folder for the
// lifetime of the object, and back at the default file afterwards.
#pragma once

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"

#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

class TemporarySettingsStore
{
public:
    TemporarySettingsStore() { restart(); }
    ~TemporarySettingsStore() { ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(QString()); }
    TemporarySettingsStore(const TemporarySettingsStore &) = delete;
    TemporarySettingsStore &operator=(const TemporarySettingsStore &) = delete;

    // The store's file (in a folder that does not exist before the first write).
    QString path() const { return m_path; }
    QString folder() const { return QFileInfo(m_path).absolutePath(); }
    // Drops what the store holds in memory, so the next use reads the file as a new process would.
    void restart() { ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(m_path); }
    // The file's top-level dictionary as it is on disk now; empty when it cannot be read.
    QVariantMap onDisk() const { return ZQTPlatform::PropertyList::readFile(m_path).toMap(); }

private:
    QTemporaryDir m_dir;
    QString m_path = m_dir.filePath(QStringLiteral("Preferences/app.plist"));
};
