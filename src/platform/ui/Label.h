// The platform's label: a single line of text that does not fit ends in an ellipsis, as the
// platform truncates a label's tail, instead of being cut at both sides; a label that adjusts its
// font size to fit its width first draws such a line smaller, down to its minimum scale factor.
// Word-wrapping labels and pictures are drawn as QLabel draws them. Its text is plain text, as on
// the platform: a barcode payload or a host's text that looks like markup is shown as written,
// never rendered.
#pragma once

#include "ZQTGlobal.h"

#include <QLabel>

namespace ZQTPlatform {

class ZQT_EXPORT Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(QWidget *parent = nullptr);

    // Off by default.
    bool adjustsFontSizeToFitWidth() const;
    void setAdjustsFontSizeToFitWidth(bool adjusts);
    // The smallest share of the font's size that a line is drawn at; 0.5 by default.
    qreal minimumScaleFactor() const;
    void setMinimumScaleFactor(qreal factor);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // The font a too-long line is drawn in within the width.
    QFont fittedFont(int width) const;

    bool m_adjustsFontSizeToFitWidth = false;
    qreal m_minimumScaleFactor = 0.5;
};

} // namespace ZQTPlatform
