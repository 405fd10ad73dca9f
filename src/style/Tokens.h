#pragma once

#include "platform/Appearance.h"

#include <QColor>
#include <QEasingCurve>
#include <QFont>
#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// The duration and the easing curve of an animation.
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

/// The colours, fonts, animations and sizes of all views. Colours follow the appearance of the desktop and do not depend on
/// its palette. A point is one device-independent pixel.
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

    Q_PROPERTY(QColor controlBorder READ controlBorder NOTIFY changed FINAL)
    Q_PROPERTY(QColor actionHovered READ actionHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor actionPressed READ actionPressed NOTIFY changed FINAL)
    Q_PROPERTY(QColor actionDisabled READ actionDisabled NOTIFY changed FINAL)
    Q_PROPERTY(QColor actionText READ actionText NOTIFY changed FINAL)
    Q_PROPERTY(QColor highlight READ highlight NOTIFY changed FINAL)
    Q_PROPERTY(QColor highlightPressed READ highlightPressed NOTIFY changed FINAL)
    Q_PROPERTY(QColor rowHovered READ rowHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor rowPressed READ rowPressed NOTIFY changed FINAL)
    Q_PROPERTY(QColor fieldLine READ fieldLine NOTIFY changed FINAL)
    Q_PROPERTY(QColor fieldLineHovered READ fieldLineHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor controlLine READ controlLine NOTIFY changed FINAL)
    Q_PROPERTY(QColor controlLineHovered READ controlLineHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor segmentTrack READ segmentTrack NOTIFY changed FINAL)
    Q_PROPERTY(QColor segmentFace READ segmentFace NOTIFY changed FINAL)
    Q_PROPERTY(QColor segmentHovered READ segmentHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor switchTrack READ switchTrack NOTIFY changed FINAL)
    Q_PROPERTY(QColor switchKnob READ switchKnob NOTIFY changed FINAL)
    Q_PROPERTY(QColor scrollThumb READ scrollThumb NOTIFY changed FINAL)
    Q_PROPERTY(QColor scrollThumbHovered READ scrollThumbHovered NOTIFY changed FINAL)
    Q_PROPERTY(QColor scrollThumbPressed READ scrollThumbPressed NOTIFY changed FINAL)

    Q_PROPERTY(QColor cardLine READ cardLine NOTIFY changed FINAL)
    Q_PROPERTY(QColor watchName READ watchName NOTIFY changed FINAL)
    Q_PROPERTY(QColor markRing READ markRing NOTIFY changed FINAL)
    Q_PROPERTY(QColor pageDot READ pageDot NOTIFY changed FINAL)

    Q_PROPERTY(QColor dim READ dim NOTIFY changed FINAL)
    Q_PROPERTY(QColor liftedShadow READ liftedShadow NOTIFY changed FINAL)
    Q_PROPERTY(QColor segmentShadow READ segmentShadow NOTIFY changed FINAL)
    Q_PROPERTY(QColor knobShadow READ knobShadow NOTIFY changed FINAL)

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

    Q_PROPERTY(QFont channelTitle READ channelTitle CONSTANT FINAL)
    Q_PROPERTY(QFont emphasis READ emphasis CONSTANT FINAL)
    Q_PROPERTY(QFont footnote READ footnote CONSTANT FINAL)
    Q_PROPERTY(QFont heroTitle READ heroTitle CONSTANT FINAL)
    Q_PROPERTY(QFont statusLabel READ statusLabel CONSTANT FINAL)
    Q_PROPERTY(QFont affectedTag READ affectedTag CONSTANT FINAL)
    Q_PROPERTY(QFont trackedSectionCaps READ trackedSectionCaps CONSTANT FINAL)
    Q_PROPERTY(QFont trackedTagCaps READ trackedTagCaps CONSTANT FINAL)
    Q_PROPERTY(QFont checkedTime READ checkedTime CONSTANT FINAL)

    Q_PROPERTY(kelvo::Motion popoverRise READ popoverRise CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion statusSwap READ statusSwap CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion controlSlide READ controlSlide CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion rowMove READ rowMove CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion sheetFade READ sheetFade CONSTANT FINAL)
    Q_PROPERTY(kelvo::Motion breath READ breath CONSTANT FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed FINAL)
    Q_PROPERTY(int helpDelay MEMBER helpDelay CONSTANT FINAL)
    Q_PROPERTY(int frameTime MEMBER frameTime CONSTANT FINAL)

    Q_PROPERTY(int controlBorderWidth READ controlBorderWidth NOTIFY changed FINAL)
    Q_PROPERTY(int hairlineWidth MEMBER hairlineWidth CONSTANT FINAL)
    Q_PROPERTY(int focusRingWidth MEMBER focusRingWidth CONSTANT FINAL)

    Q_PROPERTY(int windowRadius MEMBER windowRadius CONSTANT FINAL)
    Q_PROPERTY(int cardRadius MEMBER cardRadius CONSTANT FINAL)
    Q_PROPERTY(int segmentRadius MEMBER segmentRadius CONSTANT FINAL)
    Q_PROPERTY(int buttonRadius MEMBER buttonRadius CONSTANT FINAL)
    Q_PROPERTY(int rowRadius MEMBER rowRadius CONSTANT FINAL)
    Q_PROPERTY(int fieldRadius MEMBER fieldRadius CONSTANT FINAL)
    Q_PROPERTY(int highlightRadius MEMBER highlightRadius CONSTANT FINAL)
    Q_PROPERTY(int checkboxRadius MEMBER checkboxRadius CONSTANT FINAL)
    Q_PROPERTY(int textRadius MEMBER textRadius CONSTANT FINAL)

    Q_PROPERTY(int rowHeight MEMBER rowHeight CONSTANT FINAL)
    Q_PROPERTY(int choiceRowHeight MEMBER choiceRowHeight CONSTANT FINAL)

    Q_PROPERTY(int segmentHeight MEMBER segmentHeight CONSTANT FINAL)
    Q_PROPERTY(int buttonHeight MEMBER buttonHeight CONSTANT FINAL)
    Q_PROPERTY(int smallButtonHeight MEMBER smallButtonHeight CONSTANT FINAL)
    Q_PROPERTY(int fieldHeight MEMBER fieldHeight CONSTANT FINAL)
    Q_PROPERTY(int fieldWidth MEMBER fieldWidth CONSTANT FINAL)
    Q_PROPERTY(int switchWidth MEMBER switchWidth CONSTANT FINAL)
    Q_PROPERTY(int switchHeight MEMBER switchHeight CONSTANT FINAL)
    Q_PROPERTY(int targetSize MEMBER targetSize CONSTANT FINAL)
    Q_PROPERTY(int checkboxSize MEMBER checkboxSize CONSTANT FINAL)

    Q_PROPERTY(int pagePadding MEMBER pagePadding CONSTANT FINAL)
    Q_PROPERTY(int windowPadding MEMBER windowPadding CONSTANT FINAL)
    Q_PROPERTY(int sheetPadding MEMBER sheetPadding CONSTANT FINAL)
    Q_PROPERTY(int barPadding MEMBER barPadding CONSTANT FINAL)
    Q_PROPERTY(int popoverPadding MEMBER popoverPadding CONSTANT FINAL)
    Q_PROPERTY(int rowPadding MEMBER rowPadding CONSTANT FINAL)
    Q_PROPERTY(int sectionSpacing MEMBER sectionSpacing CONSTANT FINAL)

    Q_PROPERTY(int popoverWidth MEMBER popoverWidth CONSTANT FINAL)
    Q_PROPERTY(int popoverLeastHeight MEMBER popoverLeastHeight CONSTANT FINAL)
    Q_PROPERTY(int footerHeight MEMBER footerHeight CONSTANT FINAL)
    Q_PROPERTY(int settingsWidth MEMBER settingsWidth CONSTANT FINAL)
    Q_PROPERTY(int settingsLeastHeight MEMBER settingsLeastHeight CONSTANT FINAL)
    Q_PROPERTY(int sheetWidth MEMBER sheetWidth CONSTANT FINAL)
    Q_PROPERTY(int onboardingWidth MEMBER onboardingWidth CONSTANT FINAL)
    Q_PROPERTY(int onboardingHeight MEMBER onboardingHeight CONSTANT FINAL)
    Q_PROPERTY(int barHeight MEMBER barHeight CONSTANT FINAL)
    Q_PROPERTY(int windowShadowBlur MEMBER windowShadowBlur CONSTANT FINAL)
    Q_PROPERTY(int windowShadowDrop MEMBER windowShadowDrop CONSTANT FINAL)

