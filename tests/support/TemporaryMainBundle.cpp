#include "support/TemporaryMainBundle.h"

#include "platform/Bundle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QByteArray plistWithEntries(const QByteArray &entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n";
}

TemporaryMainBundle::TemporaryMainBundle()
{
    ZQTPlatform::Bundle::setMainBundlePath(m_dir.path());
}

TemporaryMainBundle::~TemporaryMainBundle()
{
    ZQTPlatform::Bundle::setMainBundlePath(QString());
}

QString TemporaryMainBundle::settingsPath() const
{
    return m_dir.filePath(QStringLiteral("Default_Settings.plist"));
}

void TemporaryMainBundle::writeSettings(const QByteArray &entries) const
{
    writeFile(QStringLiteral("Default_Settings.plist"), plistWithEntries(entries));
}

QString TemporaryMainBundle::writeFile(const QString &relativePath, const QByteArray &bytes) const
{
    const QString path = m_dir.filePath(relativePath);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}
