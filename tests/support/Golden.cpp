#include "support/Golden.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

// Premultiplied, so that the colour of a fully transparent pixel is ignored.
QImage comparable(const QImage &image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

int distance(QRgb left, QRgb right)
{
    return std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                     std::abs(qBlue(left) - qBlue(right)), std::abs(qAlpha(left) - qAlpha(right))});
}

QImage differences(const QImage &left, const QImage &right)
{
    QImage diff(left.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < left.height(); ++y) {
        const auto *leftLine = reinterpret_cast<const QRgb *>(left.constScanLine(y));
        const auto *rightLine = reinterpret_cast<const QRgb *>(right.constScanLine(y));
        std::transform(leftLine, leftLine + left.width(), rightLine, diff.scanLine(y),
                       [](QRgb a, QRgb b) { return static_cast<uchar>(distance(a, b)); });
    }
    return diff;
}

qsizetype countAbove(const QImage &diff, int limit)
{
    qsizetype count = 0;
    for (int y = 0; y < diff.height(); ++y) {
        const uchar *line = diff.constScanLine(y);
        count += std::count_if(line, line + diff.width(), [limit](uchar value) { return value > limit; });
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

QString Golden::difference(const QImage &actual, const QString &plainName, GoldenTolerance tolerance) const
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
    const auto differing = countAbove(diff, tolerance.channel);
    const auto allowed = tolerance.differing * static_cast<double>(diff.width()) * static_cast<double>(diff.height());
    if (static_cast<double>(differing) > allowed) {
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
