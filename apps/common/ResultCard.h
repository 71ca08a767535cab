// What the capture app shows after each report in place of the capture screen: the VIN, whether
// it was read or typed, a clear valid or invalid mark, the stored VIN photo, and two actions:
// scan again or done.
#pragma once

#include "ScanHost.h"

#include "platform/ui/ViewController.h"

#include <QPointer>

class QLabel;
class QPushButton;

namespace ZqtApps {

class ResultCard : public ZQTPlatform::ViewController
{
    Q_OBJECT

public:
    // photoPath: the stored VIN photo, empty when there is none (a typed VIN).
    ResultCard(const ScanResult &result, const QString &photoPath);

    QLabel *photoView() const { return m_photo; }
    QPushButton *scanAgainButton() const { return m_scanAgain; }

Q_SIGNALS:
    void scanAgainRequested();
    void doneRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showPhoto(const QImage &photo);

    QLabel *m_photo;
    QPushButton *m_scanAgain;
    QPushButton *m_done;
    QImage m_photoImage;
};

} // namespace ZqtApps
