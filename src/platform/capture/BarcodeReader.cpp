// ZXing-cpp stays inside this file: its headers define macros (FormatError, ChecksumError) that
// clash with ordinary names elsewhere.
//
// ZXing-cpp 1.4 as packaged is built with assertions on. Two of its options are never used here:
// tryDownscale (ReadBarcodes aborts the process when a 1-D code is found at more than one scale,
// which ordinary 720p frames trigger; the half-size strategy replaces it) and the Code 39 check
// digit validation (it silently drops the last character of VINs that happen to end in their own
// mod 43 value).
#include "platform/capture/BarcodeReader_p.h"

#include "platform/capture/CodeRegions_p.h"
#include "platform/capture/FrameLayout_p.h"
#include "platform/capture/LineReader_p.h"
#include "platform/capture/MaskedLuminance_p.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/RegionViews_p.h"
#include "platform/capture/TurnedLuminance_p.h"

#include <ZXing/ReadBarcode.h>

#include <QImage>
#include <QPainter>
#include <QSet>
#include <QVideoFrame>

#include <algorithm>
#include <array>
#include <exception>
#include <optional>

namespace ZQTPlatform {

namespace {

struct TypeFormat
{
    const QString &type;
    int formats; // ZXing::BarcodeFormat bits
};

constexpr int formatBits(ZXing::BarcodeFormat format)
{
    return int(format);
}

// The platform's types and the ZXing formats that find them. UPC-A is a part of EAN-13 on the
// platform; ITF-14 is the 14-digit Interleaved 2 of 5.
const std::array<TypeFormat, 13> &typeFormats()
{
    using F = ZXing::BarcodeFormat;
    static const std::array<TypeFormat, 13> table{{
        {MetadataObject::typeCode39, formatBits(F::Code39)},
        {MetadataObject::typeCode39Mod43, formatBits(F::Code39)},
        {MetadataObject::typeCode93, formatBits(F::Code93)},
        {MetadataObject::typeCode128, formatBits(F::Code128)},
        {MetadataObject::typeDataMatrix, formatBits(F::DataMatrix)},
        {MetadataObject::typeQRCode, formatBits(F::QRCode)},
        {MetadataObject::typeEAN13, formatBits(F::EAN13) | formatBits(F::UPCA)},
        {MetadataObject::typeEAN8, formatBits(F::EAN8)},
        {MetadataObject::typeUPCE, formatBits(F::UPCE)},
        {MetadataObject::typePDF417, formatBits(F::PDF417)},
        {MetadataObject::typeAztec, formatBits(F::Aztec)},
        {MetadataObject::typeITF14, formatBits(F::ITF)},
        {MetadataObject::typeInterleaved2of5, formatBits(F::ITF)},
    }};
    return table;
}

// Whether the last character of a Code 39 text is the mod 43 check character of the others.
bool endsInMod43Check(const QString &text)
{
    static const QString alphabet = QStringLiteral("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%");
    if (text.size() < 2)
        return false;
    int sum = 0;
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        const qsizetype value = alphabet.indexOf(text.at(i));
        if (value < 0)
            return false;
        sum += int(value);
    }
    return alphabet.indexOf(text.back()) == sum % 43;
}

// The platform type of a ZXing result among the wanted types; an empty string when not wanted.
QString platformType(ZXing::BarcodeFormat format, const QString &text, const QStringList &wanted)
{
    const auto pick = [&wanted](const QString &preferred, const QString &otherwise) {
        return wanted.contains(preferred) ? preferred : wanted.contains(otherwise) ? otherwise : QString();
    };
    switch (format) {
    case ZXing::BarcodeFormat::Code39:
        return endsInMod43Check(text) ? pick(MetadataObject::typeCode39Mod43, MetadataObject::typeCode39)
                                      : pick(MetadataObject::typeCode39, QString());
    case ZXing::BarcodeFormat::UPCA:
        return pick(MetadataObject::typeEAN13, QString());
    case ZXing::BarcodeFormat::ITF:
        return text.size() == 14 ? pick(MetadataObject::typeITF14, MetadataObject::typeInterleaved2of5)
                                 : pick(MetadataObject::typeInterleaved2of5, QString());
    default:
        break;
    }
    for (const TypeFormat &entry : typeFormats()) {
        if (entry.formats & formatBits(format))
            return pick(entry.type, QString());
    }
    return {};
}

ZXing::DecodeHints hintsFor(const ReadStrategy &strategy, int formats, int maxSymbols)
{
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat(formats))
        .setBinarizer(strategy.binarizer == ReadStrategy::Binarizer::GlobalHistogram ? ZXing::Binarizer::GlobalHistogram
                                                                                     : ZXing::Binarizer::LocalAverage)
        .setTryHarder(strategy.tryHarder)
        .setTryRotate(strategy.tryRotate)
        .setTryDownscale(false)
        .setMaxNumberOfSymbols(uint8_t(maxSymbols))
        .setTryCode39ExtendedMode(true)
        .setValidateCode39CheckSum(false);
    return hints;
}

