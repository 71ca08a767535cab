// Frames arrive on the GUI thread and go to the worker one at a time; while the worker is busy the
// newest frame waits in a single slot, replacing (and dropping) the one that waited before it.
#include "platform/capture/MetadataOutput.h"

#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/ReadWorker_p.h"

#include <QPointer>
#include <QVideoFrame>

#include <algorithm>
#include <optional>
#include <vector>

namespace ZQTPlatform {

const QString MetadataObject::typeCode39 = QStringLiteral("org.iso.Code39");
const QString MetadataObject::typeCode39Mod43 = QStringLiteral("org.iso.Code39Mod43");
const QString MetadataObject::typeCode93 = QStringLiteral("com.intermec.Code93");
const QString MetadataObject::typeCode128 = QStringLiteral("org.iso.Code128");
const QString MetadataObject::typeDataMatrix = QStringLiteral("org.iso.DataMatrix");
const QString MetadataObject::typeQRCode = QStringLiteral("org.iso.QRCode");
const QString MetadataObject::typeEAN13 = QStringLiteral("org.gs1.EAN-13");
const QString MetadataObject::typeEAN8 = QStringLiteral("org.gs1.EAN-8");
const QString MetadataObject::typeUPCE = QStringLiteral("org.gs1.UPC-E");
const QString MetadataObject::typePDF417 = QStringLiteral("org.iso.PDF417");
const QString MetadataObject::typeAztec = QStringLiteral("org.iso.Aztec");
const QString MetadataObject::typeITF14 = QStringLiteral("org.gs1.ITF14");
const QString MetadataObject::typeInterleaved2of5 = QStringLiteral("org.ansi.Interleaved2of5");

namespace {

// A frame waiting for the worker, with the reader of the types wanted when it arrived.
struct WaitingFrame
{
    QVideoFrame frame;
    std::shared_ptr<const BarcodeReader> reader;
};

// A code in frame pixels as a code object in the frame's unit square.
MetadataObject metadataObject(const DecodedBarcode &code, const QSizeF &frameSize)
{
    MetadataObject object;
    object.type = code.type;
    object.stringValue = code.text;
    object.frameSize = frameSize;
    for (const QPointF &corner : code.corners)
        object.corners.append(QPointF(corner.x() / frameSize.width(), corner.y() / frameSize.height()));
    if (!object.corners.isEmpty()) {
        QPointF low = object.corners.first();
        QPointF high = low;
        for (const QPointF &corner : std::as_const(object.corners)) {
            low = QPointF(qMin(low.x(), corner.x()), qMin(low.y(), corner.y()));
            high = QPointF(qMax(high.x(), corner.x()), qMax(high.y(), corner.y()));
        }
        object.bounds = QRectF(low, high);
    }
    return object;
}

// The objects by rank, each rank in the order given.
QList<MetadataObject> ranked(const QList<MetadataObject> &objects, const MetadataOutput::Ranking &ranking)
{
    std::vector<std::pair<int, qsizetype>> order;
    for (qsizetype i = 0; i < objects.size(); ++i)
        order.emplace_back(ranking(objects[i]), i);
    std::stable_sort(order.begin(), order.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<MetadataObject> sorted;
    for (const auto &[rank, index] : order)
        sorted.append(objects[index]);
    return sorted;
}

} // namespace

struct MetadataOutput::Private
{
    explicit Private(MetadataOutput *output) : q(output) {}

    // All of these run on the GUI thread.
    bool wantsCodes() const;
    void handOver(WaitingFrame frame);
    void frameRead(const QList<DecodedBarcode> &codes, const QSizeF &frameSize);

    MetadataOutput *q;
    QStringList types;
    std::shared_ptr<const BarcodeReader> reader = std::make_shared<const BarcodeReader>(QStringList());
    Delegate delegate;
    Ranking ranking;
    QPointer<QObject> context;
    bool hasContext = false;
    std::optional<WaitingFrame> waiting;
    quint64 framesHandedOver = 0;
    quint64 framesRead = 0;
    quint64 framesDropped = 0;
    ReadWorker worker{QStringLiteral("zqt.vin.metadata"), q};
};

bool MetadataOutput::Private::wantsCodes() const
{
    return delegate && !(hasContext && !context) && !types.isEmpty();
}

// The frame's number is its place in the reader's strategy cycle.
void MetadataOutput::Private::handOver(WaitingFrame frame)
{
    worker.start([this, frame = std::move(frame), frameNumber = framesHandedOver++] {
        // Worker thread.
        QList<DecodedBarcode> codes = frame.reader->read(frame.frame, frameNumber);
        return [this, codes = std::move(codes), frameSize = QSizeF(frame.frame.size())] { frameRead(codes, frameSize); };
    });
}

void MetadataOutput::Private::frameRead(const QList<DecodedBarcode> &codes, const QSizeF &frameSize)
{
    ++framesRead;
    if (waiting) {
        WaitingFrame next = std::move(*waiting);
        waiting.reset();
        handOver(std::move(next));
    }

    // Codes of types dropped while the frame was read are not reported.
    QList<MetadataObject> objects;
    for (const DecodedBarcode &code : codes) {
        if (types.contains(code.type))
            objects.append(metadataObject(code, frameSize));
    }
    // A frame read while its session was being stopped is not reported: a stopped session
    // delivers nothing.
    if (objects.isEmpty() || !wantsCodes() || (q->session() && !q->session()->isRunning()))
        return;
    if (ranking)
        objects = ranked(objects, ranking);
    // The delegate may stop the session or even destroy the output: nothing touches it after the call.
    const Delegate call = delegate;
    call(objects, q->connections().value(0));
}

MetadataOutput::MetadataOutput() : d(std::make_unique<Private>(this))
{
}

MetadataOutput::~MetadataOutput() = default;

QStringList MetadataOutput::availableMetadataObjectTypes() const
{
    return BarcodeReader::knownTypes();
}

QStringList MetadataOutput::metadataObjectTypes() const
{
    return d->types;
}

void MetadataOutput::setMetadataObjectTypes(const QStringList &types)
{
    const QStringList known = BarcodeReader::knownTypes();
    d->types.clear();
    for (const QString &type : types) {
        if (known.contains(type) && !d->types.contains(type))
            d->types.append(type);
    }
    d->reader = std::make_shared<const BarcodeReader>(d->types);
}

void MetadataOutput::setMetadataObjectsDelegate(Delegate delegate, QObject *context)
{
    d->delegate = std::move(delegate);
    d->context = context;
    d->hasContext = context != nullptr;
}

void MetadataOutput::setMetadataObjectsRanking(Ranking ranking)
{
    d->ranking = std::move(ranking);
}

quint64 MetadataOutput::framesRead() const
{
    return d->framesRead;
}

quint64 MetadataOutput::framesDropped() const
{
    return d->framesDropped;
}

// Runs on the GUI thread (called by the session).
void MetadataOutput::videoFrameArrived(const QVideoFrame &frame)
{
    if (!d->wantsCodes() || !frame.isValid())
        return;
    WaitingFrame next{frame, d->reader};
    if (!d->worker.isBusy()) {
        d->handOver(std::move(next));
        return;
    }
    if (d->waiting)
        ++d->framesDropped;
    d->waiting = std::move(next);
}

} // namespace ZQTPlatform
