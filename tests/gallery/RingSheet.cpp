#include "gallery/RingSheet.h"

#include "menubar/MenuBarIcon.h"

#include <QPainter>

#include <array>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

constexpr int scale = 2;

// Sizes in points.
constexpr QSize cell(150, 128);
constexpr int large = 56;
constexpr int side = static_cast<int>(MenuBarIcon::designSize);

struct Column
{
    RingState state;
    QString text;
};

const std::array<Column, 4> columns{{
    {RingState::available, u"Usable"_s},
    {RingState::outage, u"Out"_s},
    {RingState::recovering, u"Impaired or recovering"_s},
    {RingState::inactive, u"Not known"_s},
}};

/// Returns the ring as it looks on a screen with `density` pixels per point.
QImage ring(const QIcon &icon, int points, int density)
{
    auto image = icon.pixmap(QSize(points, points) * density, 1.0).toImage();
    return image.scaled(QSize(points, points) * scale); // at density 1, one pixel becomes four
}

void drawText(QPainter &painter, const QRect &where, double points, const QString &text)
{
    QFont font(u"Inter"_s);
    font.setPointSizeF(points * 72 / painter.device()->logicalDpiY());
    painter.setFont(font);
    painter.drawText(where, Qt::AlignHCenter | Qt::AlignTop, text);
}

void drawCell(QPainter &painter, QPoint at, const Column &column, bool dark)
{
    const auto icon = MenuBarIcon::image(column.state, dark);
    const auto draw = [&](int middle, int top, int points, int density) {
        painter.drawImage(QRect(at.x() + middle - points / 2, at.y() + top, points, points),
                          ring(icon, points, density));
    };
    draw(cell.width() / 2 - 30, 20, large, 2);
    draw(cell.width() / 2 + 23, 24, side, 1);
    draw(cell.width() / 2 + 23, 54, side, 2);

    painter.setPen(dark ? QColor(255, 255, 255, 140) : QColor(0, 0, 0, 140));
    drawText(painter, QRect(at.x() + cell.width() / 2 + 36, at.y() + 27, 20, 20), 9.5, u"1×"_s);
    drawText(painter, QRect(at.x() + cell.width() / 2 + 36, at.y() + 57, 20, 20), 9.5, u"2×"_s);
    painter.setPen(dark ? QColor(255, 255, 255, 224) : QColor(0, 0, 0, 224));
    drawText(painter, QRect(at.x(), at.y() + 92, cell.width(), 24), 11.5, column.text);
}

} // namespace

QImage ringSheet()
{
    const QSize points(cell.width() * static_cast<int>(columns.size()), cell.height() * 2);
    QImage sheet(points * scale, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const bool dark : {false, true}) {
        const int top = dark ? cell.height() : 0;
        painter.fillRect(0, top, points.width(), cell.height(), dark ? QColor(0x26262a) : QColor(0xf1f2f5));
        for (std::size_t i = 0; i < columns.size(); ++i) {
            drawCell(painter, {static_cast<int>(i) * cell.width(), top}, columns.at(i), dark);
        }
    }
    return sheet;
}

} // namespace kelvo
