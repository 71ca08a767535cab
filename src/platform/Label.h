// The platform's label: a single line of text that does not fit ends in an ellipsis, as the
// platform truncates a label's tail, instead of being cut at both sides. Word-wrapping labels,
// rich text and pictures are drawn as QLabel draws them.
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
