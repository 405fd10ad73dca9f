#include "support/FakeAppearance.h"

#include "style/Tokens.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The opaque colour that `color` gives on `ground`.
QColor over(const QColor &ground, const QColor &color)
{
    const auto mix = [&](float below, float above) { return above * color.alphaF() + below * (1 - color.alphaF()); };
    return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                            mix(ground.blueF(), color.blueF()));
}

/// The contrast ratio of two opaque colours as WCAG defines it, from 1 to 21.
double contrast(const QColor &left, const QColor &right)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(left), luminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

class TokensTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aColourIsAPairOfLightAndDark_data();
    void aColourIsAPairOfLightAndDark();
    void coloursAreLightWithoutAnAppearance();
    void highContrastGivesLabelsTheirFullStrength_data();
    void highContrastGivesLabelsTheirFullStrength();
    void highContrastMakesLinesAndMarksVisible_data();
    void highContrastMakesLinesAndMarksVisible();
    void highContrastGivesControlsABorder();
    void coloursFollowTheAppearanceLive();
    void coloursDoNotDependOnThePalette();
    void aFontHasItsSizeInDeviceIndependentPixels_data();
    void aFontHasItsSizeInDeviceIndependentPixels();
    void trackingIsRoomAfterEachLetterInPoints_data();
    void trackingIsRoomAfterEachLetterInPoints();
    void motionsDecelerate();
    void aBreathBeginsAndEndsSlowly();
    void reduceMotionFollowsTheAppearance();
};

void TokensTest::aColourIsAPairOfLightAndDark_data()
{
    QTest::addColumn<QColor>("light");
    QTest::addColumn<QColor>("dark");
    const auto pair = [](const char *token, QRgb light, QRgb dark) {
        QTest::newRow(token) << QColor(light) << QColor(dark);
    };
    const auto primary = [](const char *token, float opacity) {
        QColor light(Qt::black);
        QColor dark(Qt::white);
        light.setAlphaF(opacity);
        dark.setAlphaF(opacity);
        QTest::newRow(token) << light << dark;
    };
    pair("availableDot", 0x34c759, 0x32d74b);
    pair("availableText", 0x1e7b36, 0x5be07a);
    pair("recoveringDot", 0xff9500, 0xff9f0a);
    pair("recoveringText", 0xa85b00, 0xffb340);
    pair("outageDot", 0xff3b30, 0xff453a);
    pair("outageText", 0xc10d02, 0xff6961);
    pair("action", 0x007aff, 0x0a84ff);
    pair("link", 0x0a6cff, 0x409cff);
    primary("primary", 1.0F);
    primary("labelPrimary", 0.88F);
    primary("labelSecondary", 0.55F);
    primary("labelTertiary", 0.42F);
    primary("labelQuaternary", 0.32F);
    primary("inactiveDot", 0.28F);
    primary("separator", 0.075F);
    primary("cardLine", 0.06F);
    primary("highlight", 0.06F);
    primary("highlightPressed", 0.10F);
    primary("rowHovered", 0.03F);
    primary("rowPressed", 0.07F);
    primary("fieldLine", 0.15F);
    primary("fieldLineHovered", 0.24F);
    primary("controlLine", 0.45F);
    primary("controlLineHovered", 0.60F);
    primary("segmentTrack", 0.07F);
    primary("segmentHovered", 0.70F);
    primary("switchTrack", 0.14F);
    primary("scrollThumb", 0.18F);
    primary("scrollThumbHovered", 0.30F);
    primary("scrollThumbPressed", 0.40F);
    primary("watchName", 0.78F);
    primary("markRing", 0.72F);
    primary("pageDot", 0.18F);
    pair("popover", 0xffffff, 0x262628);
    pair("window", 0xf5f5f7, 0x1e1e20);
    pair("card", 0xffffff, 0x2a2a2d);
    pair("textField", 0xffffff, 0x1b1b1d);
}