// ZXing's view of a picture read in place: its format names the byte of each channel as the
// layout does.
ZXing::ImageView imageView(const PixelLayout &picture)
{
    ZXing::ImageFormat format = ZXing::ImageFormat::Lum;
    if (!picture.isGrey()) {
        for (const ZXing::ImageFormat rgb : {ZXing::ImageFormat::RGB, ZXing::ImageFormat::BGR, ZXing::ImageFormat::RGBX,
                                            ZXing::ImageFormat::XRGB, ZXing::ImageFormat::BGRX, ZXing::ImageFormat::XBGR}) {
            if (ZXing::PixStride(rgb) == picture.pixelStride && ZXing::RedIndex(rgb) == picture.red
                && ZXing::GreenIndex(rgb) == picture.green && ZXing::BlueIndex(rgb) == picture.blue)
                format = rgb;
        }
    }
    return {picture.data, picture.width, picture.height, format, picture.rowStride, picture.pixelStride};
}

PixelLayout pixelLayout(const ZXing::ImageView &view)
{
    const ZXing::ImageFormat format = view.format();
    const bool grey = format == ZXing::ImageFormat::Lum;
    return {view.data(0, 0), view.width(), view.height(), view.rowStride(), view.pixStride(),
            grey ? 0 : ZXing::RedIndex(format), grey ? 0 : ZXing::GreenIndex(format), grey ? 0 : ZXing::BlueIndex(format)};
}

QList<QPoint> corners(const ZXing::Position &position)
{
    QList<QPoint> points;
    for (const ZXing::PointI &corner : position)
        points.append(QPoint(corner.x, corner.y));
    return points;
}

// Every 1-D code the strategy's rows cross. ZXing-cpp 1.4 asserts that a 1-D result it compares
// was seen on one row only, and aborts the process when it compares two that were each seen on
// several: asked for more than one 1-D code, it dies on a frame that shows one label twice side by
// side (and, with tryDownscale, on one label found at two scales). It is therefore only ever asked
// for one: each code found is painted out of a grey copy of the view, and the copy is read again
// until a read finds nothing. A code that comes back (bars the painting missed) is painted out
// again and reported once. Cost: a view without 1-D codes is read as before (one read, no copy); a
// view with codes pays the copy (0.1 ms for a 1920 x 1080 luminance plane) and one more read per
// code, the last of which searches the whole view in vain, as a view without codes does. Asking
// ZXing for several codes at once would cost more even where it does not abort: it can no longer
// stop at the first find, and its thorough search reads twice as many rows (two codes at
// 1920 x 1080, thorough search: about seven times as long as this).
ZXing::Results readLinearCodes(const ZXing::ImageView &view, const ReadStrategy &strategy, int formats)
{
    constexpr int maxReads = 8;
    // One copy per thread whose memory is kept from frame to frame: here, fresh pages for a
    // 1920 x 1080 copy cost fifty times the copy itself.
    thread_local MaskedLuminance masked;
    const ZXing::DecodeHints hints = hintsFor(strategy, formats, 1);
    ZXing::Results found;
    ZXing::ImageView current = view;
    for (int read = 0; read < maxReads; ++read) {
        ZXing::Results results = ZXing::ReadBarcodes(current, hints);
        if (results.empty())
            break;
        ZXing::Result &result = results.front();
        if (read == 0) {
            masked.copy(pixelLayout(view));
            current = imageView(masked.layout());
        }
        masked.paintOut(masked.linearCodeArea(corners(result.position())));
        const bool known = std::any_of(found.begin(), found.end(), [&result](const ZXing::Result &code) {
            return code.format() == result.format() && code.text() == result.text();
        });
        if (!known)
            found.push_back(std::move(result));
    }
    return found;
}

