// The label is drawn flat at four pixels per module, put into the frame by a perspective map at
// twice the frame's size and averaged down (so 2-pixel modules are sampled without aliasing), lit,
// blurred, clipped as a sensor saturates, given shot noise and read noise, and JPEG-encoded.
#include "FieldConditions.h"

#include <QBuffer>
#include <QFile>
#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QTextStream>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <random>

namespace FieldConditions {

namespace {

using BarcodeArt::Symbology;

constexpr int sourceModule = 4; // pixels per module of the flat label
constexpr double inkLevel = 0.06;
constexpr double fullWell = 400; // electrons at full scale: the shot noise's size
constexpr double readNoise = 1.5 / 255;

bool isLinear(Symbology symbology)
{
    return symbology != Symbology::DataMatrix && symbology != Symbology::QRCode;
}

// The flat label, paper 1 and ink inkLevel: the symbol with its quiet zone and the printed VIN
// under it. Also the symbol's rectangle on the label.
cv::Mat flatLabel(const FieldScene &scene, QRect *symbolRect)
{
    const int barHeight = isLinear(scene.symbology) ? 30 * sourceModule : 0;
    const QImage symbol = BarcodeArt::renderSymbol(scene.symbology, scene.vin, sourceModule, barHeight);
    QFont font(QStringLiteral("DejaVu Sans Mono"));
    font.setPixelSize(7 * sourceModule);
    const QString caption = QStringLiteral("VIN ") + scene.vin;
    const QFontMetrics metrics(font);
    const int padding = 3 * sourceModule;
    QImage label(std::max(symbol.width(), metrics.horizontalAdvance(caption)) + 2 * padding,
                 symbol.height() + metrics.height() + 2 * padding, QImage::Format_Grayscale8);
    label.fill(255);
    QPainter painter(&label);
    *symbolRect = QRect((label.width() - symbol.width()) / 2, padding, symbol.width(), symbol.height());
    painter.drawImage(symbolRect->topLeft(), symbol);
    painter.setFont(font);
    painter.drawText(QRect(0, padding + symbol.height(), label.width(), metrics.height()), Qt::AlignHCenter, caption);
    painter.end();

    cv::Mat grey(label.height(), label.width(), CV_8UC1, const_cast<uchar *>(label.constBits()), size_t(label.bytesPerLine()));
    cv::Mat flat;
    grey.convertTo(flat, CV_32F, (1 - inkLevel) / 255.0, inkLevel);
    return flat;
}

// The perspective map of the flat label into the frame: the label's far end is keystone narrower
// than its near end, its narrowest module modulePixels wide, turned about its centre.
cv::Matx33d labelToFrame(const FieldScene &scene, const cv::Size &label, const QRect &symbol)
{
    const double near = 1.0;
    const double far = 1.0 - scene.keystone;
    const double length = label.width * (near + far) / 2;
    const double left = scene.farEndRight ? near : far;
    const double right = scene.farEndRight ? far : near;
    const std::vector<cv::Point2f> from{{0, 0}, {float(label.width), 0}, {float(label.width), float(label.height)},
                                        {0, float(label.height)}};
    const auto edge = [&](double x, double height, double sign) {
        return cv::Point2f(float(x), float(sign * height * label.height / 2));
    };
    const std::vector<cv::Point2f> to{edge(-length / 2, left, -1), edge(length / 2, right, -1), edge(length / 2, right, 1),
                                      edge(-length / 2, left, 1)};
    cv::Matx33d map(cv::getPerspectiveTransform(from, to));

    // Scale so that the module at the far end of the symbol is modulePixels wide.
    const auto apply = [&map](double x, double y) {
        const cv::Vec3d p = map * cv::Vec3d(x, y, 1);
        return cv::Point2d(p[0] / p[2], p[1] / p[2]);
    };
    const double farX = scene.farEndRight ? symbol.right() - sourceModule : symbol.left();
    const double midY = symbol.center().y();
    const double farModule = cv::norm(apply(farX + sourceModule, midY) - apply(farX, midY));
    const double scale = scene.modulePixels / farModule;
    const double turn = scene.rotationDegrees * CV_PI / 180;
    const cv::Point2d centre(scene.centre.x() * scene.frameSize.width(), scene.centre.y() * scene.frameSize.height());
    const cv::Matx33d place(scale * std::cos(turn), -scale * std::sin(turn), centre.x,
                            scale * std::sin(turn), scale * std::cos(turn), centre.y, 0, 0, 1);
    return place * map;
}

// A dark door frame behind the label: slow shading with a fine grain, the same for every frame.
cv::Mat background(const cv::Size &size, quint32 seed)
{
    cv::RNG random(seed);
    cv::Mat coarse(5, 8, CV_32F);
    random.fill(coarse, cv::RNG::UNIFORM, 0.12, 0.45);
    cv::Mat shading;
    cv::resize(coarse, shading, size, 0, 0, cv::INTER_CUBIC);
    cv::Mat grain(size, CV_32F);
    random.fill(grain, cv::RNG::NORMAL, 0, 0.03);
    cv::GaussianBlur(grain, grain, cv::Size(), 1.2);
    return shading + grain;
}

cv::Mat motionKernel(double length, double degrees)
{
    const int size = 2 * int(std::ceil(length / 2)) + 1;
    cv::Mat kernel = cv::Mat::zeros(size, size, CV_32F);
    const double turn = degrees * CV_PI / 180;
    const cv::Point2d half(std::cos(turn) * length / 2, std::sin(turn) * length / 2);
    const cv::Point2d centre(size / 2, size / 2);
    constexpr int shift = 4;
    const auto fixed = [](const cv::Point2d &p) { return cv::Point(int(std::lround(p.x * 16)), int(std::lround(p.y * 16))); };
    cv::line(kernel, fixed(centre - half), fixed(centre + half), cv::Scalar(1), 1, cv::LINE_AA, shift);
    return kernel / cv::sum(kernel)[0];
}

// The scene before noise: label over background, lit, with glare, blurred, clipped to full scale.
cv::Mat opticalImage(const FieldScene &scene)
{
    QRect symbol;
    const cv::Mat flat = flatLabel(scene, &symbol);
    const cv::Size frameSize(scene.frameSize.width(), scene.frameSize.height());
    const cv::Size doubled(frameSize.width * 2, frameSize.height * 2);
    const cv::Matx33d toFrame = labelToFrame(scene, flat.size(), symbol);
    const cv::Matx33d toDoubled = cv::Matx33d(2, 0, 0, 0, 2, 0, 0, 0, 1) * toFrame;

    cv::Mat label;
    cv::Mat cover;
    cv::warpPerspective(flat, label, toDoubled, doubled, cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(0));
    cv::warpPerspective(cv::Mat::ones(flat.size(), CV_32F), cover, toDoubled, doubled, cv::INTER_LINEAR,
                        cv::BORDER_CONSTANT, cv::Scalar(0));
    cv::resize(label, label, frameSize, 0, 0, cv::INTER_AREA);
    cv::resize(cover, cover, frameSize, 0, 0, cv::INTER_AREA);
    cv::Mat image = label + background(frameSize, scene.seed).mul(1 - cover);
    image *= scene.whiteLevel;

    if (scene.glare > 0) {
        const cv::Vec3d at = toFrame * cv::Vec3d(symbol.left() + scene.glareAt.x() * symbol.width(),
                                                 symbol.top() + scene.glareAt.y() * symbol.height(), 1);
        const cv::Vec3d end = toFrame * cv::Vec3d(symbol.right(), symbol.center().y(), 1);
        const cv::Vec3d start = toFrame * cv::Vec3d(symbol.left(), symbol.center().y(), 1);
        const double spread = 0.12 * cv::norm(cv::Point2d(end[0] / end[2] - start[0] / start[2], end[1] / end[2] - start[1] / start[2]));
        const cv::Point2d centre(at[0] / at[2], at[1] / at[2]);
        for (int y = 0; y < image.rows; ++y) {
            auto *row = image.ptr<float>(y);
            for (int x = 0; x < image.cols; ++x) {
                const double r2 = (x - centre.x) * (x - centre.x) + (y - centre.y) * (y - centre.y);
                row[x] += float(scene.glare * std::exp(-r2 / (2 * spread * spread)));
            }
        }
    }

    const double meanModule = scene.modulePixels * (1 + 1 / std::pow(1 - scene.keystone, 2)) / 2;
    if (scene.motionModules > 0.1)
        cv::filter2D(image, image, -1, motionKernel(scene.motionModules * meanModule, scene.motionDegrees));
    if (scene.defocusPixels > 0)
        cv::GaussianBlur(image, image, cv::Size(), scene.defocusPixels);
    return cv::min(cv::max(image, 0), 1);
}

QByteArray jpeg(const cv::Mat &grey, int quality)
{
    QImage image(grey.cols, grey.rows, QImage::Format_Grayscale8);
    for (int y = 0; y < grey.rows; ++y)
        std::copy_n(grey.ptr<uchar>(y), grey.cols, image.scanLine(y));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", quality);
    return bytes;
}

} // namespace

QString symbologyName(Symbology symbology)
{
    switch (symbology) {
    case Symbology::Code39: return QStringLiteral("Code 39");
    case Symbology::Code93: return QStringLiteral("Code 93");
    case Symbology::Code128: return QStringLiteral("Code 128");
    case Symbology::DataMatrix: return QStringLiteral("Data Matrix");
    case Symbology::QRCode: return QStringLiteral("QR Code");
    }
    return {};
}

QStringList realVins(const QString &csvPath)
{
    QFile file(csvPath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList vins;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QStringList fields = in.readLine().split(QLatin1Char(','));
        if (fields.size() > 1 && fields[0].size() == 17 && fields[1] == QLatin1String("valid"))
            vins.append(fields[0]);
    }
    return vins;
}

FieldScene sceneAt(int index, quint32 seed, const QStringList &vins)
{
    static const Symbology order[] = {Symbology::Code39, Symbology::Code128, Symbology::Code93, Symbology::DataMatrix};
    std::mt19937 random(seed * 7919u + quint32(index));
    const auto uniform = [&random](double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); };

