#include "VinTextArt.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <random>

namespace VinTextArt {

namespace {

// The VIN's capitals on the carrier as drawn, before the carrier is put into the frame.
constexpr double cardCapHeight = 48;

QFont fontWithCapHeight(const QString &family, double capHeight, bool bold = false)
{
    QFont font(family);
    font.setPixelSize(100);
    font.setBold(bold);
    const double capPerPixel = QFontMetricsF(font).capHeight() / 100.0;
    font.setPixelSize(std::max(1, int(std::lround(capHeight / capPerPixel))));
    return font;
}

// What a carrier looks like before it is put into the frame, and where its VIN is.
struct Card
{
    QImage picture; // ARGB32_Premultiplied, transparent around the carrier
    QPointF vinCentre;
};

// A door-frame sticker: maker, dates, weights and a conformity statement around the VIN line.
Card doorSticker(const Scene &scene)
{
    static const char *makers[] = {"HONDA OF AMERICA MFG., INC.", "FORD MOTOR COMPANY", "TOYOTA MOTOR MFG. KENTUCKY",
                                   "GENERAL MOTORS LLC", "NISSAN NORTH AMERICA INC."};
    const QFont small = fontWithCapHeight(QStringLiteral("DejaVu Sans"), cardCapHeight * 0.5, true);
    const QFont vinFont = fontWithCapHeight(scene.fontFamily, cardCapHeight);
    const QString vinLine = QStringLiteral("VIN  ") + scene.vin;
    const double width = QFontMetricsF(vinFont).horizontalAdvance(vinLine) + 2 * cardCapHeight;
    const QStringList above = {QStringLiteral("MFD. BY %1").arg(QLatin1String(makers[scene.seed % 5])),
                               QStringLiteral("DATE %1/%2   GVWR 2155 KG (4751 LB)").arg(1 + scene.seed % 12, 2, 10, QLatin1Char('0')).arg(10 + scene.seed % 14),
                               QStringLiteral("GAWR FRT 1130 KG  RR 1080 KG")};
    const QStringList below = {QStringLiteral("THIS VEHICLE CONFORMS TO ALL APPLICABLE U.S. FEDERAL"),
                               QStringLiteral("MOTOR VEHICLE SAFETY STANDARDS IN EFFECT ON THE DATE"),
                               QStringLiteral("TYPE: PASSENGER CAR      PAINT NH-%1M").arg(700 + scene.seed % 99)};
    const double smallLine = cardCapHeight * 1.1;
    const double height = cardCapHeight * 2 + smallLine * (above.size() + below.size()) + cardCapHeight * 2.2;
    Card card{QImage(QSize(int(width), int(height)), QImage::Format_ARGB32_Premultiplied), {}};
    card.picture.fill(Qt::transparent);
    QPainter painter(&card.picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(120, 120, 120), 3));
    painter.setBrush(QColor(236, 236, 230));
    painter.drawRoundedRect(QRectF(1.5, 1.5, width - 3, height - 3), 18, 18);
    painter.setPen(QColor(25, 25, 30));
    double y = cardCapHeight;
    painter.setFont(small);
    for (const QString &line : above) {
        y += smallLine;
        painter.drawText(QPointF(cardCapHeight, y), line);
    }
    y += cardCapHeight * 1.6;
    painter.setFont(vinFont);
    painter.drawText(QPointF(cardCapHeight, y), vinLine);
    const double vinLeft = cardCapHeight + QFontMetricsF(vinFont).horizontalAdvance(QStringLiteral("VIN  "));
    card.vinCentre = QPointF(vinLeft + QFontMetricsF(vinFont).horizontalAdvance(scene.vin) / 2, y - cardCapHeight / 2);
    y += cardCapHeight * 0.6;
    painter.setFont(small);
    for (const QString &line : below) {
        y += smallLine;
        painter.drawText(QPointF(cardCapHeight, y), line);
    }
    return card;
}

// A VIN plate of dark metal, the characters stamped up: light faces with a shadow below right.
Card embossedPlate(const Scene &scene)
{
    const QFont font = fontWithCapHeight(scene.fontFamily, cardCapHeight, true);
    const QFontMetricsF metrics(font);
    const double width = metrics.horizontalAdvance(scene.vin) + 3 * cardCapHeight;
    const double height = cardCapHeight * 3;
    Card card{QImage(QSize(int(width), int(height)), QImage::Format_ARGB32_Premultiplied), {}};
    card.picture.fill(Qt::transparent);
    QPainter painter(&card.picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient metal(0, 0, 0, height);
    metal.setColorAt(0, QColor(78, 80, 86));
    metal.setColorAt(1, QColor(52, 54, 60));
    painter.setPen(Qt::NoPen);
    painter.setBrush(metal);
    painter.drawRoundedRect(QRectF(0, 0, width, height), 10, 10);
    painter.setBrush(QColor(30, 30, 34));
    painter.drawEllipse(QPointF(cardCapHeight * 0.6, height / 2), 7, 7);
    painter.drawEllipse(QPointF(width - cardCapHeight * 0.6, height / 2), 7, 7);
    const QPointF origin(1.5 * cardCapHeight, height / 2 + cardCapHeight / 2);
    painter.setFont(font);
    painter.setPen(QColor(25, 25, 28));
    painter.drawText(origin + QPointF(3, 3), scene.vin);
    painter.setPen(QColor(200, 202, 205));
    painter.drawText(origin - QPointF(1, 1), scene.vin);
    painter.setPen(QColor(165, 167, 172));
    painter.drawText(origin, scene.vin);
    card.vinCentre = QPointF(origin.x() + metrics.horizontalAdvance(scene.vin) / 2, height / 2);
    return card;
}

// A registration form on tinted paper: labelled fields, the VIN typed in a box of its own.
Card formField(const Scene &scene)
{
    static const QColor tints[] = {QColor(222, 238, 222), QColor(246, 226, 230), QColor(226, 232, 246)};
    const QFont label = fontWithCapHeight(QStringLiteral("Liberation Sans"), cardCapHeight * 0.45);
    const QFont typed = fontWithCapHeight(scene.fontFamily, cardCapHeight);
    const double boxWidth = QFontMetricsF(typed).horizontalAdvance(scene.vin) + cardCapHeight * 1.2;
    const double width = boxWidth + cardCapHeight * 2;
    const double height = cardCapHeight * 9;
    Card card{QImage(QSize(int(width), int(height)), QImage::Format_ARGB32_Premultiplied), {}};
    card.picture.fill(tints[scene.seed % 3]);
    QPainter painter(&card.picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(60, 70, 90));
    painter.setFont(label);
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 1.2), QStringLiteral("CERTIFICATE OF REGISTRATION - PART 1"));
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 2.4), QStringLiteral("Make / Model"));
    painter.drawText(QPointF(cardCapHeight * 9, cardCapHeight * 2.4), QStringLiteral("First registered"));
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 4.2), QStringLiteral("Vehicle identification number (VIN)"));
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 7.6), QStringLiteral("Registration mark"));
    painter.setPen(QPen(QColor(90, 100, 120), 2));
    painter.setBrush(Qt::NoBrush);
    const QRectF box(cardCapHeight, cardCapHeight * 4.6, boxWidth, cardCapHeight * 2);
    painter.drawRect(box);
    painter.setPen(QColor(20, 20, 35));
    painter.setFont(fontWithCapHeight(QStringLiteral("Liberation Sans"), cardCapHeight * 0.6));
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 3.3), QStringLiteral("SKODA OCTAVIA"));
    painter.drawText(QPointF(cardCapHeight * 9, cardCapHeight * 3.3), QStringLiteral("12.03.2016"));
    painter.drawText(QPointF(cardCapHeight, cardCapHeight * 8.5), QStringLiteral("AB16 XYZ"));
    painter.setFont(typed);
    painter.drawText(QPointF(box.left() + cardCapHeight * 0.6, box.center().y() + cardCapHeight / 2), scene.vin);
    card.vinCentre = box.center();
    return card;
}

