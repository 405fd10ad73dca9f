#pragma once

#include "Desktop.h"

namespace kelvo {

/// A desktop on an X server.
class X11Desktop : public Desktop
{
public:
    QImage picture() override;
    void moveTo(const QPoint &point) override;
    void click(Button button) override;
    void pressEscape() override;
};

} // namespace kelvo
