#include "Desktop.h"

#include "GnomeDesktop.h"
#include "KWinDesktop.h"
#include "SwayDesktop.h"
#include "X11Desktop.h"

namespace kelvo {

using namespace Qt::StringLiterals;

std::unique_ptr<Desktop> Desktop::current()
{
    const auto name = qEnvironmentVariable("KELVO_DESKTOP");
    if (name == u"plasma-wayland"_s) {
        return std::make_unique<KWinDesktop>();
    }
    if (name == u"sway"_s) {
        return std::make_unique<SwayDesktop>();
    }
    if (name.startsWith(u"gnome"_s)) {
        return std::make_unique<GnomeDesktop>();
    }
    return std::make_unique<X11Desktop>();
}

QSize Desktop::screenSize()
{
    const auto size = qEnvironmentVariable("KELVO_DESKTOP_SCREEN").split(u'x');
    return {size.value(0).toInt(), size.value(1).toInt()};
}

} // namespace kelvo