Card cardOf(const Scene &scene)
{
    switch (scene.carrier) {
    case Carrier::EmbossedPlate:
        return embossedPlate(scene);
    case Carrier::FormField:
        return formField(scene);
    default:
        return doorSticker(scene);
    }
}

// What lies around the carrier: painted metal for a sticker, a dashboard for a plate, a desk for
// a form, each shaded across the frame.
QImage surroundings(const Scene &scene)
{
    QImage frame(scene.frameSize, QImage::Format_RGB32);
    QPainter painter(&frame);
    QLinearGradient shade(0, 0, scene.frameSize.width(), scene.frameSize.height());
    switch (scene.carrier) {
    case Carrier::EmbossedPlate:
        shade.setColorAt(0, QColor(34, 34, 38));
        shade.setColorAt(1, QColor(12, 12, 14));
        break;
    case Carrier::FormField:
        shade.setColorAt(0, QColor(150, 118, 84));
        shade.setColorAt(1, QColor(96, 72, 50));
        break;
    default:
        shade.setColorAt(0, QColor(120, 20, 24));
        shade.setColorAt(1, QColor(60, 8, 10));
        break;
    }
    painter.fillRect(frame.rect(), shade);
    return frame;
}

// Where the carrier lands in the frame: its VIN centred on the scene's centre at the scene's text
// height, turned by the tilt, the right side shortened by the perspective.
QTransform placement(const Card &card, const Scene &scene)
{
    const double scale = scene.textHeight / cardCapHeight;
    QTransform affine;
    affine.translate(scene.centre.x() * scene.frameSize.width(), scene.centre.y() * scene.frameSize.height());
    affine.rotate(scene.tiltDegrees);
    affine.scale(scale, scale);
    affine.translate(-card.vinCentre.x(), -card.vinCentre.y());
    const QRectF rect = card.picture.rect();
    const QPolygonF source = QPolygonF(rect).mid(0, 4);
    QPolygonF target = affine.map(source);
    // Corners 1 and 2 are the right edge: pulled towards its middle.
    const QPointF rightMiddle = (target[1] + target[2]) / 2;
    target[1] = rightMiddle + (target[1] - rightMiddle) * (1 - scene.perspective);
    target[2] = rightMiddle + (target[2] - rightMiddle) * (1 - scene.perspective);
    QTransform transform;
    QTransform::quadToQuad(source, target, transform);
    return transform;
}

