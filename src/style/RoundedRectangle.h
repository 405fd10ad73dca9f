#pragma once

#include "style/PaintedItem.h"

#include <QColor>

namespace kelvo {

/// The border of a RoundedRectangle, inside of its edges.
class RectangleBorder : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color MEMBER color NOTIFY colorChanged FINAL)
    /// In points.
    Q_PROPERTY(qreal width MEMBER width NOTIFY widthChanged FINAL)

public:
    QColor color = Qt::black;
    qreal width = 0;

Q_SIGNALS:
    void colorChanged();
    void widthChanged();
};

/// A rectangle with smooth round corners. Its edges are on whole device pixels, and a line or a border is at least one
/// pixel wide, at every scale.
class RoundedRectangle : public kelvo::PaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged FINAL)
    /// In points.
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY radiusChanged FINAL)
    Q_PROPERTY(kelvo::RectangleBorder *border READ border CONSTANT FINAL)

public:
    explicit RoundedRectangle(QQuickItem *parent = nullptr);

    RectangleBorder *border() { return &border_; }

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void colorChanged();
    void radiusChanged();

private:
    QColor color_ = Qt::white;
    qreal radius_ = 0;
    RectangleBorder border_;
};

} // namespace kelvo
