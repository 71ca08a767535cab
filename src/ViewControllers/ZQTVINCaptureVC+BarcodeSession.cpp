// The capture screen's barcode session: the scanning pipeline and views, the reader's callback
// with its repeat suppression, the still picture of a read and its report, and the VIN rule for
// decoded payloads.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/VINPayload_p.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "lib/StillCamera/StillCamera.h"
#include "platform/foundation/Dispatch.h"
#include "platform/ui/Font.h"
#include "platform/ui/Label.h"
#include "platform/foundation/Log.h"
#include "platform/ui/View.h"

#include <QPainter>
#include <QPixmap>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr qreal scanLabelFontSize = 28.0;
constexpr int scanLabelHeight = 40;
constexpr int scanLabelOffset = 40;
constexpr int centerLineHeight = 3;
const QColor centerLineColor = QColor::fromRgbF(1.0, 118.0 / 255.0, 89.0 / 255.0, 1.0);

// The guide picture drawn at the size of the camera area: scaled as a whole, its proportions kept,
// to fit and centred, so that its corners keep their shape; the bands left beside it repeat its
// outermost rows or columns (for the shipped picture, the dimmed surround). Null for a null
// picture or an empty area.
QPixmap guidePixmap(const Image &picture, const QSize &size)
{
    const QImage source = picture.bitmap();
    if (source.isNull() || size.isEmpty())
        return QPixmap();
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    const QSize fitted = source.size().scaled(size, Qt::KeepAspectRatio);
    const QRect middle(QPoint((size.width() - fitted.width()) / 2, (size.height() - fitted.height()) / 2), fitted);
    const QRect all(QPoint(0, 0), size);
    const QRect edges = source.rect();
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(middle, source);
    if (middle.top() > 0) {
        painter.drawImage(QRect(all.topLeft(), QPoint(all.right(), middle.top() - 1)), source,
                          QRect(edges.topLeft(), QSize(edges.width(), 1)));
        painter.drawImage(QRect(QPoint(0, middle.bottom() + 1), all.bottomRight()), source,
                          QRect(edges.bottomLeft(), QSize(edges.width(), 1)));
    }
    if (middle.left() > 0) {
        painter.drawImage(QRect(all.topLeft(), QPoint(middle.left() - 1, all.bottom())), source,
                          QRect(edges.topLeft(), QSize(1, edges.height())));
        painter.drawImage(QRect(QPoint(middle.right() + 1, 0), all.bottomRight()), source,
                          QRect(edges.topRight(), QSize(1, edges.height())));
    }
    painter.end();
    return QPixmap::fromImage(canvas);
}

// The five barcode types a VIN is read from, in the order each code's type is compared.
const QStringList &acceptedTypes()
{
    static const QStringList types = {MetadataObject::typeCode39, MetadataObject::typeCode39Mod43,
                                      MetadataObject::typeCode93, MetadataObject::typeCode128,
                                      MetadataObject::typeDataMatrix};
    return types;
}

// The prompt while scanning; it mentions the printed VIN when that is read too.
QString scanningLabelText(bool readsText)
{
    return Constants::getConfigStringForKey(readsText ? QStringLiteral("ScanningLabelTextPrintedVIN")
                                                      : QStringLiteral("ScanningLabelText"));
}

QFont scanningLabelFont(const QFont &fallback)
{
    return Font::fontWithName(Constants::getConfigStringForKey(QStringLiteral("ScanningLabelTextFontType")),
                              scanLabelFontSize)
        .value_or(fallback);
}

} // namespace

