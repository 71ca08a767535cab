// The live picture of a capture session, as the platform's preview layer: a view without input
// of its own that draws the session's newest frame with a video gravity. Frames are scaled for
// drawing on a worker thread, so the GUI thread only paints. Disabling its connection freezes
// the picture on the last frame.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureSession.h"
#include "platform/capture/MetadataOutput.h"

#include <QImage>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <QWidget>
#include <memory>

namespace ZQTPlatform {

class ZQT_EXPORT VideoPreviewLayer : public QWidget
{
    Q_OBJECT

public:
    static const QString gravityResize;           // "AVLayerVideoGravityResize"
    static const QString gravityResizeAspect;     // "AVLayerVideoGravityResizeAspect"
    static const QString gravityResizeAspectFill; // "AVLayerVideoGravityResizeAspectFill"

    explicit VideoPreviewLayer(CaptureSession *session);
    ~VideoPreviewLayer() override;

    CaptureSession *session() const;
    QString videoGravity() const; // gravityResizeAspect by default
    void setVideoGravity(const QString &gravity);
    // Its own connection: enabled, orientation 1.
    CaptureConnection *connection() const;

    // Geometry as a layer has it: bounds (size; origin ignored) and position (the centre, in
    // the superlayer's coordinates).
    void setBounds(const QRectF &bounds);
    QRectF bounds() const;
    void setPosition(const QPointF &position);
    // Bounds of the view's bounds, centred on their mid-point: the layer covers the view.
    void setBoundsCentredIn(const QWidget *view);
    QRectF frame() const;
    // Puts the layer into the view (above its earlier layers, below its child views) and shows it.
    void addToSuperlayer(QWidget *view);
    void removeFromSuperlayer();

    // A code object with bounds and corners in this layer's coordinates.
    MetadataObject transformedMetadataObjectForMetadataObject(const MetadataObject &object) const;
    // The part of the frame (unit square) shown in a rectangle of this layer.
    QRectF metadataOutputRectOfInterestForRect(const QRectF &layerRect) const;
    // A point of this layer in the frame's unit square.
    QPointF captureDevicePointOfInterestForPoint(const QPointF &layerPoint) const;

    // The picture shown now (null before the first frame), at the layer's size.
    QImage currentPicture() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void scheduleDrawing();
    void drawPending();

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