// 1-D codes and up to four 2-D codes, each kind in a pass of its own.
ZXing::Results readBarcodes(const ZXing::ImageView &view, const ReadStrategy &strategy, int formats)
{
    constexpr int linear = formatBits(ZXing::BarcodeFormat::LinearCodes);
    constexpr int maxMatrixCodes = 4;
    ZXing::Results results;
    if (formats & linear)
        results = readLinearCodes(view, strategy, formats & linear);
    if (formats & ~linear) {
        ZXing::Results matrix = ZXing::ReadBarcodes(view, hintsFor(strategy, formats & ~linear, maxMatrixCodes));
        results.insert(results.end(), matrix.begin(), matrix.end());
    }
    return results;
}

// The part of a frame a strategy reads, and where its pixels lie in the frame.
struct StrategyView
{
    ZXing::ImageView view{nullptr, 0, 0, ZXing::ImageFormat::Lum};
    TurnedLuminance turned; // the pixels of view when the strategy turns the frame
    QTransform toFrame;
};

StrategyView strategyView(const ZXing::ImageView &frame, const ReadStrategy &strategy)
{
    StrategyView part;
    const int top = int(frame.height() * strategy.top);
    const int height = int(frame.height() * strategy.height);
    if (strategy.turnDegrees != 0) {
        part.turned = turnedLuminance(pixelLayout(frame), QRectF(0, top, frame.width(), height), strategy.turnDegrees,
                                      strategy.subsampling);
        part.view = ZXing::ImageView(part.turned.pixels.data(), part.turned.width, part.turned.height, ZXing::ImageFormat::Lum);
        part.toFrame = part.turned.toFrame;
        return part;
    }
    const ZXing::ImageView rows = frame.cropped(0, top, frame.width(), height);
    part.view = strategy.subsampling > 1 ? rows.subsampled(strategy.subsampling) : rows;
    part.toFrame.translate(0, top);
    part.toFrame.scale(strategy.subsampling, strategy.subsampling);
    return part;
}

// Reading order: top to bottom, then left to right, by the codes' centres.
bool readsBefore(const DecodedBarcode &a, const DecodedBarcode &b)
{
    const auto centre = [](const DecodedBarcode &code) {
        QPointF sum;
        for (const QPointF &corner : code.corners)
            sum += corner;
        return code.corners.isEmpty() ? sum : sum / code.corners.size();
    };
    const QPointF first = centre(a);
    const QPointF second = centre(b);
    return first.y() != second.y() ? first.y() < second.y() : first.x() < second.x();
}

// Adds the code unless a code of its type with its text is there already.
void addNew(QList<DecodedBarcode> &codes, const DecodedBarcode &code)
{
    const bool known = std::any_of(codes.begin(), codes.end(), [&code](const DecodedBarcode &other) {
        return other.type == code.type && other.text == code.text;
    });
    if (!known)
        codes.append(code);
}

