#include "support/TemporarySettingsStore.h"

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/UserDefaults.h"

#include <QFileInfo>

TemporarySettingsStore::TemporarySettingsStore()
    : m_path(m_dir.filePath(QStringLiteral("Preferences/app.plist")))
{
    restart();
}

TemporarySettingsStore::~TemporarySettingsStore()
{
    ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(QString());
}

QString TemporarySettingsStore::folder() const
{
    return QFileInfo(m_path).absolutePath();
}

void TemporarySettingsStore::restart()
{
    ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(m_path);
}

QVariantMap TemporarySettingsStore::onDisk() const
{
    return ZQTPlatform::PropertyList::readFile(m_path).toMap();
}
