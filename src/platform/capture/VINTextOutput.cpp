#include "platform/capture/VINTextOutput.h"

#include "platform/capture/FrameLayout_p.h"
#include "platform/capture/ReadWorker_p.h"
#include "platform/capture/VINTextReader_p.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QVideoFrame>

namespace ZQTPlatform {

struct VINTextOutput::Private
{
    explicit Private(VINTextOutput *output) : q(output) {}

    // All of these run on the GUI thread.
    bool wantsText() const;
    void frameRead(const QList<VINTextCandidate> &candidates, const QSizeF &frameSize);

    VINTextOutput *q;
    Delegate delegate;
    QPointer<QObject> context;
    bool hasContext = false;
    double readingDelay = 1.0;
    QElapsedTimer sinceRestart;
    VINTextConsensus consensus;
    // Frames of a reading started before the last restart are not counted.
    quint64 generation = 0;
    quint64 framesRead = 0;

    // Made and used on the worker thread only; destroyed after it, since the worker goes first.
    std::unique_ptr<VINTextReader> reader;
    ReadWorker worker{QStringLiteral("zqt.vin.text"), q};
};

bool VINTextOutput::Private::wantsText() const
{
    return delegate && !(hasContext && !context);
}

void VINTextOutput::Private::frameRead(const QList<VINTextCandidate> &candidates, const QSizeF &frameSize)
{
    ++framesRead;
    const std::optional<VINTextCandidate> read = consensus.add(candidates);
    // A frame read while its session was being stopped is not reported: a stopped session
    // delivers nothing.
    if (!read || !wantsText() || (q->session() && !q->session()->isRunning()))
        return;
    Reading reading;
    reading.vin = read->vin;
    reading.checkDigitValid = read->checkDigitValid;
    reading.frameSize = frameSize;
    reading.bounds = QRectF(read->box.x() / frameSize.width(), read->box.y() / frameSize.height(),
                            read->box.width() / frameSize.width(), read->box.height() / frameSize.height());
    // The delegate may stop the session or even destroy the output: nothing touches it after the call.
    const Delegate call = delegate;
    call(reading, q->connections().value(0));
}

VINTextOutput::VINTextOutput() : d(std::make_unique<Private>(this))
{
    // The engine's model loads before the first frame comes.
    d->worker.prepare([d = d.get()] { d->reader = std::make_unique<VINTextReader>(); });
    d->sinceRestart.start();
}

VINTextOutput::~VINTextOutput() = default;

void VINTextOutput::setDelegate(Delegate delegate, QObject *context)
{
    d->delegate = std::move(delegate);
    d->context = context;
    d->hasContext = context != nullptr;
}

double VINTextOutput::readingDelay() const
{
    return d->readingDelay;
}

void VINTextOutput::setReadingDelay(double seconds)
{
    d->readingDelay = std::max(0.0, seconds);
}

void VINTextOutput::restart()
{
    ++d->generation;
    d->consensus.clear();
    d->sinceRestart.restart();
}

quint64 VINTextOutput::framesRead() const
{
    return d->framesRead;
}

// Runs on the GUI thread (called by the session): only hands the frame over.
void VINTextOutput::videoFrameArrived(const QVideoFrame &frame)
{
    if (d->worker.isBusy() || !d->wantsText() || !frame.isValid()
        || d->sinceRestart.elapsed() < qint64(d->readingDelay * 1000))
        return;
    d->worker.start([d = d.get(), frame, generation = d->generation] {
        // Worker thread: only the reader of the private part is touched here. The reader wants
        // grey, which most frames hold as it is.
        QList<VINTextCandidate> candidates = d->reader->read(greyOfVideoFrame(frame));
        return [d, candidates = std::move(candidates), frameSize = QSizeF(frame.size()), generation] {
            if (generation == d->generation)
                d->frameRead(candidates, frameSize);
        };
    });
}

} // namespace ZQTPlatform
