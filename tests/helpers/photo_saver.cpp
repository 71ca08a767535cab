// Child process of the photo kill test: zqt_photo_saver CLAIM
// Saves small photos of CLAIM under five titles in turn (new files at first, then replacing
// the old ones) through the store's ordinary save path, over and over, until it is killed.
// After each save returns it prints the number of saves done, so the parent knows it is busy.
#include "Utils/ZQTVINScanUtils.h"

#include <QCoreApplication>
#include <QImage>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: zqt_photo_saver CLAIM\n");
        return 2;
    }
    const QString claim = QString::fromLocal8Bit(argv[1]);
    QImage bitmap(96, 72, QImage::Format_RGB32);
    for (long saves = 1;; ++saves) {
        bitmap.fill(QColor::fromHsv(int(saves * 37 % 360), 200, 220));
        const QString title = QStringLiteral("photo%1").arg(saves % 5);
        const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId(claim, title);
        ZQTVINScanUtils::savePhotoWithClaimId(claim, ZQTPlatform::Image(bitmap), title, path);
        std::printf("%ld\n", saves);
        std::fflush(stdout);
    }
}
