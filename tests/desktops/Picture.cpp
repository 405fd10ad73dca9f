#include "Picture.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace kelvo::Picture {

namespace {

bool differs(QRgb left, QRgb right, int tolerance)
{
    return std::abs(qRed(left) - qRed(right)) > tolerance || std::abs(qGreen(left) - qGreen(right)) > tolerance
        || std::abs(qBlue(left) - qBlue(right)) > tolerance;
}

/// The range from the first to the last number that is at least `least`, as first and length.
std::pair<int, int> range(const std::vector<int> &numbers, int least)
{
    const auto isEnough = [least](int number) { return number >= least; };
    const auto first = std::find_if(numbers.begin(), numbers.end(), isEnough);
    const auto last = std::find_if(numbers.rbegin(), numbers.rend(), isEnough);
    return first == numbers.end()
        ? std::pair(0, 0)
        : std::pair(static_cast<int>(first - numbers.begin()), static_cast<int>(last.base() - first));
}

} // namespace

QRect change(const QImage &before, const QImage &after, int tolerance)
{
    return bulkOfChange(before, after, tolerance, 1);
}

QRect bulkOfChange(const QImage &before, const QImage &after, int tolerance, int least)
{
    if (before.size() != after.size()) {
        return {};
    }
    std::vector<int> rows(static_cast<std::size_t>(after.height()));
    std::vector<int> columns(static_cast<std::size_t>(after.width()));
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            if (differs(before.pixel(x, y), after.pixel(x, y), tolerance)) {
                ++rows[static_cast<std::size_t>(y)];
                ++columns[static_cast<std::size_t>(x)];
            }
        }
    }
    const auto [x, width] = range(columns, least);
    const auto [y, height] = range(rows, least);
    return {x, y, width, height};
}

QRect dot(const QImage &before, const QImage &after, const QColor &colour)
{
    constexpr int near = 20; // some panels dim their items
    constexpr int leastSize = 3;
    QRect found;
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            const auto pixel = after.pixel(x, y);
            if (!differs(pixel, colour.rgb(), near)
                && (before.size() != after.size() || differs(before.pixel(x, y), pixel, near))) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    const bool isRound = found.width() >= leastSize && std::abs(found.width() - found.height()) <= 2;
    return isRound ? found : QRect();
}

int lightness(const QImage &picture, const QRect &rectangle)
{
    qint64 sum = 0;
    const auto inside = rectangle & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            sum += qGray(picture.pixel(x, y));
        }
    }
    return inside.isEmpty() ? 0 : static_cast<int>(sum / (qint64(inside.width()) * inside.height()));
}

} // namespace kelvo::Picture
