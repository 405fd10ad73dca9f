#include "support/QmlStage.h"
#include "support/ViewScene.h"

#include "menubar/popover/PopoverWindow.h"
#include "style/WholeFrame.h"
#include "windows/onboarding/OnboardingSceneWindow.h"
#include "windows/settings/SettingsSceneWindow.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineF>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <QQuickPaintedItem>
#include <QQuickRenderControl>
#include <QQuickRenderTarget>
#include <QScreen>
#include <QTemporaryFile>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

constexpr int firstPercent = 100;
constexpr int lastPercent = 300;
constexpr int step = 5;

const std::vector<ServiceID> eight(allServiceIDs.begin(), allServiceIDs.end());

/// Describes one screen for each scale. The offscreen platform derives the scale from the logical resolution.
QByteArray screens()
{
    QJsonArray screens;
    for (int percent = firstPercent; percent <= lastPercent; percent += step) {
        screens.append(QJsonObject{{u"name"_s, QString::number(percent)},
                                   {u"x"_s, 4000 * static_cast<int>(screens.size())},
                                   {u"y"_s, 0},
                                   {u"width"_s, 3600},
                                   {u"height"_s, 3000},
                                   {u"logicalBaseDpi"_s, 100},
                                   {u"logicalDpi"_s, percent}});
    }
    return QJsonDocument(QJsonObject{{u"screens"_s, screens}}).toJson();
}

QScreen *screen(int percent)
{
    const auto screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(), [percent](const QScreen *each) {
        return each->name() == QString::number(percent);
    });
    return found == screens.end() ? nullptr : *found;
}

/// The stores and windows of the program.
struct Program
{
    Program() { appearance.still = true; }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Stores stores{eight};
    PopoverWindow popover{stores.store, stores.settings, engine, stores.clock};
    SettingsSceneWindow settings{stores.settings, stores.notifier, engine, appearance};
    OnboardingSceneWindow onboarding{stores.settings, stores.notifier, engine, appearance};
};

void hover(QQuickView *view, const QString &name)
{
    auto *item = findItem(view->contentItem(), name);
    QVERIFY2(item, qPrintable(name));
    QTest::mouseMove(view, item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
    settle();
    view->grabWindow();
}

void press(QQuickView *view, Qt::Key key)
{
    QTest::keyClick(view, key);
    settle();
    view->grabWindow();
}

/// Shows a view on the screen with this scale, and returns its picture.
QImage shown(QQuickView &view, int percent)
{
    view.setPosition(screen(percent)->geometry().topLeft());
    view.show();
    if (!QTest::qWaitForWindowExposed(&view) || view.effectiveDevicePixelRatio() != percent / 100.0) {
        return {};
    }
    return view.grabWindow();
}

/// The smallest rectangle that contains all pixels with such a colour.
template<typename Predicate>
QRect extent(const QImage &picture, Predicate isPart)
{
    QRect extent;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (isPart(picture.pixelColor(x, y))) {
                extent |= QRect(x, y, 1, 1);
            }
        }
    }
    return extent;
}

/// Whether a pixel is inside of a rectangle with round corners.
bool contains(const QRectF &rect, double radius, const QPoint &pixel)
{
    const auto point = QPointF(pixel) + QPointF(0.5, 0.5);
    const auto straight = rect.adjusted(radius, radius, -radius, -radius);
    const QPointF nearest(std::clamp(point.x(), straight.left(), straight.right()),
                          std::clamp(point.y(), straight.top(), straight.bottom()));
    return QLineF(point, nearest).length() <= radius;
}

/// Returns where the picture was not painted: such pixels are transparent, or black if it has no transparency. No colour
/// of the light views is black.
QString unpainted(const QImage &picture, const QRectF &within, double radius = 0)
{
    qsizetype count = 0;
    QPoint first;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const auto pixel = picture.pixel(x, y);
            const bool isBlank = qAlpha(pixel) < 255 || (pixel & 0xffffff) == 0;
            if (isBlank && (radius > 0 ? contains(within, radius, {x, y}) : within.contains(x, y))) {
                first = count++ == 0 ? QPoint(x, y) : first;
            }
        }
    }
    return count == 0 ? QString()
                      : u"%1 pixels, the first at %2, %3 of %4 × %5"_s.arg(count)
                            .arg(first.x())
                            .arg(first.y())
                            .arg(picture.width())
                            .arg(picture.height());
}

/// A translucent picture whose pixels all differ.
class Gradients : public QQuickPaintedItem
{
public:
    void paint(QPainter *painter) override
    {
        QLinearGradient across(0, 0, width(), 0);
        across.setColorAt(0, QColor(0, 0, 0, 100));
        across.setColorAt(1, QColor(255, 0, 0, 100));
        painter->fillRect(boundingRect(), across);
        QLinearGradient down(0, 0, 0, height());
        down.setColorAt(0, QColor(0, 0, 0, 100));
        down.setColorAt(1, QColor(0, 255, 0, 100));
        painter->fillRect(boundingRect(), down);
    }
};

} // namespace

