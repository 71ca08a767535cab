// Property-list bytes: the reader, the writer on what it read, and every typed configuration
// getter over the bytes as a host's Default_Settings.plist. Nothing may crash, abort or leak; a
// configuration value of the wrong kind raises ZQTPlatform::Exception, which is the documented
// answer and is caught here.
#include "FuzzSupport.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Exception.h"
#include "platform/foundation/PropertyList.h"

#include <QDir>
#include <QTemporaryDir>

using Constants = ZQTVINScanComponentConstants;
using ZQTPlatform::PropertyList;

namespace {

QTemporaryDir *hostFolder = nullptr;

// The keys the fuzzed dictionary holds (one level of groups deep) and a few the component reads.
QStringList keysOf(const QVariant &root)
{
    QStringList keys{QStringLiteral("TextTitle"), QStringLiteral("ManualVINButtonColor"),
                     QStringLiteral("TextFlashButtonArray"), QStringLiteral("HelpOverlay")};
    const QVariantMap top = root.toMap();
    for (auto it = top.cbegin(); it != top.cend() && keys.size() < 32; ++it) {
        keys << it.key();
        const QVariantMap group = it.value().toMap();
        for (auto inner = group.cbegin(); inner != group.cend() && keys.size() < 32; ++inner)
            keys << inner.key();
    }
    return keys;
}

template <typename Getter>
void readGuarded(Getter getter)
{
    try {
        getter();
    } catch (const ZQTPlatform::Exception &) {
        // A configuration value of the wrong kind: the getter's documented answer.
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    hostFolder = new QTemporaryDir;
    ZQTPlatform::Bundle::setMainBundlePath(hostFolder->path());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = Fuzz::bytesOf(data, size);
    QString error;
    const QVariant root = PropertyList::fromData(bytes, &error);
    if (root.isValid()) {
        for (const auto format : {PropertyList::Format::Xml, PropertyList::Format::Binary})
            PropertyList::fromData(PropertyList::toData(root, format));
    }

    Fuzz::writeFile(QDir(hostFolder->path()).filePath(QStringLiteral("Default_Settings.plist")), bytes);
    for (const QString &key : keysOf(root)) {
        readGuarded([&] { Constants::getConfigStringForKey(key); });
        readGuarded([&] { Constants::getConfigArrayForKey(key); });
        readGuarded([&] { Constants::getGlobalDictionaryForKey(key); });
        readGuarded([&] { Constants::getGlobalFloatForKey(key); });
        readGuarded([&] { Constants::getGlobalBoolForKey(key); });
        readGuarded([&] { Constants::getGlobalColorForKey(key); });
        readGuarded([&] { Constants::getConfigHelpOverlayValueForKey(key, 0); });
    }
    return 0;
}
