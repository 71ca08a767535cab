// The session's barcode reader, as the platform's metadata output: frames are read on a worker
// thread of its own (one frame in flight, the newest frame wins, the rest dropped), and the codes
// found go to the delegate on the GUI thread as machine-readable code objects with the
// platform's type names.
#pragma once

#include "ZQTGlobal.h"
#include "platform/capture/CaptureSession.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace ZQTPlatform {

// A machine-readable code found in a frame. Bounds and corners are in the frame's unit square
// (0..1 on both axes, x to the right and y down in the frame as delivered), as the platform
// gives them; a preview layer converts them to its own coordinates.
struct ZQT_EXPORT MetadataObject
{
    QString type;         // e.g. "org.iso.Code39"
    QString stringValue;  // a null string when the code carries no text
    QRectF bounds;
    QList<QPointF> corners; // clockwise from the symbol's top left
    QSizeF frameSize;       // pixels of the frame it was found in

    // The platform's type names.
    static const QString typeCode39;        // "org.iso.Code39"
    static const QString typeCode39Mod43;   // "org.iso.Code39Mod43"
    static const QString typeCode93;        // "com.intermec.Code93"
    static const QString typeCode128;       // "org.iso.Code128"
    static const QString typeDataMatrix;    // "org.iso.DataMatrix"
    static const QString typeQRCode;        // "org.iso.QRCode"
    static const QString typeEAN13;         // "org.gs1.EAN-13"
    static const QString typeEAN8;          // "org.gs1.EAN-8"
    static const QString typeUPCE;          // "org.gs1.UPC-E"
    static const QString typePDF417;        // "org.iso.PDF417"
    static const QString typeAztec;         // "org.iso.Aztec"
    static const QString typeITF14;         // "org.gs1.ITF14"
    static const QString typeInterleaved2of5; // "org.ansi.Interleaved2of5"
};

class ZQT_EXPORT MetadataOutput : public CaptureOutput
{
    Q_OBJECT

public:
    // Called on the GUI thread with the codes of one frame (never empty): every code the frame's
    // read found, in reading order (top to bottom, then left to right) or by rank when a ranking
    // is set.
    using Delegate = std::function<void(const QList<MetadataObject> &objects, CaptureConnection *connection)>;
    // Puts the codes of a frame in the order an owner looking for one kind of code wants (the
    // platform leaves that order open): lower ranks are delivered first, codes of one rank in
    // reading order. Called on the GUI thread, once per code, just before delivery.
    using Ranking = std::function<int(const MetadataObject &object)>;

    MetadataOutput();
    ~MetadataOutput() override; // stops and joins the worker

    // Every type the reader knows (the list above).
    QStringList availableMetadataObjectTypes() const;
    // The types reported; none by default. Unknown names are ignored.
    QStringList metadataObjectTypes() const;
    void setMetadataObjectTypes(const QStringList &types);
    // The delegate; its calls stop when context is destroyed (nullptr: no context check).
    void setMetadataObjectsDelegate(Delegate delegate, QObject *context);
    // The ranking of each frame's codes; none by default (reading order).
    void setMetadataObjectsRanking(Ranking ranking);

    // How many frames the worker read and how many it dropped because it was busy.
    quint64 framesRead() const;
    quint64 framesDropped() const;

protected:
    void videoFrameArrived(const QVideoFrame &frame) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform
