// Throwaway files for tests, and a throwaway host resource folder chosen as the main bundle for
// the lifetime of the object (the default main bundle is restored afterwards).
#pragma once

#include "platform/foundation/Bundle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

// The XML text of a property list whose top-level dictionary holds the given entries.
inline QByteArray plistWithEntries(const QByteArray &entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n";
}

// Host settings whose only help page has the given "imageName" value, header and
// "autoDisplayFirstTime" value, the title "Title" and the description "Description".
inline QByteArray helpPageSettings(const QByteArray &imageNameXml, const QByteArray &header = "Header",
                                   const QByteArray &autoDisplayXml = "<false/>")
{
    return "<key>HelpOverlayDetailsDictionary</key><dict><key>overlays</key><array><dict>"
           "<key>imageName</key>" + imageNameXml + "<key>header</key><string>" + header + "</string>"
           "<key>title</key><string>Title</string><key>descr</key><string>Description</string>"
           "<key>autoDisplayFirstTime</key>" + autoDisplayXml + "</dict></array></dict>";
}

// Writes a file, making its folders; returns its path.
inline QString writeTestFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

class TemporaryMainBundle
{
public:
    TemporaryMainBundle() { ZQTPlatform::Bundle::setMainBundlePath(m_dir.path()); }
    ~TemporaryMainBundle() { ZQTPlatform::Bundle::setMainBundlePath(QString()); }

    QString path() const { return m_dir.path(); }
    QString settingsPath() const { return m_dir.filePath(QStringLiteral("Default_Settings.plist")); }
    // Writes Default_Settings.plist whose top-level dictionary holds the given XML entries.
    void writeSettings(const QByteArray &entries) const { writeFile("Default_Settings.plist", plistWithEntries(entries)); }
    // Writes a file below the folder (sub-folders are created); returns its path.
    QString writeFile(const QString &relativePath, const QByteArray &bytes) const
    {
        return writeTestFile(m_dir.filePath(relativePath), bytes);
    }

private:
    QTemporaryDir m_dir;
};