// A blur as a lens out of focus gives it: the frame scaled down and smoothly up again.
void defocus(QImage &frame, double radius)
{
    if (radius < 0.5)
        return;
    const double factor = 1.0 + radius;
    const QSize small(std::max(1, int(frame.width() / factor)), std::max(1, int(frame.height() / factor)));
    frame = frame.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .scaled(frame.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_RGB32);
}

// A bright reflection (a window, the sky on the windscreen) beside the VIN's centre.
void addGlare(QImage &frame, const Scene &scene)
{
    if (scene.glare <= 0)
        return;
    const QPointF centre(scene.centre.x() * frame.width() + scene.textHeight * (3 + int(scene.seed % 5)),
                         scene.centre.y() * frame.height() - scene.textHeight * 0.5);
    QRadialGradient light(centre, scene.textHeight * 7);
    light.setColorAt(0, QColor(255, 255, 250, int(230 * scene.glare)));
    light.setColorAt(1, QColor(255, 255, 250, 0));
    QPainter painter(&frame);
    painter.setCompositionMode(QPainter::CompositionMode_Screen);
    painter.fillRect(frame.rect(), light);
}

// Glass between camera and plate: a faint green-grey film that lifts the blacks.
void behindGlass(QImage &frame)
{
    QPainter painter(&frame);
    painter.fillRect(frame.rect(), QColor(150, 170, 160, 50));
}

