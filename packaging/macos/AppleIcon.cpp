#include "AppleIcon.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QtEndian>

namespace kelvo {

namespace {

struct Entry
{
    const char *type;
    int side; ///< in pixels
};

// The entries that contain a PNG. The system reduces one of them for 16 and 32 points at one pixel per point.
constexpr Entry entries[] = {
    {"ic11", 32},   // 16 points, two pixels per point
    {"ic12", 64},   // 32 points, two pixels per point
    {"ic07", 128},  // 128 points
    {"ic13", 256},  // 128 points, two pixels per point
    {"ic08", 256},  // 256 points
    {"ic14", 512},  // 256 points, two pixels per point
    {"ic09", 512},  // 512 points
    {"ic10", 1024}, // 512 points, two pixels per point
};

QByteArray png(const QIcon &icon, int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.paint(&painter, image.rect());
    painter.end();
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

/// A block of the file: its type, its length including these eight bytes, and its content.
QByteArray block(const char *type, const QByteArray &content)
{
    QByteArray length(4, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(8 + content.size()), length.data());
    return type + length + content;
}

} // namespace

QByteArray appleIcon(const QIcon &icon)
{
    QByteArray blocks;
    for (const auto &entry : entries) {
        blocks += block(entry.type, png(icon, entry.side));
    }
    return block("icns", blocks);
}

} // namespace kelvo