// A valid ZXing result of a wanted type as a code, its corners mapped into the frame.
std::optional<DecodedBarcode> decoded(const ZXing::Result &result, const QTransform &toFrame, const QStringList &wanted)
{
    if (!result.isValid())
        return std::nullopt;
    DecodedBarcode code;
    code.text = QString::fromStdString(result.text());
    code.type = platformType(result.format(), code.text, wanted);
    if (code.type.isEmpty())
        return std::nullopt;
    if (result.format() == ZXing::BarcodeFormat::UPCA)
        code.text.prepend(QLatin1Char('0'));
    for (const ZXing::PointI &corner : result.position())
        code.corners.append(toFrame.map(QPointF(corner.x, corner.y)));
    return code;
}

// A line of the region pass read by zbar (LineReader_p.h), if it gives a wanted type.
std::optional<DecodedBarcode> decodedLine(const TurnedLuminance &line, int formats, const QStringList &wanted)
{
    thread_local LineReader reader;
    const std::optional<LineCode> found = reader.read(line);
    if (!found)
        return std::nullopt;
    const ZXing::BarcodeFormat format = found->symbology == LineCode::Symbology::Code39   ? ZXing::BarcodeFormat::Code39
                                        : found->symbology == LineCode::Symbology::Code93 ? ZXing::BarcodeFormat::Code93
                                                                                          : ZXing::BarcodeFormat::Code128;
    if (!(formats & formatBits(format)))
        return std::nullopt;
    DecodedBarcode code;
    code.text = found->text;
    code.type = platformType(format, code.text, wanted);
    if (code.type.isEmpty())
        return std::nullopt;
    for (const QPointF &corner : {QPointF(found->from, 0), QPointF(found->to, 0), QPointF(found->to, line.height - 1),
                                  QPointF(found->from, line.height - 1)})
        code.corners.append(line.toFrame.map(corner));
    return code;
}

// The codes one strategy finds in a frame.
QList<DecodedBarcode> decodeWith(const ZXing::ImageView &frame, const ReadStrategy &strategy, int formats,
                                 const QStringList &wanted)
{
    // ZXing's detectors need a few pixels to work with; anything smaller holds no code.
    constexpr int smallestSide = 16;
    const StrategyView part = strategyView(frame, strategy);
    if (formats == 0 || part.view.width() < smallestSide || part.view.height() < smallestSide)
        return {};

    QList<DecodedBarcode> codes;
    try {
        for (const ZXing::Result &result : readBarcodes(part.view, strategy, formats)) {
            if (auto code = decoded(result, part.toFrame, wanted))
                codes.append(*code);
        }
    } catch (const std::exception &) {
        return {};
    } catch (...) {
        return {};
    }
    return codes;
}

// The 1-D code of a region: each band's pictures are read in turn until one gives a code. A text
// that carries no check character of its own (Code 39) counts only when two bands read it alike.
QList<DecodedBarcode> decodeLinearRegion(const cv::Mat &grey, const CodeRegion &region, LineReach reach, int formats,
                                         const QStringList &wanted)
{
    ZXing::DecodeHints hints = hintsFor(ReadStrategy{ReadStrategy::Binarizer::GlobalHistogram}, formats, 1);
    // A picture is the band's one line: there is no second row to agree with.
    hints.setMinLineCount(1);
    const std::vector<std::vector<TurnedLuminance>> bands = barProfiles(grey, region, reach);
    // Per text, the bands that read it.
    QList<QPair<DecodedBarcode, QSet<size_t>>> reads;
    for (size_t band = 0; band < bands.size(); ++band) {
        for (const TurnedLuminance &profile : bands[band]) {
            const ZXing::ImageView view(profile.pixels.data(), profile.width, profile.height, ZXing::ImageFormat::Lum);
            auto code = decoded(ZXing::ReadBarcode(view, hints), profile.toFrame, wanted);
            if (!code)
                code = decodedLine(profile, formats, wanted);
            if (!code)
                continue;
            auto read = std::find_if(reads.begin(), reads.end(), [&code](const auto &entry) {
                return entry.first.type == code->type && entry.first.text == code->text;
            });
            if (read == reads.end())
                read = reads.insert(reads.end(), {*code, {}});
            read->second.insert(band);
            break; // the band is read
        }
    }
    QList<DecodedBarcode> codes;
    for (const auto &[code, readingBands] : std::as_const(reads)) {
        if (code.type != MetadataObject::typeCode39 || readingBands.size() > 1)
            codes.append(code);
    }
    return codes;
}

