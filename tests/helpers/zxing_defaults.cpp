// Child process of the barcode reader's abort test (test_barcode_reader.cpp): reads a picture with
// ZXing-cpp's default options, its multi-scale search included, and prints how many codes it
// found. On the frames of that test ZXing-cpp 1.4 aborts instead.
#include <ZXing/ReadBarcode.h>

#include <QImage>
#include <QString>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: zqt_zxing_defaults PICTURE\n");
        return 2;
    }
    const QImage grey = QImage(QString::fromLocal8Bit(argv[1])).convertToFormat(QImage::Format_Grayscale8);
    if (grey.isNull()) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 2;
    }
    const ZXing::ImageView view(grey.constBits(), grey.width(), grey.height(), ZXing::ImageFormat::Lum,
                                int(grey.bytesPerLine()));
    std::printf("%zu\n", ZXing::ReadBarcodes(view, ZXing::DecodeHints()).size());
    return 0;
}