void TokensTest::aColourIsAPairOfLightAndDark()
{
    QFETCH(QColor, light);
    QFETCH(QColor, dark);
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    QCOMPARE(tokens.property(QTest::currentDataTag()).value<QColor>(), light);
    appearance.setDark(true);
    QCOMPARE(tokens.property(QTest::currentDataTag()).value<QColor>(), dark);
}

void TokensTest::coloursAreLightWithoutAnAppearance()
{
    const Tokens tokens(nullptr);
    QCOMPARE(tokens.availableDot(), QColor(0x34c759));
    QVERIFY(!tokens.reduceMotion());
}

void TokensTest::highContrastGivesLabelsTheirFullStrength_data()
{
    QTest::addColumn<QByteArray>("token");
    for (const char *token : {"labelPrimary", "labelSecondary", "labelTertiary", "labelQuaternary", "watchName",
                              "segmentHovered", "markRing"}) {
        QTest::newRow(token) << QByteArray(token);
    }
}

void TokensTest::highContrastGivesLabelsTheirFullStrength()
{
    QFETCH(const QByteArray, token);
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    appearance.setHighContrast(true);
    QCOMPARE(tokens.property(token).value<QColor>(), QColor(Qt::black));
    appearance.setDark(true);
    QCOMPARE(tokens.property(token).value<QColor>(), QColor(Qt::white));
}

void TokensTest::highContrastMakesLinesAndMarksVisible_data()
{
    QTest::addColumn<QByteArray>("token");
    for (const char *token :
         {"cardLine", "hairline", "separator", "fieldLine", "controlLine", "scrollThumb", "pageDot", "focusRing",
          "controlBorder", "action", "link", "availableDot", "recoveringDot", "outageDot", "inactiveDot"}) {
        QTest::newRow(token) << QByteArray(token);
    }
}

void TokensTest::highContrastMakesLinesAndMarksVisible()
{
    QFETCH(const QByteArray, token);
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    appearance.setHighContrast(true);
    for (const bool dark : {false, true}) {
        appearance.setDark(dark);
        for (const auto &surface : {tokens.popover(), tokens.window(), tokens.card(), tokens.textField()}) {
            const auto color = tokens.property(token).value<QColor>();
            QVERIFY2(contrast(over(surface, color), surface) >= 4.5, qPrintable(surface.name()));
        }
        QVERIFY(contrast(tokens.actionText(), tokens.action()) >= 4.5);
    }
}

void TokensTest::highContrastGivesControlsABorder()
{
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    const QSignalSpy changed(&tokens, &Tokens::changed);
    QCOMPARE(tokens.controlBorderWidth(), 0);
    appearance.setHighContrast(true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(tokens.controlBorderWidth(), 1);
    QCOMPARE(tokens.focusRingWidth, 2);
    QCOMPARE(tokens.focusRing().alpha(), 255);
}

void TokensTest::coloursFollowTheAppearanceLive()
{
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    const QSignalSpy changed(&tokens, &Tokens::changed);
    appearance.setDark(true);
    QCOMPARE(changed.count(), 1);
}

void TokensTest::coloursDoNotDependOnThePalette()
{
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    const auto before = tokens.labelPrimary();
    QGuiApplication::setPalette(QPalette(Qt::red, Qt::darkGreen));
    QCOMPARE(tokens.labelPrimary(), before);
    QGuiApplication::setPalette(QPalette());
}

void TokensTest::aFontHasItsSizeInDeviceIndependentPixels_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<QFont::Weight>("weight");
    QTest::newRow("heroName") << 22.0 << QFont::DemiBold;
    QTest::newRow("sheetTitle") << 19.0 << QFont::DemiBold;
    QTest::newRow("windowTitle") << 17.0 << QFont::DemiBold;
    QTest::newRow("button") << 13.5 << QFont::DemiBold;
    QTest::newRow("status") << 13.0 << QFont::Medium;
    QTest::newRow("row") << 13.0 << QFont::Normal;
    QTest::newRow("bodyText") << 12.5 << QFont::Normal;
    QTest::newRow("rowStrong") << 12.5 << QFont::Medium;
    QTest::newRow("metadata") << 11.5 << QFont::Medium;
    QTest::newRow("sectionCaps") << 10.0 << QFont::Bold;
    QTest::newRow("tagCaps") << 9.5 << QFont::Bold;
    QTest::newRow("channelTitle") << 16.0 << QFont::DemiBold;
    QTest::newRow("emphasis") << 13.0 << QFont::DemiBold;
    QTest::newRow("footnote") << 11.5 << QFont::Normal;
    QTest::newRow("affectedTag") << 10.0 << QFont::DemiBold;
    QTest::newRow("checkedTime") << 11.5 << QFont::Medium;
}