/// The windows at scales at which a point is not a whole number of device pixels.
class FractionalScalesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePopoverHasNoGaps_data() { scales(); }
    void thePopoverHasNoGaps();
    void theSettingsHaveNoGaps_data() { scales(); }
    void theSettingsHaveNoGaps();
    void theMarkIsConcentric_data();
    void theMarkIsConcentric();
    void dotsAreSymmetric_data();
    void dotsAreSymmetric();
    void theOnboardingHasNoGaps_data() { scales(); }
    void theOnboardingHasNoGaps();
    void theEdgesContinueWhatIsBesideThem_data();
    void theEdgesContinueWhatIsBesideThem();
    void aFrameThatIsNotAnImageIsPaintedToo();

private:
    static void scales()
    {
        QTest::addColumn<int>("percent");
        for (int percent = firstPercent; percent <= lastPercent; percent += step) {
            QTest::addRow("%d %%", percent) << percent;
        }
    }
};

void FractionalScalesTest::thePopoverHasNoGaps()
{
    QFETCH(const int, percent);
    Program program;
    program.appearance.still = false;
    const QRect ring(screen(percent)->geometry().topLeft() + QPoint(500, 2), QSize(24, 24));
    program.popover.toggle({.rectangle = ring, .clicked = std::nullopt});
    auto *view = program.popover.view();
    QVERIFY(QTest::qWaitForWindowExposed(view));
    QCOMPARE(view->effectiveDevicePixelRatio(), percent / 100.0);
    // The animation of the content repaints every text in many frames.
    QTRY_COMPARE(findItem(view->rootObject(), u"stack"_s)->opacity(), 1.0);
    program.stores.round({{ServiceID::chatgpt, ServiceHealth::outage}});
    hover(view, u"row-cursor"_s);
    press(view, Qt::Key_Tab);
    program.stores.round({{ServiceID::gemini, ServiceHealth::degraded}});
    hover(view, u"settingsButton"_s);

    const auto shown = view->grabWindow();
    const auto card = program.popover.card();
    const auto scale = percent / 100.0;
    // The outermost pixels are blended with what is behind.
    const QRectF inside(card.x() * scale + 2, card.y() * scale + 2, card.width() * scale - 4,
                        card.height() * scale - 4);
    QVERIFY(QRectF(shown.rect()).contains(inside));
    QCOMPARE(unpainted(shown, inside, Tokens::windowRadius * scale - 2), QString());
}

void FractionalScalesTest::theSettingsHaveNoGaps()
{
    QFETCH(const int, percent);
    Program program;
    program.settings.open();
    auto *view = program.settings.view();
    view->setPosition(screen(percent)->geometry().topLeft());
    QVERIFY(QTest::qWaitForWindowExposed(view));
    QCOMPARE(view->effectiveDevicePixelRatio(), percent / 100.0);
    view->grabWindow();
    press(view, Qt::Key_Tab);
    press(view, Qt::Key_Space);
    press(view, Qt::Key_Tab);
    program.appearance.setDark(true);
    settle();
    view->grabWindow();
    program.appearance.setDark(false);
    settle();
    const auto shown = view->grabWindow();
    QCOMPARE(unpainted(shown, shown.rect()), QString());
}

void FractionalScalesTest::theOnboardingHasNoGaps()
{
    QFETCH(const int, percent);
    Program program;
    program.onboarding.open();
    auto *view = program.onboarding.view();
    view->setPosition(screen(percent)->geometry().topLeft());
    QVERIFY(QTest::qWaitForWindowExposed(view));
    QCOMPARE(view->effectiveDevicePixelRatio(), percent / 100.0);
    const auto promise = view->grabWindow();
    QCOMPARE(unpainted(promise, promise.rect()), QString());
    press(view, Qt::Key_Tab);
    press(view, Qt::Key_Return);
    const auto picker = view->grabWindow();
    QCOMPARE(unpainted(picker, picker.rect()), QString());
}

void FractionalScalesTest::theMarkIsConcentric_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<double>("offset");
    for (const int percent : {100, 150, 200}) {
        // A place in the layout that is not on the grid of pixels, too
        for (const double offset : {0.0, 0.3}) {
            QTest::addRow("%d %%, at %.1f", percent, offset) << percent << offset;
        }
    }
}

void FractionalScalesTest::theMarkIsConcentric()
{
    QFETCH(const int, percent);
    QFETCH(const double, offset);
    QmlStage stage("KelvoMark { x: 13 + " + QByteArray::number(offset) + "; y: x; size: 54; coreColor: '#32D74B' }",
                   {80, 80});
    const auto picture = shown(stage.view, percent);
    const auto isGreen = [](const QColor &color) { return color.green() - color.red() > 40; };
    const auto isInk = [](const QColor &color) { return color.lightness() < 200; };
    const auto dot = extent(picture, isGreen);
    const auto whole = extent(picture, isInk);
    QVERIFY(dot.width() > 10);
    QVERIFY(whole.width() > 50);
    QCOMPARE(QRectF(dot).center(), QRectF(whole).center());
}

