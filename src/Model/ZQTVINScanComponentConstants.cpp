// Configuration lookup: where a key's value comes from and what each typed getter makes of it.
// The styling operations live in ZQTVINScanComponentConstantsStyling.cpp.
#include "Model/ZQTVINScanComponentConstants.h"

#include "Model/ConfigurationError_p.h"
#include "Model/ConfigurationFileCache_p.h"
#include "platform/foundation/Description_p.h"
#include "platform/ui/Font.h"
#include "platform/foundation/StringScanner_p.h"

namespace {

// A value together with the file it was read from, so that errors can name the file.
struct Found
{
    QVariant value;
    QString file;
};

QString configurationFileName(const ZQTPlatform::Bundle &bundle)
{
    return bundle == ZQTPlatform::Bundle::frameworkBundle() ? QStringLiteral("ZQTConfig")
                                                            : QStringLiteral("Default_Settings");
}

// The key at the top level of the bundle's file, else inside the first top-level group that
// has it. Groups are searched one level deep; every top-level value that is not a string is
// taken for a group, so any other kind there is a configuration error.
Found lookUpInBundle(const QString &key, const ZQTPlatform::Bundle &bundle)
{
    const QString path = bundle.pathForResource(configurationFileName(bundle), QStringLiteral("plist"));
    const std::optional<QVariantMap> top = ConfigurationFileCache::dictionaryAt(path);
    if (!top)
        return {};
    QVariant value = ZQTVINScanComponentConstants::getObjectFrom(*top, key);
    if (value.isValid())
        return {value, path};
    for (auto entry = top->cbegin(); entry != top->cend(); ++entry) {
        if (entry.value().typeId() == QMetaType::QString)
            continue;
        if (entry.value().typeId() != QMetaType::QVariantMap)
            ConfigurationError::raiseWrongKind(entry.key(), path, entry.value(),
                                               QStringLiteral("a string or a group dictionary (looking up \"%1\")").arg(key));
        value = ZQTVINScanComponentConstants::getObjectFrom(entry.value().toMap(), key);
        if (value.isValid())
            return {value, path};
    }
    return {};
}

// The host's value when it has one, even an empty one; the framework's otherwise. A hit in the
// host's file is read a second time, as the lookup has always done.
Found lookUpConfigurable(const QString &key)
{
    const ZQTPlatform::Bundle host = ZQTPlatform::Bundle::mainBundle();
    if (lookUpInBundle(key, host).value.isValid())
        return lookUpInBundle(key, host);
    return lookUpInBundle(key, ZQTPlatform::Bundle::frameworkBundle());
}

bool isNumber(const QVariant &value)
{
    return ConfigurationError::kindOf(value) == QLatin1String("number");
}

// A configured font name when a font of that name exists (tested at size 10), else the fallback.
QString fontNameForKey(const QString &key, const QString &fallback)
{
    const QString name = ZQTVINScanComponentConstants::getConfigStringForKey(key);
    if (!ZQTPlatform::Font::fontWithName(name, 10.0))
        return fallback;
    return ZQTVINScanComponentConstants::getConfigStringForKey(key);
}

} // namespace

ZQTVINScanComponentConstants *ZQTVINScanComponentConstants::sharedInstance()
{
    static ZQTVINScanComponentConstants instance; // initialised once, thread-safe
    return &instance;
}

QVariant ZQTVINScanComponentConstants::getGlobalValueForKey(const QString &key, const ZQTPlatform::Bundle &fromBundle)
{
    return lookUpInBundle(key, fromBundle).value;
}

QVariant ZQTVINScanComponentConstants::getObjectFrom(const QVariantMap &dictionary, const QString &forKey)
{
    return dictionary.value(forKey);
}

QVariant ZQTVINScanComponentConstants::getConfigurableValueForKey(const QString &key)
{
    return lookUpConfigurable(key).value;
}

QString ZQTVINScanComponentConstants::getConfigStringForKey(const QString &key)
{
    return ZQTPlatform::describe(getConfigurableValueForKey(key));
}

