#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace kelvo {

/// A small drawing in one colour, painted with QPainter at every scale. On the software scene graph, the corners of Qt
/// Quick's own rounded rectangles consist of whole pixels, so a small dot would look angular.
class PaintedSymbol : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit PaintedSymbol(QQuickItem *parent = nullptr);

    QColor color() const { return color_; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void colorChanged();

private:
    QColor color_ = Qt::black;
};

} // namespace kelvo
