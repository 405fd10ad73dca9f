#include "style/WindowKey.h"

#include <QKeyEvent>

namespace kelvo {

WindowKey windowKey(const QKeyEvent &event)
{
    switch (event.keyCombination().toCombined()) {
    case (Qt::CTRL | Qt::Key_W).toCombined(): return WindowKey::close;
    case (Qt::CTRL | Qt::Key_Comma).toCombined(): return WindowKey::settings;
    case (Qt::CTRL | Qt::Key_Q).toCombined(): return WindowKey::quit;
    default: return WindowKey::none;
    }
}

} // namespace kelvo