void ZQTVINCaptureVC::initBarCodeScanner()
{
    logStep("initBarCodeScanner");
    // Every appearance builds the pipeline again; the one of an earlier appearance goes.
    dropBarcodePipeline();
    QWidget *cameraImageView = d->cameraImageView;
    if (cameraImageView)
        cameraImageView->setAttribute(Qt::WA_TransparentForMouseEvents);

    auto *highlight = new QWidget;
    highlight->setObjectName(QStringLiteral("highlightView"));
    highlight->setAttribute(Qt::WA_TransparentForMouseEvents);
    highlight->setStyleSheet(QStringLiteral("border: 3px solid transparent;"));
    d->highlightView = highlight;

    // Placed across the camera area's middle by layoutCameraArea.
    auto *line = new QWidget;
    line->setObjectName(QStringLiteral("centerLine"));
    line->resize(width(), centerLineHeight);
    setBackgroundColor(line, centerLineColor);
    line->setAttribute(Qt::WA_TransparentForMouseEvents);
    d->centerLine = line;

    d->session = std::make_shared<CaptureSession>();
    d->session->setSessionPreset(CaptureSession::presetHigh);
    d->device = CaptureDevice::defaultDeviceWithMediaType(CaptureDevice::mediaTypeVideo());
    d->input = CaptureDeviceInput::deviceInputWithDevice(d->device, nullptr);
    if (d->input)
        d->session->addInput(d->input);

    d->output = std::make_shared<MetadataOutput>();
    MetadataOutput *output = d->output.get();
    d->output->setMetadataObjectsDelegate(
        [this, output](const QList<MetadataObject> &objects, CaptureConnection *connection) {
            captureOutput(output, objects, connection);
        },
        this);
    // A label may carry a part number or a paint code beside the VIN, and the first accepted
    // code of a frame wins: the VIN is put first.
    d->output->setMetadataObjectsRanking(
        [](const MetadataObject &object) { return VINPayload::rank(object.stringValue); });
    d->session->addOutput(d->output);
    d->output->setMetadataObjectTypes(d->output->availableMetadataObjectTypes());
    initVINTextReader();

    d->prevLayer = new VideoPreviewLayer(d->session.get());
    d->prevLayer->setObjectName(QStringLiteral("prevLayer"));
    d->prevLayer->setVideoGravity(VideoPreviewLayer::gravityResizeAspectFill);
    if (cameraImageView)
        d->prevLayer->setBoundsCentredIn(cameraImageView);

    d->stillImageOutput = std::make_shared<StillImageOutput>();
    d->stillImageOutput->setOutputSettings({{StillImageOutput::videoCodecKey, StillImageOutput::videoCodecJPEG}});
    d->session->addOutput(d->stillImageOutput);
    watchCaptureDevice();
}

void ZQTVINCaptureVC::startBarCodeScanner()
{
    logStep("startBarCodeScanner");
    QWidget *cameraImageView = d->cameraImageView;
    const QRect cameraFrame = cameraImageView ? cameraImageView->geometry() : QRect();
    if (d->highlightView)
        d->highlightView->move(QPoint(cameraFrame.width() / 2, cameraFrame.height() / 2)
                               - QPoint(d->highlightView->width() / 2, d->highlightView->height() / 2));
    if (d->prevLayer)
        d->prevLayer->addToSuperlayer(cameraImageView);

    if (!d->cameraOverlayImage) {
        auto *overlay = new QLabel;
        overlay->setObjectName(QStringLiteral("cameraOverlayImage"));
        overlay->setAttribute(Qt::WA_TransparentForMouseEvents);
        d->cameraOverlayImage = overlay;
    }
    QLabel *overlay = d->cameraOverlayImage;
    setBackgroundColor(overlay, QColor());

    delete d->scanResultLbl.data();
    auto *label = new Label;
    label->setObjectName(QStringLiteral("scanResultLbl"));
    label->setAlignment(Qt::AlignCenter);
    setTextColor(label, Qt::white);
    label->setFont(scanningLabelFont(label->font()));
    // A narrow camera area draws the prompt or the payload smaller rather than cut.
    label->setAdjustsFontSizeToFitWidth(true);
    label->setText(scanningLabelText(d->enableVINTextReading));
    d->scanResultLbl = label;

    addSubview(overlay, label);
    addSubview(overlay, d->centerLine);
    addSubview(d->scanOverlayView, cameraImageView);
    addSubview(d->scanOverlayView, overlay);
    layoutCameraArea();

    if (d->session)
        d->session->startRunning();
    d->isVINScanInProcess = false;
    restartVINTextReader();

    if (d->scanOverlayView) {
        d->scanOverlayView->show();
        d->scanOverlayView->raise();
    }
    if (QPushButton *button = manualEnterButton())
        button->raise();
    if (isCameraUnavailable())
        showCameraUnavailable();
}

void ZQTVINCaptureVC::layoutCameraArea()
{
    QWidget *area = d->scanOverlayView;
    QWidget *cameraImageView = d->cameraImageView;
    if (!area || !cameraImageView)
        return;
    if (cameraImageView->parentWidget() == area)
        cameraImageView->setGeometry(area->rect());
    const QRect cameraFrame = cameraImageView->geometry();
    if (d->prevLayer)
        d->prevLayer->setBoundsCentredIn(cameraImageView);
    if (d->camera)
        d->camera->setGeometry(cameraFrame);

    QLabel *overlay = d->cameraOverlayImage;
    if (!overlay)
        return;
    overlay->setGeometry(0, 0, cameraFrame.width(), cameraFrame.height());
    // Drawn again only when the area's size changed (not at every start of the scanner).
    if (overlay->pixmap().size() != cameraFrame.size()) {
        const Image overlayPicture = d->vinScanItem ? d->vinScanItem->cameraOverlayImage() : Image();
        overlay->setPixmap(guidePixmap(overlayPicture, cameraFrame.size()));
    }
    // One rule in both orientations: just below the top of the overlay picture.
    if (d->scanResultLbl)
        d->scanResultLbl->setGeometry(0, scanLabelOffset, overlay->width(), scanLabelHeight);
    if (QWidget *line = d->centerLine) {
        line->resize(width(), line->height());
        line->move(cameraFrame.center() - QPoint(line->width() / 2, line->height() / 2));
    }
}

