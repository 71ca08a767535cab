// The platform's label: a single line of text that does not fit ends in an ellipsis, as the
// platform truncates a label's tail, instead of being cut at both sides. Word-wrapping labels
// and pictures are drawn as QLabel draws them. Its text is plain text, as on the platform: a
// barcode payload or a host's text that looks like markup is shown as written, never rendered.
#pragma once

#include "ZQTGlobal.h"

#include <QLabel>

namespace ZQTPlatform {

class ZQT_EXPORT Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ZQTPlatform
