// Points the application's standard preferences store at a file in a throwaway folder for the
// lifetime of the object, and back at the default file afterwards.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

class TemporarySettingsStore
{
public:
    TemporarySettingsStore();
    ~TemporarySettingsStore();
    TemporarySettingsStore(const TemporarySettingsStore &) = delete;
    TemporarySettingsStore &operator=(const TemporarySettingsStore &) = delete;

    // The store's file (in a folder that does not exist before the first write).
    QString path() const { return m_path; }
    QString folder() const;
    // Drops what the store holds in memory, so the next use reads the file as a new process would.
    void restart();
    // The file's top-level dictionary as it is on disk now; empty when it cannot be read.
    QVariantMap onDisk() const;

private:
    QTemporaryDir m_dir;
    QString m_path;
};