void ZQTVINCaptureVC::stopBarCodeScanner()
{
    logStep("stopBarCodeScanner");
    d->isVINScanInProcess = false;
    if (d->session)
        d->session->stopRunning();
    removeFromSuperview(d->highlightView);
    removeFromSuperview(d->scanResultLbl);
    removeFromSuperview(d->centerLine);
    if (d->prevLayer)
        d->prevLayer->removeFromSuperlayer();
    if (d->scanOverlayView) {
        d->scanOverlayView->hide();
        d->scanOverlayView->lower();
    }
}

void ZQTVINCaptureVC::deinitBarCodeScanner()
{
    logStep("deinitBarCodeScanner");
    dropBarcodePipeline();
}

void ZQTVINCaptureVC::dropBarcodePipeline()
{
    QObject::disconnect(d->deviceFailure);
    delete d->highlightView.data();
    delete d->scanResultLbl.data();
    delete d->centerLine.data();
    d->session.reset();
    d->device = nullptr;
    d->input.reset();
    d->output.reset();
    d->textOutput.reset();
    delete d->prevLayer.data();
    // The overlay picture is not part of the pipeline; it goes when it is out of the view tree.
    if (d->cameraOverlayImage && !d->cameraOverlayImage->parent())
        delete d->cameraOverlayImage.data();
}

void ZQTVINCaptureVC::captureOutput(MetadataOutput *output, const QList<MetadataObject> &metadataObjects,
                                    CaptureConnection *connection)
{
    Q_UNUSED(output);
    Q_UNUSED(connection);
    // A code in view: the printed VIN waits until none has been seen for its delay.
    restartVINTextReader();
    QRectF highlight;
    QString payload;
    if (!d->isVINScanInProcess) {
        for (const MetadataObject &object : metadataObjects) {
            if (!acceptedTypes().contains(object.type)) {
                if (d->scanResultLbl)
                    d->scanResultLbl->setText(scanningLabelText(d->enableVINTextReading));
                continue;
            }
            highlight = d->prevLayer ? d->prevLayer->transformedMetadataObjectForMetadataObject(object).bounds
                                     : QRectF();
            if (object.stringValue.isNull()) {
                if (d->scanResultLbl)
                    d->scanResultLbl->setText(scanningLabelText(d->enableVINTextReading));
                continue;
            }
            payload = object.stringValue;
            break;
        }
        if (!payload.isNull()) {
            logStep("captureOutput");
            captureStillOfRead(payload, VINSource::Barcode);
        }
    }
    if (d->highlightView)
        d->highlightView->setGeometry(highlight.toRect());
}

void ZQTVINCaptureVC::captureStillOfRead(const QString &payload, VINSource source)
{
    d->isVINScanInProcess = true;
    d->lastVINSource = source;
    {
        const QMutexLocker lock(&d->photoStateLock);
        // Validated (and logged) once, when the read is reported.
        d->vinInProcess = VINPayload::vinOf(payload);
    }
    if (d->scanResultLbl)
        d->scanResultLbl->setText(payload);
    if (!d->stillImageOutput)
        return;
    QPointer<ZQTVINCaptureVC> screen(this);
    std::shared_ptr<CompletionGate> gate = d->captureGate;
    d->stillImageOutput->captureStillImageAsynchronouslyFromConnection(
        d->stillImageOutput->connectionWithMediaType(CaptureDevice::mediaTypeVideo()),
        [screen, gate, payload](std::shared_ptr<const SampleBuffer> buffer, const Error &error) {
            // Capture queue. The screen is alive while the gate is open; it closes
            // the gate first thing in its destructor.
            QMutexLocker locker(&gate->lock);
            if (gate->open)
                screen->completeStillCapture(payload, buffer, error);
        });
}

void ZQTVINCaptureVC::stillImageCaptureCompleted(const QString &payload, std::shared_ptr<const SampleBuffer> buffer,
                                                 const Error &error)
{
    const std::shared_ptr<CompletionGate> gate = d->captureGate;
    QMutexLocker locker(&gate->lock);
    if (gate->open)
        completeStillCapture(payload, buffer, error);
}