public:
    /// Follows the appearance that was last passed to `setAppearance`.
    Tokens();
    /// Colours follow `appearance`, which must outlive this object. If it is null, the colours are the light ones.
    explicit Tokens(const Appearance *appearance);
    /// Sets the appearance of this process. Call it before the first view is loaded. `appearance` must outlive all views.
    static void setAppearance(const Appearance &appearance);

    // By appearance. In high contrast, a dot has the colour of its text.
    QColor availableDot() const { return highContrast() ? availableText() : resolve(0xff34c759, 0xff32d74b); }
    QColor availableText() const { return resolve(0xff1e7b36, 0xff5be07a); }
    QColor recoveringDot() const { return highContrast() ? recoveringText() : resolve(0xffff9500, 0xffff9f0a); }
    QColor recoveringText() const { return resolve(0xffa85b00, 0xffffb340); }
    QColor outageDot() const { return highContrast() ? outageText() : resolve(0xffff3b30, 0xffff453a); }
    QColor outageText() const { return resolve(0xffc10d02, 0xffff6961); }
    QColor action() const { return highContrast() ? strongBlue() : resolve(0xff007aff, 0xff0a84ff); }
    QColor link() const { return highContrast() ? strongBlue() : resolve(0xff0a6cff, 0xff409cff); }

    // The primary label colour with decreasing opacity
    QColor primary() const { return resolve(0xff000000, 0xffffffff); }
    QColor labelPrimary() const { return label(0.88F); }
    QColor labelSecondary() const { return label(0.55F); }
    QColor labelTertiary() const { return label(0.42F); }
    QColor labelQuaternary() const { return label(0.32F); }
    QColor inactiveDot() const { return label(0.28F); }
    QColor separator() const { return line(0.075F); }

    // Surfaces
    QColor popover() const { return resolve(0xffffffff, 0xff262628); }
    QColor window() const { return resolve(0xfff5f5f7, 0xff1e1e20); }
    QColor card() const { return resolve(0xffffffff, 0xff2a2a2d); }
    QColor textField() const { return resolve(0xffffffff, 0xff1b1b1d); }
    QColor hairline() const { return line(isDark() ? 0.12F : 0.10F); }
    QColor shadow() const { return faded(Qt::black, isDark() ? 0.55F : 0.20F); }
    QColor focusRing() const { return faded(action(), highContrast() ? 1.0F : 0.60F); }

    // Controls
    /// The line around a control that has no edge of its own, such as a button. It is visible in high contrast only.
    QColor controlBorder() const { return highContrast() ? labelPrimary() : QColor(Qt::transparent); }
    QColor actionHovered() const { return action().lighter(108); }
    QColor actionPressed() const { return action().darker(115); }
    QColor actionDisabled() const { return primary(0.10F); }
    QColor actionText() const { return QColor(highContrast() && isDark() ? Qt::black : Qt::white); }
    QColor highlight() const { return primary(0.06F); }
    QColor highlightPressed() const { return primary(0.10F); }
    QColor rowHovered() const { return primary(0.03F); }
    QColor rowPressed() const { return primary(0.07F); }
    QColor fieldLine() const { return line(0.15F); }
    QColor fieldLineHovered() const { return line(0.24F); }
    /// The edge of a switch or check box that is off. It has at least 3 to 1 against a card.
    QColor controlLine() const { return line(0.45F); }
    QColor controlLineHovered() const { return line(0.60F); }
    QColor segmentTrack() const { return primary(0.07F); }
    QColor segmentFace() const { return isDark() ? primary(0.15F) : card(); }
    QColor segmentHovered() const { return label(0.70F); }
    QColor switchTrack() const { return primary(0.14F); }
    QColor switchKnob() const { return QColor(Qt::white); }
    QColor scrollThumb() const { return line(0.18F); }
    QColor scrollThumbHovered() const { return line(0.30F); }
    QColor scrollThumbPressed() const { return line(0.40F); }

    // Marks and lines
    QColor cardLine() const { return line(0.06F); }
    QColor watchName() const { return label(0.78F); }
    QColor markRing() const { return label(0.72F); }
    QColor pageDot() const { return line(0.18F); }

    // Shadows
    QColor dim() const { return faded(Qt::black, 0.32F); }
    QColor liftedShadow() const { return faded(Qt::black, 0.22F); }
    QColor segmentShadow() const { return faded(Qt::black, 0.20F); }
    QColor knobShadow() const { return faded(Qt::black, 0.12F); }

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

    QFont channelTitle() const { return systemFont(16, QFont::DemiBold); }
    QFont emphasis() const { return systemFont(13, QFont::DemiBold); }
    QFont footnote() const { return systemFont(11.5, QFont::Normal); }
    QFont heroTitle() const { return tracked(heroName(), -0.44); }
    QFont statusLabel() const { return tracked(status(), -0.065); }
    QFont affectedTag() const { return tracked(systemFont(10, QFont::DemiBold), 0.6); }
    QFont trackedSectionCaps() const { return tracked(sectionCaps(), 0.7); }
    QFont trackedTagCaps() const { return tracked(tagCaps(), 0.57); }
    QFont checkedTime() const { return withTabularDigits(metadata()); }

    Motion popoverRise() const;
    Motion statusSwap() const;
    /// The animation of a moving part of a control.
    Motion controlSlide() const;
    /// The animation of a row that makes room for another one.
    Motion rowMove() const;
    /// The animation of a sheet that opens.
    Motion sheetFade() const;
    /// Half a period of a dot that dims and brightens.
    Motion breath() const;
    /// Whether the user asked for a higher contrast. Labels then have their full strength, lines are strong, and controls
    /// and cards have borders.
    bool highContrast() const;
    /// Whether animations must be avoided.
    bool reduceMotion() const;
    /// The time until a tool tip appears, in milliseconds.
    static constexpr int helpDelay = 700;
    /// The interval between the steps of a movement, in milliseconds.
    static constexpr int frameTime = 16;

    // Lines, in points
    int controlBorderWidth() const { return highContrast() ? hairlineWidth : 0; }
    static constexpr int hairlineWidth = 1;
    static constexpr int focusRingWidth = 2;

    // Radii of corners, in points
    static constexpr int windowRadius = 12;
    static constexpr int cardRadius = 9;
    static constexpr int segmentRadius = 8;
    static constexpr int buttonRadius = 7;
    static constexpr int rowRadius = 6;
    static constexpr int fieldRadius = 6;
    static constexpr int highlightRadius = 5;
    static constexpr int checkboxRadius = 4;
    static constexpr int textRadius = 2;

    // Minimum heights of rows, in points
    static constexpr int rowHeight = 34;
    static constexpr int choiceRowHeight = 24;

    // Controls, in points
    static constexpr int segmentHeight = 30;
    static constexpr int buttonHeight = 28;
    static constexpr int smallButtonHeight = 26;
    static constexpr int fieldHeight = 24;
    static constexpr int fieldWidth = 190;
    static constexpr int switchWidth = 32;
    static constexpr int switchHeight = 19;
    static constexpr int checkboxSize = 15;
    /// The least height of what can be clicked.
    static constexpr int targetSize = 24;

    // Paddings and spacings, in points
    static constexpr int pagePadding = 32;
    static constexpr int windowPadding = 22;
    static constexpr int sheetPadding = 20;
    static constexpr int barPadding = 20;
    static constexpr int popoverPadding = 18;
    static constexpr int rowPadding = 12;
    static constexpr int sectionSpacing = 20;

    // Windows, in points
    static constexpr int popoverWidth = 320;
    static constexpr int popoverLeastHeight = 260;
    static constexpr int footerHeight = 38;
    static constexpr int settingsWidth = 400;
    static constexpr int settingsLeastHeight = 560;
    static constexpr int sheetWidth = 360;
    static constexpr int onboardingWidth = 400;
    static constexpr int onboardingHeight = 300;
    static constexpr int barHeight = 55;
    static constexpr int windowShadowBlur = 34;
    static constexpr int windowShadowDrop = 10;

Q_SIGNALS:
    /// The appearance changed, and with it possibly every colour.
    void changed();

private:
    bool isDark() const;
    QColor resolve(QRgb light, QRgb dark) const { return QColor::fromRgb(isDark() ? dark : light); }
    /// A blue that has at least 4.5 to 1 against every surface.
    QColor strongBlue() const { return resolve(0xff0040dd, 0xff409cff); }
    QColor primary(float opacity) const { return faded(primary(), opacity); }
    /// The primary label colour of texts and symbols. In high contrast it is not faded.
    QColor label(float opacity) const { return primary(highContrast() ? 1.0F : opacity); }
    /// The primary label colour of lines and edges. In high contrast it has at least 4.5 to 1 against every surface.
    QColor line(float opacity) const { return primary(highContrast() ? 0.70F : opacity); }
    static QColor faded(QColor color, float opacity);
    /// The system font at a size in points.
    static QFont systemFont(qreal points, QFont::Weight weight);
    /// The font with `tracking` points added after each letter.
    static QFont tracked(QFont font, qreal tracking);
    /// The font with digits of equal width if Qt supports that (6.7 and later), else the font unchanged.
    static QFont withTabularDigits(const QFont &font);

    const Appearance *appearance_;
};

} // namespace kelvo