// The 2-D code of a region, read thoroughly from its level, evened copy.
std::optional<DecodedBarcode> decodeMatrixRegion(const cv::Mat &grey, const CodeRegion &region, int formats,
                                                 const QStringList &wanted)
{
    const TurnedLuminance view = matrixView(grey, region);
    const ZXing::ImageView pixels(view.pixels.data(), view.width, view.height, ZXing::ImageFormat::Lum);
    ReadStrategy thorough;
    thorough.tryHarder = true;
    return decoded(ZXing::ReadBarcode(pixels, hintsFor(thorough, formats, 1)), view.toFrame, wanted);
}

// The region pass: the places of the frame that look like codes, each read from level,
// cleaned-up copies (RegionViews_p.h). It is in every frame's read, after the frame's own strategy
// found nothing, because it is what reads labels as a hand holds them at a car: seen at an angle
// (its bands follow the bars whatever their slant and tolerate the narrowing along the code),
// turned by more than the turned strategies cover, dark, glared, smeared by motion or out of focus
// (band averaging, flattening and sharpening). Everything it reports is ZXing's own decode, with
// the symbology's check characters verified where it has them (Code 93, Code 128, Data Matrix);
// a Code 39 text, which carries no check character of its own, counts only when two bands of the
// region read it alike. Its 1-D lines reach to the region's quiet zones in even frames and 0.8 of
// the region's length past it in odd ones (RegionViews_p.h): the longer line reads codes that the
// region finder saw in part only (a glare spot over one end), and spoils some that the shorter
// line reads. Cost at 1920 x 1080: 2-4 ms to find the regions, 2-4 ms per 1-D region (most of it
// zbar's and ZXing's reads of some forty lines), 2 ms per 2-D region.
QList<DecodedBarcode> decodeRegions(const ZXing::ImageView &frame, quint64 frameNumber, int formats, const QStringList &wanted)
{
    const LineReach reach = frameNumber % 2 == 0 ? LineReach::ToTheQuietZones : LineReach::PastTheRegion;
    constexpr int maxRegions = 3;
    constexpr int linear = formatBits(ZXing::BarcodeFormat::LinearCodes);
    const cv::Mat grey = greyMatrix(pixelLayout(frame));
    QList<DecodedBarcode> codes;
    try {
        for (const CodeRegion &region : findCodeRegions(grey, maxRegions)) {
            if (region.linear && (formats & linear)) {
                for (const DecodedBarcode &code : decodeLinearRegion(grey, region, reach, formats & linear, wanted))
                    addNew(codes, code);
            } else if (!region.linear && (formats & ~linear)) {
                if (const auto code = decodeMatrixRegion(grey, region, formats & ~linear, wanted))
                    addNew(codes, *code);
            }
        }
    } catch (const std::exception &) { // OpenCV's errors too: the codes found so far
    }
    return codes;
}

