#pragma once

#include "platform/StatusItem.h"

namespace kelvo {

/// A tray item that records what it is given. A test can inspect it and click it.
class FakeStatusItem : public StatusItem
{
public:
    void setImage(const StatusItemImage &image, bool barIsDark) override
    {
        lastIcon = barIsDark ? image.onDarkBar : image.onLightBar;
        ++icons;
    }
    void setToolTip(const QString &text) override
    {
        toolTip = text;
        ++toolTips;
    }
    void setMenu(QMenu *value) override { menu = value; }
    QRect geometry() const override { return place; }
    void show() override { isShown = true; }

    void click(std::optional<QPoint> point = {}) { Q_EMIT activated(point); }

    QIcon lastIcon;
    int icons = 0;
    QString toolTip;
    int toolTips = 0;
    QMenu *menu = nullptr;
    QRect place;
    bool isShown = false;
};

} // namespace kelvo
