#pragma once

#include "platform/Appearance.h"

#include <QColor>
#include <QEasingCurve>
#include <QFont>
#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// How a change of the view is animated.
struct Motion
{
    Q_GADGET
    QML_VALUE_TYPE(motion)
    Q_PROPERTY(int duration MEMBER duration CONSTANT FINAL)
    Q_PROPERTY(QEasingCurve curve MEMBER curve CONSTANT FINAL)

public:
    int duration = 0; ///< milliseconds
    QEasingCurve curve;
};

/// The colours, fonts and motions that every view is made of. Colours follow the desktop between light and dark while
/// the views are shown; the palette of the desktop has no part in them. A point is one device-independent pixel.
class Tokens : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(QColor availableDot READ availableDot NOTIFY changed FINAL)
    Q_PROPERTY(QColor availableText READ availableText NOTIFY changed FINAL)
    Q_PROPERTY(QColor recoveringDot READ recoveringDot NOTIFY changed FINAL)
    Q_PROPERTY(QColor recoveringText READ recoveringText NOTIFY changed FINAL)
    Q_PROPERTY(QColor outageDot READ outageDot NOTIFY changed FINAL)
    Q_PROPERTY(QColor outageText READ outageText NOTIFY changed FINAL)
    Q_PROPERTY(QColor action READ action NOTIFY changed FINAL)
    Q_PROPERTY(QColor link READ link NOTIFY changed FINAL)

    Q_PROPERTY(QColor primary READ primary NOTIFY changed FINAL)
    Q_PROPERTY(QColor labelPrimary READ labelPrimary NOTIFY changed FINAL)
    Q_PROPERTY(QColor labelSecondary READ labelSecondary NOTIFY changed FINAL)
    Q_PROPERTY(QColor labelTertiary READ labelTertiary NOTIFY changed FINAL)
    Q_PROPERTY(QColor labelQuaternary READ labelQuaternary NOTIFY changed FINAL)
    Q_PROPERTY(QColor inactiveDot READ inactiveDot NOTIFY changed FINAL)
    Q_PROPERTY(QColor separator READ separator NOTIFY changed FINAL)

    Q_PROPERTY(QColor popover READ popover NOTIFY changed FINAL)
    Q_PROPERTY(QColor window READ window NOTIFY changed FINAL)
    Q_PROPERTY(QColor card READ card NOTIFY changed FINAL)
    Q_PROPERTY(QColor textField READ textField NOTIFY changed FINAL)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY changed FINAL)
    Q_PROPERTY(QColor shadow READ shadow NOTIFY changed FINAL)
    Q_PROPERTY(QColor focusRing READ focusRing NOTIFY changed FINAL)

    Q_PROPERTY(QFont heroName READ heroName CONSTANT FINAL)
    Q_PROPERTY(QFont sheetTitle READ sheetTitle CONSTANT FINAL)
    Q_PROPERTY(QFont windowTitle READ windowTitle CONSTANT FINAL)
    Q_PROPERTY(QFont button READ button CONSTANT FINAL)
    Q_PROPERTY(QFont status READ status CONSTANT FINAL)
    Q_PROPERTY(QFont row READ row CONSTANT FINAL)
    Q_PROPERTY(QFont bodyText READ bodyText CONSTANT FINAL)
    Q_PROPERTY(QFont rowStrong READ rowStrong CONSTANT FINAL)
    Q_PROPERTY(QFont metadata READ metadata CONSTANT FINAL)
    Q_PROPERTY(QFont sectionCaps READ sectionCaps CONSTANT FINAL)
    Q_PROPERTY(QFont tagCaps READ tagCaps CONSTANT FINAL)

    Q_PROPERTY(kelvo::Motion popoverRise READ popoverRise CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion statusSwap READ statusSwap CONSTANT FINAL)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed FINAL)

