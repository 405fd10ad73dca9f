#pragma once

#include "support/ViewScene.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

/// Collects cut-outs of a window in which a control is hovered, pressed or has the focus, into one picture.
class StatePictures
{
public:
    explicit StatePictures(ViewScene &scene)
        : scene_(scene)
    {
    }

    /// Adds the item as it looks now.
    void add(QQuickItem *item)
    {
        constexpr int margin = 6;
        const auto whole = kelvo::picture(scene_.view);
        const auto frame = scene_.frame(item).adjusted(-margin, -margin, margin, margin)
            & QRectF(QPointF(), QSizeF(scene_.view.size()));
        const double scale = whole.devicePixelRatio();
        cutouts_.append(whole.copy(QRectF(frame.topLeft() * scale, frame.size() * scale).toRect()));
    }
    void addHovered(QQuickItem *item, QQuickItem *at = nullptr)
    {
        scene_.hover(scene_.middle(at ? at : item));
        add(item);
    }
    void addPressed(QQuickItem *item, QQuickItem *at = nullptr)
    {
        const auto point = scene_.middle(at ? at : item);
        scene_.hover(point);
        QTest::mousePress(&scene_.view, Qt::LeftButton, Qt::NoModifier, point);
        settle();
        add(item);
        // A release elsewhere is no click.
        const QPoint elsewhere(scene_.view.width() / 2, 2);
        scene_.hover(elsewhere);
        QTest::mouseRelease(&scene_.view, Qt::LeftButton, Qt::NoModifier, elsewhere);
        settle();
    }
    void addFocused(QQuickItem *item)
    {
        scene_.hover({scene_.view.width() / 2, 2});
        item->setFocus(false);
        item->forceActiveFocus(Qt::TabFocusReason);
        settle();
        add(item);
    }
    void addStates(QQuickItem *item)
    {
        addHovered(item);
        addPressed(item);
        addFocused(item);
    }

    /// All cut-outs, one below the other.
    QImage picture() const
    {
        QSize size;
        for (const auto &cutout : cutouts_) {
            size = {std::max(size.width(), cutout.width()), size.height() + cutout.height()};
        }
        QImage all(size, QImage::Format_RGB32);
        all.fill(scene_.tokens.window());
        QPainter painter(&all);
        int y = 0;
        for (auto cutout : cutouts_) {
            cutout.setDevicePixelRatio(1);
            painter.drawImage(0, y, cutout);
            y += cutout.height();
        }
        painter.end();
        all.setDevicePixelRatio(scene_.view.effectiveDevicePixelRatio());
        return all;
    }

private:
    ViewScene &scene_;
    QList<QImage> cutouts_;
};

} // namespace kelvo
