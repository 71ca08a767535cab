// The worker of the VIN text output: reads one frame at a time on the output's own thread.
#pragma once

#include "platform/capture/VINTextCandidates_p.h"

#include <QObject>
#include <QSizeF>
#include <QVideoFrame>
#include <memory>

namespace ZQTPlatform {

class VINTextReader;

class VINTextReadWorker : public QObject
{
    Q_OBJECT

public:
    VINTextReadWorker();
    ~VINTextReadWorker() override;

    // Runs on the worker thread: loads the engine's model (before the first frame comes).
    void prepare();
    // Runs on the worker thread: reads the frame and reports it with the generation it was handed
    // over in.
    void read(const QVideoFrame &frame, quint64 generation);

Q_SIGNALS:
    // Emitted on the worker thread once per frame; boxes in frame pixels.
    void frameRead(const QList<ZQTPlatform::VINTextCandidate> &candidates, const QSizeF &frameSize,
                   quint64 generation);

private:
    std::unique_ptr<VINTextReader> m_reader;
};

} // namespace ZQTPlatform
