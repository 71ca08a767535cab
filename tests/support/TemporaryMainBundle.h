// A throwaway host resource folder chosen as the main bundle for the lifetime of the object;
// the default main bundle is restored afterwards.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

class TemporaryMainBundle
{
public:
    TemporaryMainBundle();
    ~TemporaryMainBundle();
    TemporaryMainBundle(const TemporaryMainBundle &) = delete;
    TemporaryMainBundle &operator=(const TemporaryMainBundle &) = delete;

    QString path() const { return m_dir.path(); }
    QString settingsPath() const;
    // Writes Default_Settings.plist whose top-level dictionary holds the given XML entries.
    void writeSettings(const QByteArray &entries) const;
    // Writes a file below the folder (sub-folders are created); returns its path.
    QString writeFile(const QString &relativePath, const QByteArray &bytes) const;

private:
    QTemporaryDir m_dir;
};

// The XML text of a property list whose top-level dictionary holds the given entries.
QByteArray plistWithEntries(const QByteArray &entries);
