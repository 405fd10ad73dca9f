#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace kelvo {

/// A small drawing in one colour, sharp at every scale. Qt Quick's own rounded rectangles have corners of whole pixels
/// on the software scene graph, which makes an edge of a dot this small.
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
