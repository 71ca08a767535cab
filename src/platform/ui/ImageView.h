// The platform's image view: shows an image scaled to fit its bounds (aspect kept, centred on
// its background), or, while animating, cycles through its animation frames so that one full
// cycle takes the animation duration. Its layer may carry a border. Scenes name it as the
// custom widget class "ImageView". GUI thread only.
//
// Each picture is scaled smoothly to the size it is drawn at off the GUI thread, again after a
// resize; until that copy is there, the view draws the picture unsmoothed at the same place and
// size, so that a large picture (a camera still) never holds the GUI thread up.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QColor>
#include <QList>
#include <QWidget>
#include <memory>

namespace ZQTPlatform {

class ZQT_EXPORT ImageView : public QWidget
{
    Q_OBJECT

public:
    explicit ImageView(QWidget *parent = nullptr);
    // Shows the image; the view starts at the image's size in points.
    explicit ImageView(const Image &image, QWidget *parent = nullptr);
    ~ImageView() override;

    // Shown while not animating; the null image shows nothing but the background.
    Image image() const;
    void setImage(const Image &image);

    // The frames that startAnimating cycles through. Setting them stops a running animation.
    QList<Image> animationImages() const;
    void setAnimationImages(const QList<Image> &images);
    // Seconds for one pass over all frames; 0 (the default) plays 30 frames a second.
    double animationDuration() const;
    void setAnimationDuration(double seconds);
    // Cycles from the first frame until stopAnimating; nothing happens when there are no frames.
    void startAnimating();
    // Back to showing image.
    void stopAnimating();
    bool isAnimating() const;
    // What the view shows now: the current frame while animating, otherwise image.
    Image displayedImage() const;

    // The layer's border, drawn inside the bounds over the picture: width in points (0, the
    // default, draws none) and colour (opaque black by default).
    qreal borderWidth() const;
    void setBorderWidth(qreal width);
    QColor borderColor() const;
    void setBorderColor(const QColor &color);

    // The image's size in points (the first frame's while there is no image).
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void advanceFrame();

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