// The codes of a frame. A frame in which its strategy finds a code is read with the rest of the
// cycle too, so that it gives every code it holds: the strategies see different parts of the
// frame at different scales and slants, and a short code is often readable where a long one beside
// it is not (at half size, or at a slant of a few degrees in straight rows). Cost, on frames that
// show a code only: the whole cycle and each strategy's vain search for a further 1-D code, eight
// to ten times what the frame's own strategy took before (bench_barcode_reader). A frame in which
// the strategy finds nothing goes to the region pass, which looks at each place that shows a code
// by itself: what it finds needs no further search.
QList<DecodedBarcode> decode(const ZXing::ImageView &frame, quint64 frameNumber, int formats, const QStringList &wanted)
{
    QList<DecodedBarcode> codes = decodeWith(frame, ReadStrategy::forFrame(frameNumber), formats, wanted);
    const bool byStrategy = !codes.isEmpty();
    if (!byStrategy)
        codes = decodeRegions(frame, frameNumber, formats, wanted);
    for (int step = 1; byStrategy && step < ReadStrategy::cycleLength(); ++step) {
        const ReadStrategy strategy = ReadStrategy::forFrame(frameNumber + step);
        for (const DecodedBarcode &code : decodeWith(frame, strategy, formats, wanted))
            addNew(codes, code);
    }
    std::stable_sort(codes.begin(), codes.end(), readsBefore);
    return codes;
}

} // namespace

ReadStrategy ReadStrategy::forFrame(quint64 frameNumber)
{
    ReadStrategy strategy;
    const int step = int(frameNumber % cycleLength());
    switch (step) {
    case 0:
        break;
    case 1:
    case 3:
        strategy.tryHarder = true;
        strategy.tryRotate = true;
        strategy.subsampling = 2;
        strategy.top = 0.25;
        strategy.height = 0.5;
        strategy.turnDegrees = step == 1 ? 6 : -6;
        break;
    case 2:
        strategy.tryHarder = true;
        strategy.tryRotate = true;
        strategy.subsampling = 2;
        break;
    case 4:
        strategy.tryHarder = true;
        strategy.tryRotate = true;
        break;
    case 5:
        strategy.binarizer = Binarizer::GlobalHistogram;
        strategy.tryRotate = true;
        break;
    case 6:
        strategy.height = 0.5;
        break;
    default:
        strategy.top = 0.5;
        strategy.height = 0.5;
        break;
    }
    return strategy;
}

int ReadStrategy::cycleLength()
{
    return 8;
}

QStringList BarcodeReader::knownTypes()
{
    QStringList types;
    for (const TypeFormat &entry : typeFormats())
        types.append(entry.type);
    return types;
}

BarcodeReader::BarcodeReader(const QStringList &types)
{
    for (const TypeFormat &entry : typeFormats()) {
        if (types.contains(entry.type)) {
            m_types.append(entry.type);
            m_formats |= entry.formats;
        }
    }
}

QList<DecodedBarcode> BarcodeReader::read(const QVideoFrame &frame, quint64 frameNumber) const
{
    if (m_formats == 0 || !frame.isValid())
        return {};
    // Compressed frames and the rare layouts not read in place go through Qt's conversion.
    if (!readsInPlace(frame.pixelFormat()))
        return read(frame.toImage(), frameNumber);
    QList<DecodedBarcode> codes;
    useMappedFrame(frame, [&](const PixelLayout &layout) {
        codes = decode(imageView(layout), frameNumber, m_formats, m_types);
    });
    return codes;
}

QList<DecodedBarcode> BarcodeReader::read(const QImage &image, quint64 frameNumber) const
{
    if (m_formats == 0 || image.isNull())
        return {};
    // Transparent pixels are the paper the code is printed on (their colour is often black).
    if (image.hasAlphaChannel()) {
        QImage flattened(image.size(), QImage::Format_RGB32);
        flattened.fill(Qt::white);
        QPainter(&flattened).drawImage(0, 0, image);
        return read(flattened, frameNumber);
    }
    if (const auto layout = pictureLayout(image))
        return decode(imageView(*layout), frameNumber, m_formats, m_types);
    const QImage grey = greyOfPicture(image);
    return decode(imageView(*pictureLayout(grey)), frameNumber, m_formats, m_types);
}

} // namespace ZQTPlatform
