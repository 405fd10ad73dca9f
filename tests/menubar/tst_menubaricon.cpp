#include "menubar/MenuBarIcon.h"
#include "style/GappedRing.h"
#include "support/Golden.h"

#include <QPainter>
#include <QTest>

#include <array>
#include <cmath>
#include <numbers>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

// The dimensions of the glyph in its grid of 32 × 32 units.
constexpr double ringRadius = 11.0;
constexpr double ringWidth = 3.4;
constexpr double dotRadius = 5.2;
constexpr double gapMiddle = 90.0 + 26.4 / 2;
constexpr int dimmedAlpha = 115; // 45 % of 255

struct Look
{
    RingState state;
    bool dark;
    QString name;
    std::optional<QRgb> core;
    QRgb label;

    bool isHollow() const { return !core; }
};

const std::array<Look, 8> looks{{
    {RingState::available, false, u"available-light"_s, 0xff248a3d, 0xff000000},
    {RingState::available, true, u"available-dark"_s, 0xff32d74b, 0xffffffff},
    {RingState::outage, false, u"outage-light"_s, 0xffd70015, 0xff000000},
    {RingState::outage, true, u"outage-dark"_s, 0xffff453a, 0xffffffff},
    {RingState::recovering, false, u"recovering-light"_s, 0xffb25000, 0xff000000},
    {RingState::recovering, true, u"recovering-dark"_s, 0xffff9f0a, 0xffffffff},
    {RingState::inactive, false, u"inactive-light"_s, std::nullopt, qRgba(0, 0, 0, dimmedAlpha)},
    {RingState::inactive, true, u"inactive-dark"_s, std::nullopt, qRgba(255, 255, 255, dimmedAlpha)},
}};

QIcon icon(const Look &look)
{
    return MenuBarIcon::image(look.state, look.dark);
}

QImage draw(const Look &look, QSize size, double scale = 1.0)
{
    QImage image = icon(look).pixmap(size, scale).toImage().convertToFormat(QImage::Format_ARGB32);
    image.setDevicePixelRatio(1);
    return image;
}

QImage draw(const Look &look, int side, double scale = 1.0)
{
    return draw(look, QSize(side, side), scale);
}

// Returns the pixel at an angle (degrees, anticlockwise from three o’clock) and a distance from the centre (grid units)
// in a square picture.
QPoint at(const QImage &image, double degrees, double units)
{
    const double angle = degrees * std::numbers::pi / 180.0;
    const double unit = image.width() / 32.0;
    const double middle = image.width() / 2.0;
    return {static_cast<int>(std::floor(middle + units * unit * std::cos(angle))),
            static_cast<int>(std::floor(middle - units * unit * std::sin(angle)))};
}

// Returns the covered area in pixels of a shape whose alpha is `opaque` where it covers a pixel fully.
double coveredPixels(const QImage &image, int opaque)
{
    int sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += qAlpha(image.pixel(x, y));
        }
    }
    return static_cast<double>(sum) / opaque;
}

struct Stroke
{
    double centre; // distance from the centre of the picture, in grid units
    double width;  // in grid units
};

// Measures the stroke between two distances from the centre, towards three o'clock.
Stroke strokeAtThree(const QImage &image, double from, double to, int opaque)
{
    const double unit = image.width() / 32.0;
    const int middle = image.width() / 2;
    double mass = 0;
    double moment = 0;
    for (int x = middle + static_cast<int>(from * unit); x < middle + static_cast<int>(to * unit); ++x) {
        const double coverage = static_cast<double>(qAlpha(image.pixel(x, middle))) / opaque;
        mass += coverage;
        moment += coverage * (x + 0.5 - middle);
    }
    return {moment / mass / unit, mass / unit};
}

void addLooks()
{
    QTest::addColumn<int>("index");
    for (std::size_t index = 0; index < looks.size(); ++index) {
        QTest::newRow(qPrintable(looks.at(index).name)) << static_cast<int>(index);
    }
}

void addLooksAndScales()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("scale");
    for (std::size_t index = 0; index < looks.size(); ++index) {
        for (const int scale : {1, 2}) {
            const QString row = u"%1@%2x"_s.arg(looks.at(index).name).arg(scale);
            QTest::newRow(qPrintable(row)) << static_cast<int>(index) << static_cast<double>(scale);
        }
    }
}

const Look &look()
{
    QFETCH(int, index);
    return looks.at(static_cast<std::size_t>(index));
}

QImage scaledLook(int side)
{
    QFETCH(double, scale);
    return draw(look(), side, scale);
}

} // namespace

class MenuBarIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDotHasTheColourOfTheStateOrIsHollow_data() { addLooksAndScales(); }
    void theDotHasTheColourOfTheStateOrIsHollow()
    {
        const QImage image = scaledLook(18);
        QCOMPARE(image.pixel(at(image, 0, 0)), look().core.value_or(0));
        if (!look().isHollow()) {
            QCOMPARE(image.pixel(at(image, 45, 3)), *look().core);
        }
    }

    void theRingHasTheLabelColour_data() { addLooksAndScales(); }
    void theRingHasTheLabelColour()
    {
        const QImage image = scaledLook(18);
        for (const double degrees : {0.0, 180.0, 270.0}) {
            QCOMPARE(image.pixel(at(image, degrees, ringRadius)), look().label);
        }
    }

    void everythingElseIsTransparent_data() { addLooksAndScales(); }
    void everythingElseIsTransparent()
    {
        const QImage image = scaledLook(32);
        for (const double degrees : {45.0, 135.0, 225.0, 315.0}) {
            QCOMPARE(image.pixel(at(image, degrees, 21)), 0U);  // the corners
            QCOMPARE(image.pixel(at(image, degrees, 15)), 0U);  // outside the ring
            QCOMPARE(image.pixel(at(image, degrees, 7.5)), 0U); // between dot and ring
        }
    }

    void theGapIsJustAnticlockwiseOfTwelve_data() { addLooksAndScales(); }
    void theGapIsJustAnticlockwiseOfTwelve()
    {
        const QImage image = scaledLook(64);
        QCOMPARE(image.pixel(at(image, gapMiddle, ringRadius)), 0U);
        QCOMPARE(image.pixel(at(image, 180 - gapMiddle, ringRadius)), look().label); // the opposite side
    }

    void theGapIsVisibleAtMenuBarSize()
    {
        for (const Look &each : looks) {
            const QImage image = draw(each, 18);
            const int gap = qAlpha(image.pixel(at(image, gapMiddle, ringRadius)));
            QVERIFY2(gap < qAlpha(each.label) / 2, qPrintable(u"%1: %2"_s.arg(each.name).arg(gap)));
        }
    }

    void theRingCoversAllButTheGap_data() { addLooksAndScales(); }
    void theRingCoversAllButTheGap()
    {
        const QImage image = scaledLook(64);
        for (int degrees = -240; degrees <= 85; degrees += 5) {
            QCOMPARE(image.pixel(at(image, degrees, ringRadius)), look().label);
        }
    }

    void radiusAndLineWidthAreAsDesigned_data() { addLooksAndScales(); }
    void radiusAndLineWidthAreAsDesigned()
    {
        const QImage image = scaledLook(256);
        const int opaque = qAlpha(look().label);
        const Stroke ring = strokeAtThree(image, 8, 16, opaque);
        QVERIFY2(std::abs(ring.centre - ringRadius) < 0.02, qPrintable(QString::number(ring.centre)));
        QVERIFY2(std::abs(ring.width - ringWidth) < 0.03, qPrintable(QString::number(ring.width)));
        if (look().isHollow()) {
            const Stroke dot = strokeAtThree(image, 0, 8, opaque);
            QVERIFY2(std::abs(dot.centre - 4.2) < 0.02, qPrintable(QString::number(dot.centre)));
            QVERIFY2(std::abs(dot.width - 2.0) < 0.03, qPrintable(QString::number(dot.width)));
        } else {
            const Stroke dot = strokeAtThree(image, 0, 8, 255);
            QVERIFY2(std::abs(dot.width - dotRadius) < 0.03, qPrintable(QString::number(dot.width)));
        }
    }

    void theCoveredAreaMatchesTheGeometryAtEverySize_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : {16, 18, 22, 24, 32, 36, 44, 48, 64, 96}) {
            QTest::addRow("%d", side) << side;
        }
    }
    void theCoveredAreaMatchesTheGeometryAtEverySize()
    {
        QFETCH(int, side);
        using std::numbers::pi;
        const double arc = 2 * pi * ringRadius * 333.6 / 360 * ringWidth;
        const double caps = pi * ringWidth * ringWidth / 4;
        const double filled = arc + caps + pi * dotRadius * dotRadius;
        const double hollow = arc + caps + 2 * pi * 4.2 * 2.0;
        for (const Look &each : looks) {
            const double expected = each.isHollow() ? hollow : filled;
            const double unit = side / 32.0;
            const double area = coveredPixels(draw(each, side), qAlpha(each.label)) / (unit * unit);
            QVERIFY2(std::abs(area / expected - 1) < 0.01,
                     qPrintable(u"%1: %2 instead of %3"_s.arg(each.name).arg(area).arg(expected)));
        }
    }

    void aPixmapHasTheRequestedSize_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<double>("scale");
        for (const int side : {16, 22, 24, 32, 48}) {
            for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
                QTest::addRow("%d@%gx", side, scale) << side << scale;
            }
        }
    }
    void aPixmapHasTheRequestedSize()
    {
        QFETCH(int, side);
        QFETCH(double, scale);
        const QPixmap pixmap = icon(looks.front()).pixmap(QSize(side, side), scale);
        QCOMPARE(pixmap.size(), QSize(side, side) * scale);
        QCOMPARE(pixmap.devicePixelRatio(), scale);
        QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        image.setDevicePixelRatio(1);
        QCOMPARE(image, draw(looks.front(), QSize(side, side) * scale));
    }

    void everySizeThatTraysUseIsOffered()
    {
        const QIcon ring = icon(looks.front());
        for (const int side : {16, 18, 22, 24, 32, 36, 44, 48, 64}) {
            QVERIFY(ring.availableSizes().contains(QSize(side, side)));
            QCOMPARE(ring.actualSize(QSize(side, side)), QSize(side, side));
        }
        QVERIFY(!ring.isNull());
    }

    void theRingIsCircularAndCentredInANonSquareRectangle_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("wide") << QSize(64, 32);
        QTest::newRow("high") << QSize(32, 64);
    }
    void theRingIsCircularAndCentredInANonSquareRectangle()
    {
        QFETCH(QSize, size);
        for (const Look &each : looks) {
            const QImage image = draw(each, size);
            QCOMPARE(image.size(), size);
            const QRect middle((size.width() - 32) / 2, (size.height() - 32) / 2, 32, 32);
            QCOMPARE(image.copy(middle), draw(each, 32));
            QCOMPARE(coveredPixels(image, 255), coveredPixels(draw(each, 32), 255));
        }
    }

    void paintsInsideTheRectangleItIsGiven()
    {
        QImage canvas(64, 64, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        {
            QPainter painter(&canvas);
            icon(looks.front()).paint(&painter, QRect(20, 10, 32, 32));
            QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
            QVERIFY(painter.transform().isIdentity());
        }
        QCOMPARE(canvas.copy(20, 10, 32, 32).convertToFormat(QImage::Format_ARGB32), draw(looks.front(), 32));
        canvas = canvas.convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(canvas.pixel(5, 5), 0U);
        QCOMPARE(canvas.pixel(60, 60), 0U);
    }

    void paintsSharpOnAScaledSurface()
    {
        QImage canvas(64, 64, QImage::Format_ARGB32_Premultiplied);
        canvas.setDevicePixelRatio(2);
        canvas.fill(Qt::transparent);
        {
            QPainter painter(&canvas);
            icon(looks.front()).paint(&painter, QRect(0, 0, 32, 32));
        }
        canvas.setDevicePixelRatio(1);
        QCOMPARE(canvas.convertToFormat(QImage::Format_ARGB32), draw(looks.front(), 64));
    }

    void isNeverTinted_data() { addLooks(); }
    void isNeverTinted()
    {
        const QIcon ring = icon(look());
        const QImage plain = ring.pixmap(QSize(32, 32), 1.0).toImage();
        for (const auto mode : {QIcon::Disabled, QIcon::Active, QIcon::Selected}) {
            for (const auto state : {QIcon::Off, QIcon::On}) {
                QCOMPARE(ring.pixmap(QSize(32, 32), 1.0, mode, state).toImage(), plain);
            }
        }
        QVERIFY(!ring.isMask());
    }

    void emptySizeGivesNoPixmap() { QVERIFY(icon(looks.front()).pixmap(QSize(0, 18)).isNull()); }

    void aDetachedCopyPaintsTheSame()
    {
        QIcon copy = icon(looks.back());
        const QIcon original = copy;
        copy.setIsMask(true); // detaches
        QVERIFY(copy.cacheKey() != original.cacheKey());
        QCOMPARE(copy.pixmap(QSize(32, 32), 1.0).toImage(), original.pixmap(QSize(32, 32), 1.0).toImage());
    }

    void theGappedRingIsCircularAndCentredInAnyRectangle_data()
    {
        QTest::addColumn<QRectF>("rect");
        QTest::newRow("square") << QRectF(0, 0, 32, 32);
        QTest::newRow("wide") << QRectF(10, 20, 64, 32);
        QTest::newRow("high") << QRectF(-10, -20, 32, 80);
    }
    void theGappedRingIsCircularAndCentredInAnyRectangle()
    {
        QFETCH(QRectF, rect);
        const QPainterPath path = gappedRing(rect);
        for (int step = 0; step <= 100; ++step) {
            const double distance = QLineF(rect.center(), path.pointAtPercent(step / 100.0)).length();
            QVERIFY2(std::abs(distance - 16) < 0.01, qPrintable(QString::number(distance)));
        }
    }

    void theGappedRingGoesFromTwelveClockwiseToTheGap()
    {
        const QRectF rect(0, 0, 32, 32);
        const QPainterPath path = gappedRing(rect);
        const auto angle = [&](double share) { return QLineF(rect.center(), path.pointAtPercent(share)).angle(); };
        QVERIFY(std::abs(angle(0) - 90.0) < 0.05);
        QVERIFY(angle(0.01) < 90.0);
        QVERIFY(std::abs(angle(1) - 116.4) < 0.05);
        QVERIFY2(std::abs(path.length() - 2 * std::numbers::pi * 16 * 333.6 / 360) < 0.1,
                 qPrintable(QString::number(path.length())));
    }

    void theGappedRingOfAnEmptyRectangleIsEmpty() { QVERIFY(gappedRing(QRectF(4, 4, 0, 10)).isEmpty()); }

    void matchesTheGoldenPictures_data() { addLooksAndScales(); }
    void matchesTheGoldenPictures()
    {
        const QString name = u"ring-"_s + QString::fromLatin1(QTest::currentDataTag());
        const QString difference = golden_.difference(scaledLook(18), name);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

private:
    Golden golden_{QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES)};
};

QTEST_MAIN(MenuBarIconTest)
#include "tst_menubaricon.moc"
