// The session's printed-VIN reader, an output beside the metadata output for VINs that carry no
// barcode: frames are read as text on a worker thread of its own, one at a time at the rate the
// reader sustains (frames arriving meanwhile are not kept), and a VIN is reported once it was
// read alike in enough frames. Nothing is read until no barcode was seen for a set delay.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureSession.h"

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <functional>
#include <memory>

namespace ZQTPlatform {

class ZQT_EXPORT VINTextOutput : public CaptureOutput
{
    Q_OBJECT

public:
    // A printed VIN read in agreeing frames.
    struct Reading
    {
        QString vin;
        bool checkDigitValid = false; // false: read alike in three frames without a valid check digit
        QRectF bounds;                // in the frame's unit square, as metadata objects
        QSizeF frameSize;
    };
    // Called on the GUI thread, once per read.
    using Delegate = std::function<void(const Reading &reading, CaptureConnection *connection)>;

    VINTextOutput();
    ~VINTextOutput() override; // stops and joins the worker

    // The delegate; its calls stop when context is destroyed (nullptr: no context check).
    void setDelegate(Delegate delegate, QObject *context);
    // Seconds without a barcode before frames go to the text reader (1 by default).
    double readingDelay() const;
    void setReadingDelay(double seconds);
    // Forgets the frames read so far and starts the delay again: at each start of scanning and
    // whenever a barcode was seen.
    void restart();

    // How many frames the text reader has read.
    quint64 framesRead() const;

protected:
    // Hands the frame over when the worker is idle and the delay has passed; drops it otherwise.
    void videoFrameArrived(const QVideoFrame &frame) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
