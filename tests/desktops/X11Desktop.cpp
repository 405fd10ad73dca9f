#include "X11Desktop.h"

#include "Command.h"

namespace kelvo {

using namespace Qt::StringLiterals;

QImage X11Desktop::picture()
{
    return QImage::fromData(outputOf(u"import"_s, {u"-window"_s, u"root"_s, u"png:-"_s}));
}

void X11Desktop::moveTo(const QPoint &point)
{
    const auto pixels = point * qEnvironmentVariableIntValue("KELVO_DESKTOP_SCALE");
    outputOf(u"xdotool"_s, {u"mousemove"_s, QString::number(pixels.x()), QString::number(pixels.y())});
}

void X11Desktop::click(Button button)
{
    outputOf(u"xdotool"_s, {u"click"_s, QString::number(static_cast<int>(button) + 1)});
}

void X11Desktop::pressEscape()
{
    outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
}

} // namespace kelvo
