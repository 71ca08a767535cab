#include "ResultCard.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Dispatch.h"
#include "platform/ui/View.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QResizeEvent>
#include <QVBoxLayout>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace ZqtApps {

namespace {

const QColor validColor(0x3F, 0xB9, 0x50);
const QColor invalidColor(0xE5, 0x48, 0x4D);
constexpr int margin = 20;
constexpr int buttonHeight = 48;

QLabel *textLabel(const QString &name, const QString &text, int pointSize, bool bold, const QColor &color)
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    // Barcode payloads are shown as they are, never as markup.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    font.setPointSize(pointSize);
    font.setBold(bold);
    label->setFont(font);
    setTextColor(label, color);
    return label;
}

// A button in the configured button look (the component's own styling), with its fill and title
// colour.
QPushButton *actionButton(const QString &name, const QString &title, const QColor &fill, const QColor &text)
{
    auto *button = new QPushButton;
    button->setObjectName(name);
    button->setMinimumHeight(buttonHeight);
    button->setCursor(Qt::PointingHandCursor);
    QFont font = button->font();
    font.setBold(true);
    font.setPixelSize(17);
    Constants::configButton(button, fill, title, fill.darker(120),
                            Constants::getGlobalFloatForKey("ManualVINButtonCornerRadius"),
                            Constants::getGlobalColorForKey("ManualVINButtonBorderColor"),
                            Constants::getGlobalFloatForKey("ManualVINButtonBorderWidth"), font, text);
    return button;
}

} // namespace

ResultCard::ResultCard(const ScanResult &result, const QString &photoPath)
{
    setObjectName(QStringLiteral("resultCard"));
    setTitle(result.isVINScanned ? QStringLiteral("VIN read") : QStringLiteral("VIN typed"));
    setBackgroundColor(this, Constants::getGlobalColorForKey("ApplicationBackgroundColor"));
    const QColor textColor = Constants::getGlobalColorForKey("CarouselLabelColor");

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(12);

    QLabel *vin = textLabel(QStringLiteral("resultVin"), result.vin.isEmpty() ? QStringLiteral("(no VIN)") : result.vin,
                            22, true, textColor);
    vin->setFont([&] {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSize(22);
        font.setBold(true);
        return font;
    }());
    vin->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(vin);

    const QString mark = result.isVINValid ? QStringLiteral("\u2714  Valid VIN") : QStringLiteral("\u2716  Not a valid VIN");
    QLabel *verdict = textLabel(QStringLiteral("resultVerdict"), mark, 18, true,
                                result.isVINValid ? validColor : invalidColor);
    layout->addWidget(verdict);
    if (!result.error.isNull())
        layout->addWidget(textLabel(QStringLiteral("resultError"), result.error.localizedDescription(), 13, false,
                                    invalidColor));

    m_photo = textLabel(QStringLiteral("resultPhoto"),
                        photoPath.isEmpty() ? QStringLiteral("No photo: the VIN was typed") : QString(), 14, false,
                        textColor);
    m_photo->setMinimumHeight(120);
    if (!photoPath.isEmpty())
        m_photo->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_photo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    layout->addWidget(m_photo, 1);

    auto *actions = new QHBoxLayout;
    actions->setSpacing(12);
    m_scanAgain = actionButton(QStringLiteral("scanAgainButton"), QStringLiteral("Scan again"),
                               Constants::getGlobalColorForKey("ManualVINButtonColor"),
                               Constants::getGlobalColorForKey("ManualVINButtonFontColor"));
    m_done = actionButton(QStringLiteral("doneButton"), QStringLiteral("Done"),
                          Constants::getGlobalColorForKey("ApplicationHeaderColor"), textColor);
    actions->addWidget(m_scanAgain);
    actions->addWidget(m_done);
    layout->addLayout(actions);
    connect(m_scanAgain, &QPushButton::clicked, this, &ResultCard::scanAgainRequested);
    connect(m_done, &QPushButton::clicked, this, &ResultCard::doneRequested);

    if (!photoPath.isEmpty()) {
        // The photo is read off the GUI thread and shown when it arrives.
        const QPointer<ResultCard> self(this);
        Dispatch::globalAsync([self, photoPath] {
            const QImage photo(photoPath);
            Dispatch::mainAsync([self, photo] {
                if (self)
                    self->showPhoto(photo);
            });
        });
    }
}

void ResultCard::showPhoto(const QImage &photo)
{
    m_photoImage = photo;
    if (photo.isNull()) {
        m_photo->setText(QStringLiteral("The VIN photo could not be read"));
        return;
    }
    m_photo->setPixmap(QPixmap::fromImage(photo.scaled(m_photo->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void ResultCard::resizeEvent(QResizeEvent *event)
{
    ViewController::resizeEvent(event);
    if (!m_photoImage.isNull())
        showPhoto(m_photoImage);
}

} // namespace ZqtApps