void ZQTVINCaptureVC::completeStillCapture(const QString &payload, const std::shared_ptr<const SampleBuffer> &buffer,
                                           const Error &error)
{
    // Capture queue, with the capture gate held: the screen cannot be destroyed meanwhile.
    // View changes run on the GUI thread while this thread waits with the gate released, so the
    // destructor never waits for a thread that waits for it; once the gate is taken again and
    // found closed, the rest is skipped.
    logStep("stillImageCaptureCompleted");
    const std::shared_ptr<CompletionGate> gate = d->captureGate;
    QPointer<ZQTVINCaptureVC> screen(this);
    auto onMain = [&gate, &screen](const std::function<void()> &work) {
        gate->lock.unlock();
        Dispatch::mainSync([&screen, &work] {
            if (screen)
                work();
        });
        gate->lock.lock();
        return gate->open;
    };

    const QByteArray jpeg = buffer ? StillImageOutput::jpegStillImageNSDataRepresentation(*buffer) : QByteArray();
    const Image image = jpeg.isEmpty() ? Image() : Image::fromData(jpeg);
    Error reported = error;
    if (!image.isNull()) {
        const bool alive = onMain([this, &image] {
            d->vinBarCodeImage = image;
            if (d->manuallyEnterVINBtn)
                d->manuallyEnterVINBtn->hide();
        });
        if (!alive)
            return;
        processUsePhotoCompletionHandler(image);
        if (!onMain([this] {
                stopBarCodeScanner();
                dismissOverlayIfShown();
            }))
            return;
        reported = Error();
    }
    // Without a picture (no buffer, or one that makes no image) the host gets the camera's error
    // as the capture delivered it.
    const ZQTVINDetails details = validateVIN(payload);
    {
        const QMutexLocker lock(&d->photoStateLock);
        d->vinInProcess.clear();
    }
    sendTimeSpent();
    // The delegate is called with the gate released: a host may close the screen from it, also
    // through a blocking call to the GUI thread, whose destructor then takes the gate. Nothing of
    // the screen is touched from here on.
    VinScannerVCDelegate *delegate = d->delegate;
    if (!delegate)
        return;
    gate->lock.unlock();
    delegate->didCompleteScanning(details.VIN(), true, details.isValid(), reported);
    gate->lock.lock();
}

void ZQTVINCaptureVC::processToggleBarCodeWithImageExists(bool imageExists)
{
    logStep("processToggleBarCodeWithImageExists");
    if (!imageExists) {
        if (d->camera)
            d->camera->stop();
        if (d->manuallyEnterVINBtn)
            d->manuallyEnterVINBtn->show();
        startBarCodeScanner();
        return;
    }
    if (d->manuallyEnterVINBtn)
        d->manuallyEnterVINBtn->hide();
    if (d->scanResultLbl) {
        d->scanResultLbl->setText(scanningLabelText(d->enableVINTextReading));
        d->scanResultLbl->setFont(scanningLabelFont(d->scanResultLbl->font()));
    }
    if (d->cameraImageView)
        d->cameraImageView->show();
}

ZQTVINDetails ZQTVINCaptureVC::validateVIN(const QString &payload) const
{
    logStep("validateVIN");
    // The checks log what breaks the rule, for each text tried; the payload less its "I" stays
    // the VIN when no text passes.
    bool valid = false;
    ZQTVINDetails details;
    details.setVIN(VINPayload::vinOf(payload, [&valid](const QString &text) { return valid = VINUtility::checkVINValidity(text); }));
    details.setIsValid(valid);
    return details;
}

CaptureSession *ZQTVINCaptureVC::session() const
{
    return d->session.get();
}

CaptureDevice *ZQTVINCaptureVC::device() const
{
    return d->device;
}

MetadataOutput *ZQTVINCaptureVC::output() const
{
    return d->output.get();
}

StillImageOutput *ZQTVINCaptureVC::stillImageOutput() const
{
    return d->stillImageOutput.get();
}

VideoPreviewLayer *ZQTVINCaptureVC::prevLayer() const
{
    return d->prevLayer;
}

QWidget *ZQTVINCaptureVC::highlightView() const
{
    return d->highlightView;
}

QWidget *ZQTVINCaptureVC::centerLine() const
{
    return d->centerLine;
}

QLabel *ZQTVINCaptureVC::scanResultLbl() const
{
    return d->scanResultLbl;
}

QLabel *ZQTVINCaptureVC::cameraOverlayImage() const
{
    return d->cameraOverlayImage;
}

bool ZQTVINCaptureVC::isVINScanInProcess() const
{
    return d->isVINScanInProcess;
}