public:
    /// Follows the appearance last given to `setAppearance`.
    Tokens();
    /// Colours follow `appearance`, which must outlive this; without one they are light.
    explicit Tokens(const Appearance *appearance);
    /// The appearance of this process. Must be set before the first view is loaded, and outlive the last one.
    static void setAppearance(const Appearance &appearance);

    // By appearance                                                   light       dark
    QColor availableDot() const { return resolve(0xff34c759, 0xff32d74b); }
    QColor availableText() const { return resolve(0xff1e7b36, 0xff5be07a); }
    QColor recoveringDot() const { return resolve(0xffff9500, 0xffff9f0a); }
    QColor recoveringText() const { return resolve(0xffa85b00, 0xffffb340); }
    QColor outageDot() const { return resolve(0xffff3b30, 0xffff453a); }
    QColor outageText() const { return resolve(0xffc10d02, 0xffff6961); }
    QColor action() const { return resolve(0xff007aff, 0xff0a84ff); }
    QColor link() const { return resolve(0xff0a6cff, 0xff409cff); }

    // Steps of the primary label colour
    QColor primary() const { return resolve(0xff000000, 0xffffffff); }
    QColor labelPrimary() const { return primary(0.88F); }
    QColor labelSecondary() const { return primary(0.55F); }
    QColor labelTertiary() const { return primary(0.42F); }
    QColor labelQuaternary() const { return primary(0.32F); }
    QColor inactiveDot() const { return primary(0.28F); }
    QColor separator() const { return primary(0.075F); }

    // Surfaces
    QColor popover() const { return resolve(0xffffffff, 0xff262628); }
    QColor window() const { return resolve(0xfff5f5f7, 0xff1e1e20); }
    QColor card() const { return resolve(0xffffffff, 0xff2a2a2d); }
    QColor textField() const { return resolve(0xffffffff, 0xff1b1b1d); }
    QColor hairline() const { return isDark() ? primary(0.12F) : primary(0.10F); }
    QColor shadow() const { return faded(Qt::black, isDark() ? 0.55F : 0.20F); }
    QColor focusRing() const { return faded(action(), 0.60F); }

    QFont heroName() const { return systemFont(22, QFont::DemiBold); }
    QFont sheetTitle() const { return systemFont(19, QFont::DemiBold); }
    QFont windowTitle() const { return systemFont(17, QFont::DemiBold); }
    QFont button() const { return systemFont(13.5, QFont::DemiBold); }
    QFont status() const { return systemFont(13, QFont::Medium); }
    QFont row() const { return systemFont(13, QFont::Normal); }
    QFont bodyText() const { return systemFont(12.5, QFont::Normal); }
    QFont rowStrong() const { return systemFont(12.5, QFont::Medium); }
    QFont metadata() const { return systemFont(11.5, QFont::Medium); }
    QFont sectionCaps() const { return systemFont(10, QFont::Bold); }
    QFont tagCaps() const { return systemFont(9.5, QFont::Bold); }
    /// The system's font at a size in points and a weight.
    Q_INVOKABLE QFont systemFont(qreal points, int weight) const;
    /// `font` with that much more room, in points, after each letter.
    Q_INVOKABLE QFont tracked(const QFont &font, qreal tracking) const;
    /// `font` with digits of one width, where Qt can ask the font for them (6.7 and later); else as it is.
    Q_INVOKABLE QFont withTabularDigits(const QFont &font) const;

    Motion popoverRise() const;
    Motion statusSwap() const;
    /// Whether views must stand still.
    bool reduceMotion() const;

Q_SIGNALS:
    /// The appearance changed: every colour may be another.
    void changed();

private:
    bool isDark() const;
    QColor resolve(QRgb light, QRgb dark) const { return QColor::fromRgb(isDark() ? dark : light); }
    QColor primary(float opacity) const { return faded(primary(), opacity); }
    static QColor faded(QColor color, float opacity);

    const Appearance *appearance_;
};

} // namespace kelvo
