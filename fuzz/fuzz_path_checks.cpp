// Claim ids and photo titles as path components: whatever the text, a photo path the store makes
// lies directly in the claim's folder directly under the store's root, or there is none.
#include "FuzzSupport.h"

#include "Utils/ZQTVINScanUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

QString root;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    static QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral(".config"))));
    root = QFileInfo(ZQTVINScanUtils::createZQTPhotosDirAsNeeded()).canonicalFilePath();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The first line is the claim id, the rest the title.
    const QString text = Fuzz::textOf(data, size);
    const qsizetype split = text.indexOf(QLatin1Char('\n'));
    const QString claimId = split < 0 ? text : text.left(split);
    const QString title = split < 0 ? QStringLiteral("photo") : text.mid(split + 1);
    const bool claimOk = ZQTVINScanUtilsPrivate::isPathComponent(claimId);
    const bool titleOk = ZQTVINScanUtilsPrivate::isPathComponent(title);

    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId(claimId, title);
    if (path.isNull() != !(claimOk && titleOk))
        std::abort();
    if (!path.isNull()) {
        const QFileInfo photo(path);
        const QString folder = QFileInfo(photo.absolutePath()).canonicalFilePath();
        if (QFileInfo(folder).absolutePath() != root || QFileInfo(folder).fileName() != claimId)
            std::abort(); // the photo would not lie in its claim's folder under the root
        QDir(folder).removeRecursively();
    }
    return 0;
}