void FractionalScalesTest::dotsAreSymmetric_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<QByteArray>("symbol");
    for (const int percent : {100, 150, 200}) {
        for (const int size : {5, 7, 8}) {
            const auto side = QByteArray::number(size);
            QTest::addRow("%d %%, %d points", percent, size)
                << percent
                << QByteArray("StatusDot { x: 20; y: 20.27; color: 'black'; width: " + side + "; height: " + side
                              + " }");
        }
    }
}

void FractionalScalesTest::dotsAreSymmetric()
{
    QFETCH(const int, percent);
    QFETCH(const QByteArray, symbol);
    QmlStage stage(symbol, {60, 60});
    const auto picture = shown(stage.view, percent);
    const auto dot = picture.copy(extent(picture, [](const QColor &color) { return color.lightness() < 250; }));
    QVERIFY(dot.width() >= 5);
    QCOMPARE(dot.width(), dot.height());
    for (int y = 0; y < dot.height(); ++y) {
        for (int x = 0; x < dot.width(); ++x) {
            // QPainter does not blend opposite sides of a circle quite the same.
            constexpr int tolerance = 16;
            const auto at = dot.pixelColor(x, y).lightness();
            QVERIFY(qAbs(at - dot.pixelColor(dot.width() - 1 - x, y).lightness()) <= tolerance);
            QVERIFY(qAbs(at - dot.pixelColor(x, dot.height() - 1 - y).lightness()) <= tolerance);
        }
    }
}

void FractionalScalesTest::theEdgesContinueWhatIsBesideThem_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("pixels");
    // What the scene graph does not paint is one line, or two.
    QTest::newRow("125 %") << 1.25 << 51;
    QTest::newRow("250 %") << 2.5 << 102;
}

void FractionalScalesTest::theEdgesContinueWhatIsBesideThem()
{
    QFETCH(const double, scale);
    QFETCH(const int, pixels);
    const FakeAppearance appearance;
    ViewEngine(appearance).get(); // chooses the software renderer
    QImage frame(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    frame.fill(Qt::magenta);
    frame.setDevicePixelRatio(scale);
    auto target = QQuickRenderTarget::fromPaintDevice(&frame);
    target.setDevicePixelRatio(scale);
    QQuickRenderControl control;
    QQuickWindow window(&control);
    window.resize(40, 40);
    window.setColor(Qt::transparent);
    window.setRenderTarget(target);
    Gradients gradients;
    gradients.setParentItem(window.contentItem());
    gradients.setSize({40, 40});
    new WholeFrame(window);
    control.polishItems();
    control.sync();
    control.render();

    const int painted = static_cast<int>(40 * scale);
    QVERIFY(frame.pixel(painted - 1, 5) != frame.pixel(painted - 2, 5));
    QVERIFY(frame.pixel(5, painted - 1) != frame.pixel(5, painted - 2));
    for (int along = 0; along < pixels; ++along) {
        const int beside = std::min(along, painted - 1);
        for (int beyond = painted; beyond < pixels; ++beyond) {
            QCOMPARE(frame.pixel(beyond, along), frame.pixel(painted - 1, beside));
            QCOMPARE(frame.pixel(along, beyond), frame.pixel(beside, painted - 1));
        }
    }
}

/// The frame cannot be read back then, and its gaps stay.
void FractionalScalesTest::aFrameThatIsNotAnImageIsPaintedToo()
{
    const FakeAppearance appearance;
    ViewEngine(appearance).get(); // chooses the software renderer
    QPixmap frame(51, 51);
    frame.fill(Qt::black);
    auto target = QQuickRenderTarget::fromPaintDevice(&frame);
    target.setDevicePixelRatio(1.25);
    QQuickRenderControl control;
    QQuickWindow window(&control);
    window.resize(40, 40);
    window.setColor(Qt::white);
    window.setRenderTarget(target);
    new WholeFrame(window);
    control.polishItems();
    control.sync();
    control.render();
    QCOMPARE(window.effectiveDevicePixelRatio(), 1.25);
    QCOMPARE(frame.toImage().pixelColor(25, 25), QColor(Qt::white));
}

} // namespace kelvo

int main(int argc, char *argv[])
{
    QTemporaryFile configuration;
    if (!configuration.open() || configuration.write(kelvo::screens()) <= 0 || !configuration.flush()) {
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + configuration.fileName().toLocal8Bit());
    QApplication application(argc, argv);
    kelvo::FractionalScalesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fractionalscales.moc"
