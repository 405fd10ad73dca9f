#include "style/Tokens.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

namespace kelvo {

namespace {

const Appearance *processAppearance = nullptr;

QEasingCurve cubic(QPointF first, QPointF second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1.0, 1.0});
    return curve;
}

/// Starts fast and decelerates for a long time.
QEasingCurve softLanding()
{
    return cubic({0.2, 0.8}, {0.25, 1.0});
}

QEasingCurve slowAtBothEnds()
{
    return cubic({0.42, 0.0}, {0.58, 1.0});
}

} // namespace

Tokens::Tokens()
    : Tokens(processAppearance)
{
}

Tokens::Tokens(const Appearance *appearance)
    : appearance_(appearance)
{
    if (appearance) {
        connect(appearance, &Appearance::changed, this, &Tokens::changed);
    }
}

void Tokens::setAppearance(const Appearance &appearance)
{
    processAppearance = &appearance;
}

// The layout assumes 72 dpi, but screens report 96 dpi or more. The correction makes a point one device-independent pixel.
// Hinting is disabled, because it would round the widths of fractional sizes.
QFont Tokens::systemFont(qreal points, QFont::Weight weight)
{
    constexpr double layoutDpi = 72.0;
    auto font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(points * layoutDpi / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QFont Tokens::tracked(QFont font, qreal tracking)
{
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

QFont Tokens::withTabularDigits(const QFont &font)
{
    auto tabular = font;
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    tabular.setFeature("tnum", 1);
#endif
    return tabular;
}

Motion Tokens::popoverRise() const
{
    return {.duration = 400, .curve = softLanding()};
}

Motion Tokens::statusSwap() const
{
    return {.duration = 340, .curve = softLanding()};
}

Motion Tokens::controlSlide() const
{
    return {.duration = 160, .curve = softLanding()};
}

Motion Tokens::rowMove() const
{
    return {.duration = 180, .curve = softLanding()};
}

Motion Tokens::sheetFade() const
{
    return {.duration = 180, .curve = softLanding()};
}

Motion Tokens::breath() const
{
    return {.duration = 1700, .curve = slowAtBothEnds()};
}

bool Tokens::highContrast() const
{
    return appearance_ && appearance_->highContrast();
}

bool Tokens::reduceMotion() const
{
    return appearance_ && appearance_->reduceMotion();
}

bool Tokens::isDark() const
{
    return appearance_ && appearance_->isDark();
}

QColor Tokens::faded(QColor color, float opacity)
{
    color.setAlphaF(opacity);
    return color;
}

} // namespace kelvo