    FieldScene scene;
    scene.symbology = order[index % 4];
    scene.vin = vins.isEmpty() ? QStringLiteral("1HGCM82633A004352") : vins.at(index % vins.size());
    const bool large = (index / 4) % 2 == 1;
    scene.frameSize = large ? QSize(1920, 1080) : QSize(1280, 720);
    const bool matrix = scene.symbology == Symbology::DataMatrix;
    scene.modulePixels = matrix ? uniform(8, 11) : uniform(2, large ? 3.2 : 2.5);
    scene.keystone = uniform(0, 0.35);
    scene.farEndRight = random() % 2 == 0;
    scene.rotationDegrees = uniform(-15, 15);
    // Most hands are fairly steady; a few frames are smeared by up to four modules.
    const double shake = uniform(0, 1);
    scene.motionModules = 4 * shake * shake;
    scene.motionDegrees = uniform(0, 180);
    scene.defocusPixels = uniform(0.3, 1.5); // the lens blurs by pixels, whatever the module size
    scene.whiteLevel = uniform(0.25, 1);
    if (uniform(0, 1) < 0.4) {
        scene.glare = uniform(0.3, 0.9);
        scene.glareAt = QPointF(uniform(0.2, 0.8), uniform(0.3, 0.7));
    }
    scene.jpegQuality = int(uniform(35, 85));
    scene.centre = QPointF(uniform(0.42, 0.58), uniform(0.4, 0.6));
    scene.seed = seed * 104729u + quint32(index);
    return scene;
}

SteadyCamera::SteadyCamera(const FieldScene &scene) : m_scene(scene), m_light(new cv::Mat(opticalImage(scene)))
{
}

SteadyCamera::~SteadyCamera() = default;

QByteArray SteadyCamera::jpegFrame(int frameIndex) const
{
    const cv::Mat &light = *m_light;
    cv::Mat noise(light.size(), CV_32F);
    cv::RNG(m_scene.seed * 31u + quint32(frameIndex) + 1).fill(noise, cv::RNG::NORMAL, 0, 1);
    cv::Mat shotSigma;
    cv::sqrt(light * (1 / fullWell), shotSigma);
    const cv::Mat noisy = light + noise.mul(shotSigma + readNoise);
    cv::Mat grey;
    noisy.convertTo(grey, CV_8U, 255);
    return jpeg(grey, m_scene.jpegQuality);
}

QImage SteadyCamera::frame(int frameIndex) const
{
    return QImage::fromData(jpegFrame(frameIndex), "JPG").convertToFormat(QImage::Format_Grayscale8);
}

} // namespace FieldConditions
