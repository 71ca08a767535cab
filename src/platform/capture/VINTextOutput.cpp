#include "platform/capture/VINTextOutput.h"

#include "platform/capture/VINTextOutput_p.h"
#include "platform/capture/VINTextReader_p.h"
#include "platform/capture/VideoFrames_p.h"
#include "platform/foundation/WorkerPriority_p.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QThread>

namespace ZQTPlatform {

VINTextReadWorker::VINTextReadWorker() = default;
VINTextReadWorker::~VINTextReadWorker() = default;

void VINTextReadWorker::prepare()
{
    if (!m_reader)
        m_reader = std::make_unique<VINTextReader>();
}

void VINTextReadWorker::read(const QVideoFrame &frame, quint64 generation)
{
    prepare();
    Q_EMIT frameRead(m_reader->read(imageFromVideoFrame(frame)), QSizeF(frame.size()), generation);
}

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
    bool busy = false;
    // Frames of a reading started before the last restart are not counted.
    quint64 generation = 0;
    quint64 framesRead = 0;

    QThread thread;
    VINTextReadWorker worker; // lives on thread; destroyed once the thread has finished
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
    d->thread.setObjectName(QStringLiteral("zqt.vin.text"));
    connect(&d->thread, &QThread::started, [] { lowerCurrentThreadPriority(); });
    d->worker.moveToThread(&d->thread);
    connect(&d->worker, &VINTextReadWorker::frameRead, this,
            [this](const QList<VINTextCandidate> &candidates, const QSizeF &frameSize, quint64 generation) {
                d->busy = false;
                if (generation == d->generation)
                    d->frameRead(candidates, frameSize);
            },
            Qt::QueuedConnection);
    d->thread.start();
    QMetaObject::invokeMethod(&d->worker, [worker = &d->worker] { worker->prepare(); }, Qt::QueuedConnection);
    d->sinceRestart.start();
}

VINTextOutput::~VINTextOutput()
{
    d->thread.quit();
    d->thread.wait();
}

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
    if (d->busy || !d->wantsText() || !frame.isValid()
        || d->sinceRestart.elapsed() < qint64(d->readingDelay * 1000))
        return;
    d->busy = true;
    QMetaObject::invokeMethod(&d->worker,
                              [worker = &d->worker, frame, generation = d->generation] { worker->read(frame, generation); },
                              Qt::QueuedConnection);
}

} // namespace ZQTPlatform