QVariantList ZQTVINScanComponentConstants::getConfigArrayForKey(const QString &key)
{
    const Found found = lookUpConfigurable(key);
    if (!found.value.isValid())
        return {};
    if (found.value.typeId() != QMetaType::QVariantList)
        ConfigurationError::raiseWrongKind(key, found.file, found.value, QStringLiteral("an array"));
    return found.value.toList();
}

QVariantMap ZQTVINScanComponentConstants::getGlobalDictionaryForKey(const QString &key)
{
    const Found found = lookUpConfigurable(key);
    if (!found.value.isValid())
        return {};
    if (found.value.typeId() != QMetaType::QVariantMap)
        ConfigurationError::raiseWrongKind(key, found.file, found.value, QStringLiteral("a dictionary"));
    return found.value.toMap();
}

float ZQTVINScanComponentConstants::getGlobalFloatForKey(const QString &key)
{
    const Found found = lookUpConfigurable(key);
    if (!found.value.isValid())
        return 0.0f;
    if (found.value.typeId() == QMetaType::QString)
        return ZQTPlatform::StringScanner::floatValue(found.value.toString());
    if (found.value.typeId() == QMetaType::Bool || isNumber(found.value))
        return found.value.toFloat();
    ConfigurationError::raiseWrongKind(key, found.file, found.value, QStringLiteral("a number or a string"));
}

bool ZQTVINScanComponentConstants::getGlobalBoolForKey(const QString &key)
{
    const Found found = lookUpConfigurable(key);
    if (!found.value.isValid())
        return false;
    if (const std::optional<bool> value = ZQTPlatform::StringScanner::boolValue(found.value))
        return *value;
    ConfigurationError::raiseWrongKind(key, found.file, found.value, QStringLiteral("a boolean, a number or a string"));
}

ZQTPlatform::Image ZQTVINScanComponentConstants::getGlobalImageForKey(const QString &key)
{
    const Found found = lookUpConfigurable(key);
    if (!found.value.isValid())
        return {};
    if (found.value.typeId() != QMetaType::QString)
        ConfigurationError::raiseWrongKind(key, found.file, found.value, QStringLiteral("an image name"));
    const QString name = found.value.toString();
    const ZQTPlatform::Image hostImage = ZQTPlatform::Image::imageNamed(name);
    return hostImage.isNull() ? ZQTPlatform::Image::imageNamed(name, ZQTPlatform::Bundle::frameworkBundle())
                              : hostImage;
}

QString ZQTVINScanComponentConstants::getGlobalFontBold()
{
    return fontNameForKey(QStringLiteral("ApplicationBoldStyleFontName"), QStringLiteral("Helvetica-Bold"));
}

QString ZQTVINScanComponentConstants::getGlobalFontRegular()
{
    return fontNameForKey(QStringLiteral("ApplicationRegularStyleFontName"), QStringLiteral("Helvetica"));
}

QVariant ZQTVINScanComponentConstants::getConfigHelpOverlayValueForKey(const QString &key, qint64 atIndex)
{
    static const QString dictionaryKey = QStringLiteral("HelpOverlayDetailsDictionary");
    const QVariantMap details = getGlobalDictionaryForKey(dictionaryKey);
    const QVariant overlays = getObjectFrom(details, QStringLiteral("overlays"));
    if (!overlays.isValid())
        return {};
    // Only a failing lookup needs to name the file; find it then.
    const auto file = [] { return lookUpConfigurable(dictionaryKey).file; };
    if (overlays.typeId() != QMetaType::QVariantList)
        ConfigurationError::raiseWrongKind(dictionaryKey, file(), overlays, QStringLiteral("\"overlays\" to be an array"));
    const QVariantList pages = overlays.toList();
    if (atIndex < 0 || atIndex >= pages.size())
        ConfigurationError::raiseOutOfRange(dictionaryKey, file(),
                                            QStringLiteral("help page index %1 is outside \"overlays\" (%2 pages)")
                                                .arg(atIndex).arg(pages.size()));
    const QVariant page = pages.at(atIndex);
    if (page.typeId() != QMetaType::QVariantMap)
        ConfigurationError::raiseWrongKind(dictionaryKey, file(), page,
                                           QStringLiteral("help page %1 to be a dictionary").arg(atIndex));
    return getObjectFrom(page.toMap(), key);
}
