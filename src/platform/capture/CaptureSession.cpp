#include "platform/capture/CaptureSession.h"

#include <QVideoFrame>
#include <algorithm>

namespace ZQTPlatform {

const QString CaptureSession::presetLow = QStringLiteral("AVCaptureSessionPresetLow");
const QString CaptureSession::presetMedium = QStringLiteral("AVCaptureSessionPresetMedium");
const QString CaptureSession::presetHigh = QStringLiteral("AVCaptureSessionPresetHigh");
const QString CaptureSession::presetPhoto = QStringLiteral("AVCaptureSessionPresetPhoto");

// --- Ports and inputs.

CaptureInputPort::CaptureInputPort(const QString &mediaType, CaptureDevice *device)
    : m_mediaType(mediaType), m_device(device)
{
}

QString CaptureInputPort::mediaType() const
{
    return m_mediaType;
}

QRectF CaptureInputPort::cleanAperture() const
{
    return m_device ? QRectF(QPointF(0, 0), QSizeF(m_device->frameSize())) : QRectF();
}

CaptureDeviceInput::CaptureDeviceInput(CaptureDevice *device) : m_device(device) {}

std::shared_ptr<CaptureDeviceInput> CaptureDeviceInput::deviceInputWithDevice(CaptureDevice *device, Error *error)
{
    const Error reason = device ? device->availabilityError()
                                : Error(QStringLiteral("AVFoundationErrorDomain"), -11814,
                                        QStringLiteral("No capture device."));
    if (!reason.isNull()) {
        if (error)
            *error = reason;
        return nullptr;
    }
    return std::shared_ptr<CaptureDeviceInput>(new CaptureDeviceInput(device));
}

CaptureDevice *CaptureDeviceInput::device() const
{
    return m_device;
}

QList<CaptureInputPort> CaptureDeviceInput::ports() const
{
    return {CaptureInputPort(CaptureDevice::mediaTypeVideo(), m_device)};
}

// --- Connections and outputs.

CaptureConnection::CaptureConnection(QObject *owner) : QObject(owner) {}

QList<CaptureInputPort> CaptureConnection::inputPorts() const
{
    QList<CaptureInputPort> ports;
    if (!m_session)
        return ports;
    for (const std::shared_ptr<CaptureDeviceInput> &input : m_session->inputs())
        ports += input->ports();
    return ports;
}

bool CaptureConnection::isEnabled() const
{
    return m_enabled;
}

void CaptureConnection::setEnabled(bool enabled)
{
    m_enabled = enabled;
}

int CaptureConnection::videoOrientation() const
{
    return m_videoOrientation;
}

void CaptureConnection::setVideoOrientation(int orientation)
{
    m_videoOrientation = orientation;
}

CaptureSession *CaptureConnection::session() const
{
    return m_session;
}

void CaptureConnection::setSession(CaptureSession *session)
{
    m_session = session;
}

CaptureOutput::CaptureOutput() : m_connection(new CaptureConnection(this)) {}

CaptureOutput::~CaptureOutput() = default;

QList<CaptureConnection *> CaptureOutput::connections() const
{
    if (!m_connection->session() || m_connection->session()->inputs().isEmpty())
        return {};
    return {m_connection};
}

CaptureConnection *CaptureOutput::connectionWithMediaType(const QString &mediaType) const
{
    for (CaptureConnection *connection : connections()) {
        for (const CaptureInputPort &port : connection->inputPorts()) {
            if (port.mediaType() == mediaType)
                return connection;
        }
    }
    return nullptr;
}

CaptureSession *CaptureOutput::session() const
{
    return m_connection->session();
}

void CaptureOutput::videoFrameArrived(const QVideoFrame &frame)
{
    Q_UNUSED(frame);
}

// --- The session.

struct CaptureSession::Private
{
    QString preset = CaptureSession::presetHigh;
    QList<std::shared_ptr<CaptureDeviceInput>> inputs;
    QList<std::shared_ptr<CaptureOutput>> outputs;
    int configurationDepth = 0;
    bool running = false;
    QPointer<CaptureDevice> wiredDevice; // the device whose frames flow while running
};

CaptureSession::CaptureSession() : d(std::make_unique<Private>()) {}

CaptureSession::~CaptureSession()
{
    stopRunning();
    for (const std::shared_ptr<CaptureOutput> &output : std::as_const(d->outputs))
        output->m_connection->setSession(nullptr);
}

QString CaptureSession::sessionPreset() const
{
    return d->preset;
}

void CaptureSession::setSessionPreset(const QString &preset)
{
    d->preset = preset;
    if (d->running && d->wiredDevice)
        d->wiredDevice->applySessionPreset(preset);
}

bool CaptureSession::canAddInput(const std::shared_ptr<CaptureDeviceInput> &input) const
{
    return input && input->device() && !d->inputs.contains(input);
}

void CaptureSession::addInput(const std::shared_ptr<CaptureDeviceInput> &input)
{
    if (!canAddInput(input))
        return;
    d->inputs.append(input);
    rewire();
}

void CaptureSession::removeInput(const std::shared_ptr<CaptureDeviceInput> &input)
{
    if (d->inputs.removeAll(input) > 0)
        rewire();
}

QList<std::shared_ptr<CaptureDeviceInput>> CaptureSession::inputs() const
{
    return d->inputs;
}

bool CaptureSession::canAddOutput(const std::shared_ptr<CaptureOutput> &output) const
{
    return output && !output->session();
}

void CaptureSession::addOutput(const std::shared_ptr<CaptureOutput> &output)
{
    if (!canAddOutput(output))
        return;
    d->outputs.append(output);
    output->m_connection->setSession(this);
}

QList<std::shared_ptr<CaptureOutput>> CaptureSession::outputs() const
{
    return d->outputs;
}

void CaptureSession::beginConfiguration()
{
    ++d->configurationDepth;
}

void CaptureSession::commitConfiguration()
{
    if (d->configurationDepth == 0)
        return;
    if (--d->configurationDepth == 0)
        rewire();
}

void CaptureSession::startRunning()
{
    if (d->running)
        return;
    d->running = true;
    rewire();
}

void CaptureSession::stopRunning()
{
    if (!d->running)
        return;
    d->running = false;
    rewire();
}

bool CaptureSession::isRunning() const
{
    return d->running;
}

CaptureDevice *CaptureSession::videoDevice() const
{
    return d->inputs.isEmpty() ? nullptr : d->inputs.first()->device();
}

void CaptureSession::rewire()
{
    // Inside a configuration nothing changes until the commit.
    if (d->configurationDepth > 0)
        return;
    CaptureDevice *wanted = d->running ? videoDevice() : nullptr;
    if (wanted == d->wiredDevice)
        return;
    if (d->wiredDevice) {
        disconnect(d->wiredDevice, nullptr, this, nullptr);
        d->wiredDevice->releaseRunning();
    }
    d->wiredDevice = wanted;
    if (wanted) {
        // GUI thread: devices deliver their frames there.
        connect(wanted, &CaptureDevice::frameArrived, this, &CaptureSession::deliver);
        wanted->applySessionPreset(d->preset);
        wanted->retainRunning();
    }
}

void CaptureSession::deliver(const QVideoFrame &frame)
{
    // GUI thread. Outputs may remove themselves while being called: walk a copy.
    const QList<std::shared_ptr<CaptureOutput>> outputs = d->outputs;
    for (const std::shared_ptr<CaptureOutput> &output : outputs)
        output->videoFrameArrived(frame);
    emit frameArrived(frame);
}

} // namespace ZQTPlatform