void addSensorNoise(QImage &frame, double sigma, quint32 seed)
{
    if (sigma <= 0)
        return;
    std::minstd_rand generator(seed * 7919u + 17u);
    std::normal_distribution<float> noise(0.0f, float(sigma));
    for (int y = 0; y < frame.height(); ++y) {
        auto *pixel = reinterpret_cast<QRgb *>(frame.scanLine(y));
        for (int x = 0; x < frame.width(); ++x) {
            const int delta = int(noise(generator));
            const auto channel = [delta](int value) { return std::clamp(value + delta, 0, 255); };
            pixel[x] = qRgb(channel(qRed(pixel[x])), channel(qGreen(pixel[x])), channel(qBlue(pixel[x])));
        }
    }
}

void jpegRoundTrip(QImage &frame, int quality)
{
    if (quality <= 0)
        return;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    frame.save(&buffer, "JPG", quality);
    frame = QImage::fromData(bytes, "JPG").convertToFormat(QImage::Format_RGB32);
}

} // namespace

QStringList fontFamilies()
{
    return {QStringLiteral("OCR B"), QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Liberation Mono"),
            QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")};
}

QImage renderScene(const Scene &scene)
{
    const Card card = cardOf(scene);
    QImage frame = surroundings(scene);
    {
        QPainter painter(&frame);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setTransform(placement(card, scene));
        painter.drawImage(0, 0, card.picture);
    }
    if (scene.carrier == Carrier::EmbossedPlate)
        behindGlass(frame);
    addGlare(frame, scene);
    defocus(frame, scene.blurRadius);
    addSensorNoise(frame, scene.noiseSigma, scene.seed);
    jpegRoundTrip(frame, scene.jpegQuality);
    return frame;
}

QList<Scene> variedScenes(const QStringList &vins, int count, const QSize &frameSize)
{
    static const Carrier carriers[] = {Carrier::DoorSticker, Carrier::EmbossedPlate, Carrier::FormField};
    const QStringList fonts = fontFamilies();
    const double size = frameSize.height() / 720.0;
    QList<Scene> scenes;
    for (int i = 0; i < count && !vins.isEmpty(); ++i) {
        Scene scene;
        scene.vin = vins[i % vins.size()];
        scene.carrier = carriers[i % 3];
        scene.fontFamily = fonts[(i / 3) % fonts.size()];
        scene.frameSize = frameSize;
        scene.centre = QPointF(0.5 + 0.04 * ((i * 5) % 7 - 3) / 3.0, 0.5 + 0.05 * ((i * 3) % 5 - 2) / 2.0);
        scene.textHeight = size * (20 + (i * 7) % 15);
        scene.tiltDegrees = 1.2 * ((i * 7) % 11 - 5);
        scene.perspective = 0.05 * (i % 4);
        scene.blurRadius = 0.4 * (i % 5);
        scene.noiseSigma = 3 + 2 * (i % 4);
        scene.glare = i % 6 == 0 ? 0.7 : i % 6 == 3 ? 0.4 : 0;
        scene.jpegQuality = i % 2 ? 55 : 85;
        scene.seed = quint32(i + 1);
        scenes.append(scene);
    }
    return scenes;
}

Scene momentOf(const Scene &scene, int frame, double fps)
{
    const double t = frame / fps;
    Scene moment = scene;
    moment.centre += QPointF(0.01 * std::sin(t * 1.9), 0.012 * std::sin(t * 1.3 + 0.4));
    moment.tiltDegrees += 0.8 * std::sin(t * 1.1);
    moment.seed = scene.seed * 1000u + quint32(frame);
    return moment;
}

} // namespace VinTextArt
