// A navigation bar: a 44-point strip with a centred title and item widgets on the left and on
// the right. Used by navigation controllers and, on its own, inside scenes.
#pragma once

#include "ZQTGlobal.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QString>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace ZQTPlatform {

class ZQT_EXPORT NavigationBar : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle)

public:
    enum BarStyle { BarStyleDefault = 0, BarStyleBlack = 1 };
    static constexpr int DefaultHeight = 44;

    explicit NavigationBar(QWidget *parent = nullptr);

    QString title() const;
    void setTitle(const QString &title);
    QColor titleColor() const;
    void setTitleColor(const QColor &color);
    QFont titleFont() const;
    void setTitleFont(const QFont &font);

    // The bar's background colour; invalid (the default) paints the platform's light grey.
    QColor barTintColor() const;
    void setBarTintColor(const QColor &color);
    // A translucent bar lets what is behind it show through a little (true by default).
    bool isTranslucent() const;
    void setTranslucent(bool translucent);
    int barStyle() const;
    void setBarStyle(int style);

    // Item widgets, in order (BarButtonItem for plain items, any widget as a custom view). The
    // bar takes ownership; the items it held before are deleted. A custom view without a layout
    // keeps its size, widened to take in subviews that reach past its right or bottom edge.
    QList<QWidget *> leftItems() const;
    void setLeftItems(const QList<QWidget *> &items);
    QList<QWidget *> rightItems() const;
    void setRightItems(const QList<QWidget *> &items);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void replaceItems(QHBoxLayout *box, QList<QWidget *> &current, const QList<QWidget *> &items);

    QLabel *m_titleLabel;
    QHBoxLayout *m_leftBox;
    QHBoxLayout *m_rightBox;
    QList<QWidget *> m_leftItems;
    QList<QWidget *> m_rightItems;
    QColor m_barTintColor;
    bool m_translucent = true;
    int m_barStyle = BarStyleDefault;
};

} // namespace ZQTPlatform
