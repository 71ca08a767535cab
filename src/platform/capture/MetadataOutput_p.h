// The worker of the metadata output: reads one frame at a time on the output's own thread.
#pragma once

#include "platform/capture/BarcodeReader_p.h"

#include <QObject>
#include <QSizeF>
#include <QVideoFrame>
#include <memory>

namespace ZQTPlatform {

// Everything one frame's read needs, copied on the GUI thread so the worker never reads the
// output's state: the frame, the reader of the types wanted at that moment, and the frame's
// place in the strategy cycle.
struct MetadataReadJob
{
    QVideoFrame frame;
    std::shared_ptr<const BarcodeReader> reader;
    quint64 frameNumber = 0;
};

class MetadataReadWorker : public QObject
{
    Q_OBJECT

public:
    // Runs on the worker thread: reads the job's frame and reports it, codes or none.
    void read(const MetadataReadJob &job);

Q_SIGNALS:
    // Emitted on the worker thread once per job.
    void frameRead(const QList<ZQTPlatform::DecodedBarcode> &codes, const QSizeF &frameSize);
};

} // namespace ZQTPlatform
