// A bundle: a folder of resources, either on disk or under a Qt resource prefix.
// The framework bundle is compiled into the library (":/ZQTVINScanComponent"); the main bundle
// is the host application's resource folder, chosen by the host and by default the folder
// that holds the executable. It may hold "Default_Settings.plist" and "ZQTMedia.bundle/".
#pragma once

#include "ZQTGlobal.h"

#include <QString>

namespace ZQTPlatform {

class ZQT_EXPORT Bundle
{
public:
    Bundle() = default; // the null bundle (no bundle)

    // The bundle at a folder, or the null bundle when the folder does not exist.
    static Bundle bundleWithPath(const QString &path);
    // The host's resource folder (see setMainBundlePath).
    static Bundle mainBundle();
    // Chooses the host's resource folder; an empty path restores the default (beside the executable).
    static void setMainBundlePath(const QString &path);
    // The component's own compiled-in resources.
    static Bundle frameworkBundle();

    bool isNull() const { return m_path.isEmpty(); }
    QString bundlePath() const { return m_path; }
    QString resourcePath() const { return m_path; }
    // Path of "<name>.<type>" (or "<name>" when type is empty) inside the bundle; name may hold
    // sub-folders. Empty when there is no such file or folder.
    QString pathForResource(const QString &name, const QString &type) const;

    bool operator==(const Bundle &other) const { return m_path == other.m_path; }
    bool operator!=(const Bundle &other) const { return !(*this == other); }

private:
    explicit Bundle(const QString &path) : m_path(path) {}
    QString m_path;
};

} // namespace ZQTPlatform
