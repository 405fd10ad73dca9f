#include "support/Golden.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

// Premultiplied, so that the colour of a fully transparent pixel is ignored.
QImage comparable(const QImage &image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// A plane of one channel: 0 is blue, 3 is alpha.
int channel(const QImage &image, int x, int y, int index)
{
    return image.constScanLine(y)[4 * x + index];
}

/// The values of a channel in the pixels around a position and at it.
struct Range
{
    int least = 255;
    int most = 0;

    Range(const QImage &image, int x, int y, int index)
    {
        for (int row = std::max(0, y - 1); row <= std::min(y + 1, image.height() - 1); ++row) {
            for (int column = std::max(0, x - 1); column <= std::min(x + 1, image.width() - 1); ++column) {
                const auto value = channel(image, column, row, index);
                least = std::min(least, value);
                most = std::max(most, value);
            }
        }
    }

    /// How far the value is beyond what anti-aliasing can explain. The slack is the rounding of blended colours and, where
    /// there is an edge, a share of its contrast.
    int excess(int value) const
    {
        const int slack = 3 + (most - least) / 4;
        return std::max({0, least - slack - value, value - most - slack});
    }
};

/// How much a pixel differs by more than anti-aliasing, from 0 to 255.
int difference(const QImage &left, const QImage &right, int x, int y)
{
    int most = 0;
    for (int index = 0; index < 4; ++index) {
        const auto leftValue = channel(left, x, y, index);
        const auto rightValue = channel(right, x, y, index);
        if (leftValue != rightValue) {
            most = std::max(
                {most, Range(right, x, y, index).excess(leftValue), Range(left, x, y, index).excess(rightValue)});
        }
    }
    return most;
}

QImage differences(const QImage &left, const QImage &right)
{
    QImage diff(left.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < left.height(); ++y) {
        auto *line = diff.scanLine(y);
        for (int x = 0; x < left.width(); ++x) {
            // A small difference is as visible as a large one.
            line[x] = difference(left, right, x, y) > 0 ? 255 : 0;
        }
    }
    return diff;
}

qsizetype countDiffering(const QImage &diff)
{
    qsizetype count = 0;
    for (int y = 0; y < diff.height(); ++y) {
        const uchar *line = diff.constScanLine(y);
        count += std::count(line, line + diff.width(), 255);
    }
    return count;
}

QString picture(const QString &folder, const QString &name)
{
    return folder + u'/' + name + u".png"_s;
}

QString diffPicture(const QString &folder, const QString &name)
{
    return folder + u'/' + name + u".diff.png"_s;
}

} // namespace

Golden::Golden(QString pictures, QString failures)
    : pictures_(std::move(pictures))
    , failures_(std::move(failures))
{
}

QString Golden::difference(const QImage &actual, const QString &plainName) const
{
    const auto scale = actual.devicePixelRatio();
    const auto name = scale > 1 ? u"%1@%2x"_s.arg(plainName).arg(scale) : plainName;
    // Remove the pictures of an earlier run, so that they are not accepted by mistake.
    QFile::remove(picture(failures_, name));
    QFile::remove(diffPicture(failures_, name));

    const QImage golden(picture(pictures_, name));
    if (golden.isNull()) {
        return reject(u"there is no golden picture"_s, actual, name);
    }
    if (golden.size() != actual.size()) {
        return reject(u"%1 × %2 pixels instead of %3 × %4"_s.arg(actual.width())
                          .arg(actual.height())
                          .arg(golden.width())
                          .arg(golden.height()),
                      actual, name);
    }
    const QImage diff = differences(comparable(golden), comparable(actual));
    if (const auto differing = countDiffering(diff)) {
        return reject(u"%1 pixels differ"_s.arg(differing), actual, name, diff);
    }
    return {};
}

QString Golden::reject(const QString &reason, const QImage &actual, const QString &name, const QImage &diff) const
{
    const bool written = QDir().mkpath(failures_) && actual.save(picture(failures_, name))
        && (diff.isNull() || diff.save(diffPicture(failures_, name)));
    return u"%1: %2; %3 %4"_s.arg(name, reason, written ? u"see"_s : u"could not write to"_s, failures_);
}

} // namespace kelvo
