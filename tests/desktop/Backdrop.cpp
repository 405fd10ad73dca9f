#include "Backdrop.h"

#include "DesktopWindow.h"

#include <QPainter>
#include <QScreen>
#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

Backdrop::Backdrop()
{
    setTitle(u"Another application"_s);
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setGeometry(screen()->availableGeometry());
}

void Backdrop::open()
{
    show();
    requestActivate();
    QTRY_COMPARE(DesktopWindow::activeTitle(), title());
    // Check a pixel at the bottom, because the panel at the top may cast a shadow.
    QTRY_COMPARE(screen()->grabWindow(0, 9, height() - 9, 1, 1).toImage().pixelColor(0, 0), color);
}

void Backdrop::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(QRect(QPoint(), size()), color);
}

} // namespace kelvo
