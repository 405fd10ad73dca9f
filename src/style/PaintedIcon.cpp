#include "style/PaintedIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace kelvo {

namespace {

// The icon has its own colours and is not tinted, so its mode and state are ignored.
// `scaledPixmap` is not overridden: its size is in device pixels before Qt 6.8 and in device-independent pixels since. The
// implementation of the base class calls `pixmap` with device pixels in both cases.
class Engine : public QIconEngine
{
public:
    Engine(std::function<void(QPainter &, const QRectF &)> paint, QList<QSize> sizes)
        : paint_(std::move(paint))
        , sizes_(std::move(sizes))
    {
    }

    QIconEngine *clone() const override { return new Engine(paint_, sizes_); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        paint_(*painter, rect);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        if (size.isEmpty()) {
            return {};
        }
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return sizes_; }

private:
    std::function<void(QPainter &, const QRectF &)> paint_;
    QList<QSize> sizes_;
};

} // namespace

QIcon paintedIcon(std::function<void(QPainter &, const QRectF &)> paint, const QList<int> &sizes)
{
    QList<QSize> squares;
    for (const int side : sizes) {
        squares.append({side, side});
    }
    return QIcon(new Engine(std::move(paint), std::move(squares)));
}

} // namespace kelvo