void TokensTest::aFontHasItsSizeInDeviceIndependentPixels()
{
    QFETCH(double, size);
    QFETCH(QFont::Weight, weight);
    const Tokens tokens(nullptr);
    const auto font = tokens.property(QTest::currentDataTag()).value<QFont>();
    QCOMPARE(font.pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY() / 72, size);
    QCOMPARE(font.weight(), weight);
    QCOMPARE(font.family(), QFontDatabase::systemFont(QFontDatabase::GeneralFont).family());
    QCOMPARE(font.hintingPreference(), QFont::PreferNoHinting);
}

void TokensTest::trackingIsRoomAfterEachLetterInPoints_data()
{
    const Tokens tokens(nullptr);
    QTest::addColumn<QFont>("plain");
    QTest::addColumn<double>("tracking");
    QTest::newRow("heroTitle") << tokens.heroName() << -0.44;
    QTest::newRow("statusLabel") << tokens.status() << -0.065;
    QTest::newRow("trackedSectionCaps") << tokens.sectionCaps() << 0.7;
    QTest::newRow("trackedTagCaps") << tokens.tagCaps() << 0.57;
}

void TokensTest::trackingIsRoomAfterEachLetterInPoints()
{
    QFETCH(QFont, plain);
    QFETCH(double, tracking);
    const Tokens tokens(nullptr);
    auto font = tokens.property(QTest::currentDataTag()).value<QFont>();
    QCOMPARE(font.letterSpacingType(), QFont::AbsoluteSpacing);
    QVERIFY(qAbs(font.letterSpacing() - tracking) < 1.0 / 64); // Qt stores it in units of 1/64
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    plain.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    QCOMPARE(font, plain);
}

void TokensTest::motionsDecelerate()
{
    const Tokens tokens(nullptr);
    QCOMPARE(tokens.popoverRise().duration, 400);
    QCOMPARE(tokens.statusSwap().duration, 340);
    const QList<QPointF> curve{{0.2, 0.8}, {0.25, 1.0}, {1.0, 1.0}};
    QCOMPARE(tokens.controlSlide().duration, 160);
    QCOMPARE(tokens.rowMove().duration, 180);
    QCOMPARE(tokens.sheetFade().duration, 180);
    for (const auto &motion : {tokens.controlSlide(), tokens.rowMove(), tokens.sheetFade()}) {
        QCOMPARE(motion.curve.toCubicSpline(), curve);
    }
    QCOMPARE(tokens.popoverRise().curve.toCubicSpline(), curve);
    QCOMPARE(tokens.statusSwap().curve.toCubicSpline(), curve);
}

void TokensTest::aBreathBeginsAndEndsSlowly()
{
    const Tokens tokens(nullptr);
    QCOMPARE(tokens.breath().duration, 1700);
    QCOMPARE(tokens.breath().curve.toCubicSpline(), (QList<QPointF>{{0.42, 0.0}, {0.58, 1.0}, {1.0, 1.0}}));
}

void TokensTest::reduceMotionFollowsTheAppearance()
{
    FakeAppearance appearance;
    const Tokens tokens(&appearance);
    QVERIFY(!tokens.reduceMotion());
    appearance.setReduceMotion(true);
    QVERIFY(tokens.reduceMotion());
}

} // namespace kelvo

QTEST_MAIN(kelvo::TokensTest)
#include "tst_tokens.moc"
