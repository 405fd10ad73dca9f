#include "style/Tokens.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

namespace kelvo {

namespace {

const Appearance *processAppearance = nullptr;

/// A fast start and a long soft landing.
QEasingCurve softLanding()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.2, 0.8}, {0.25, 1.0}, {1.0, 1.0});
    return curve;
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

// Screens report 96 dpi or more where the layout is drawn at 72: undone here, a point is one device-independent pixel.
// Hinting would round the widths of fractional sizes.
QFont Tokens::systemFont(qreal points, int weight) const
{
    constexpr double layoutDpi = 72.0;
    auto font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(points * layoutDpi / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QFont Tokens::tracked(const QFont &font, qreal tracking) const
{
    auto result = font;
    result.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return result;
}

QFont Tokens::withTabularDigits(const QFont &font) const
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    auto result = font;
    result.setFeature("tnum", 1);
    return result;
#else
    return font;
#endif
}

Motion Tokens::popoverRise() const
{
    return {.duration = 400, .curve = softLanding()};
}

Motion Tokens::statusSwap() const
{
    return {.duration = 340, .curve = softLanding()};
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
