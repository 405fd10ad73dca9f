#include "style/ButtonItem.h"
#include "support/QmlStage.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// A window with one control.
class Stage : public QmlStage
{
public:
    explicit Stage(const QByteArray &control)
        : QmlStage(control, {300, 100})
    {
        view.show();
        view.requestActivate();
        if (!QTest::qWaitForWindowActive(&view)) {
            qFatal("The window did not become active");
        }
    }

    QQuickItem *control() const { return item(); }
    QQuickItem *content() const { return control()->property("contentItem").value<QQuickItem *>(); }
    QAccessibleInterface *accessible() const
    {
        QAccessible::setActive(true); // as a screen reader does
        return QAccessible::queryAccessibleInterface(control());
    }
};

/// A button that fills the left half of its window.
const QByteArray leftHalf = "ButtonItem { width: 150; height: 100; hoverEnabled: true }";
constexpr QPoint onTheButton{75, 50};
constexpr QPoint besideTheButton{225, 50};

bool isDown(const Stage &stage)
{
    return stage.control()->property("down").toBool();
}

bool isHovered(const Stage &stage)
{
    return stage.control()->property("hovered").toBool();
}

double pixelSize(QQuickItem *text)
{
    return text->property("font").value<QFont>().pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY()
        / 72;
}

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filledButtonWithoutAWidthHas16PointsBesideItsTitle();
    void filledButtonWithAWidthIsExactlyThatWide();
    void filledButtonIsWhiteOnTheActionColour();
    void quietButtonShowsOnlyItsTitle();
    void capsTagUpperCasesItsText();
    void sectionCapsUpperCasesItsText();
    void buttonsCanBeOperatedByMouseAndKeys_data();
    void buttonsCanBeOperatedByMouseAndKeys();
    void aScreenReaderSeesAButton();
    void aDisabledButtonDoesNothing_data();
    void aDisabledButtonDoesNothing();
    void releasingTheMouseOutsideOfAButtonDoesNotClickIt();
    void aButtonIsDownAgainWhenTheMouseReturnsToIt();
    void aButtonIsUpAgainWhenItIsClicked();
    void aButtonWithoutHoverIsNotHoveredWhenTheMouseReturnsToIt();
    void aButtonIsNeitherDownNorHoveredWhenItCannotBeClicked_data();
    void aButtonIsNeitherDownNorHoveredWhenItCannotBeClicked();
    void aButtonStaysHoveredWhenItLosesTheFocus();
    void aButtonTellsThatItsWindowHasChanged();
    void aButtonTellsTheImplicitSizesOfItsParts();
    void aButtonTellsItsPlaceAndSize();
    void aPartThatIsSetAgainChangesNothing();
    void aPartThatIsSetLaterIsLaidOut();
    void aClickEndsTheVisibleFocus();
    void aButtonGrowsWithAContentThatWraps();
};

void ControlsTest::filledButtonWithoutAWidthHas16PointsBesideItsTitle()
{
    const Stage stage("FilledButton { title: 'Continue'; height: 28 }");
    QVERIFY(stage.content()->implicitWidth() > 20);
    QCOMPARE(stage.control()->width(), stage.content()->implicitWidth() + 32);
    QCOMPARE(stage.content()->x(), 16.0);
    QCOMPARE(stage.control()->height(), 28.0);
}

void ControlsTest::filledButtonWithAWidthIsExactlyThatWide()
{
    const Stage stage("FilledButton { title: 'Continue'; height: 30; fixedWidth: 140 }");
    QCOMPARE(stage.control()->width(), 140.0);
    QCOMPARE(stage.content()->x(), 0.0);
    QCOMPARE(stage.content()->width(), 140.0);
}

void ControlsTest::filledButtonIsWhiteOnTheActionColour()
{
    Stage stage("FilledButton { title: 'Continue'; height: 28 }");
    auto *background = stage.control()->property("background").value<QQuickItem *>();
    QCOMPARE(background->property("color").value<QColor>(), stage.tokens.action());
    QCOMPARE(background->property("radius").toReal(), 7.0);
    QCOMPARE(stage.content()->property("color").value<QColor>(), QColor(Qt::white));
    QCOMPARE(pixelSize(stage.content()), 13.0);
    QCOMPARE(stage.content()->property("font").value<QFont>().weight(), QFont::DemiBold);
    stage.appearance.setDark(true);
    QCOMPARE(background->property("color").value<QColor>(), QColor(0x0a84ff));
}

void ControlsTest::quietButtonShowsOnlyItsTitle()
{
    const Stage stage("QuietButton { title: 'Not now'; color: '#123456' }");
    QCOMPARE(stage.control()->width(), stage.content()->implicitWidth());
    QCOMPARE(stage.control()->height(), 24.0);
    QCOMPARE(stage.content()->property("color").value<QColor>(), QColor(0x123456));
    QCOMPARE(stage.content()->property("font").value<QFont>(), stage.tokens.metadata());
    QVERIFY(!stage.control()->property("background").value<QQuickItem *>());
}

void ControlsTest::capsTagUpperCasesItsText()
{
    const Stage stage("CapsTag { title: 'Primary'; color: '#123456' }");
    QCOMPARE(stage.control()->property("text").toString(), u"PRIMARY"_s);
    QCOMPARE(stage.control()->property("font").value<QFont>(), stage.tokens.trackedTagCaps());
    QCOMPARE(stage.control()->property("color").value<QColor>(), QColor(0x123456));
}

void ControlsTest::sectionCapsUpperCasesItsText()
{
    const Stage stage("SectionCaps { title: 'Also affected' }");
    QCOMPARE(stage.control()->property("text").toString(), u"ALSO AFFECTED"_s);
    QCOMPARE(stage.control()->property("font").value<QFont>(), stage.tokens.trackedSectionCaps());
    QCOMPARE(stage.control()->property("color").value<QColor>().rgba(), stage.tokens.labelQuaternary().rgba());
    QCOMPARE(stage.accessible()->text(QAccessible::Name), u"Also affected"_s);
}

void ControlsTest::buttonsCanBeOperatedByMouseAndKeys_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::newRow("filled") << QByteArray("FilledButton { title: 'Continue'; height: 28 }");
    QTest::newRow("quiet") << QByteArray("QuietButton { title: 'Not now'; color: 'black' }");
}

void ControlsTest::buttonsCanBeOperatedByMouseAndKeys()
{
    QFETCH(QByteArray, control);
    Stage stage(control);
    const QSignalSpy clicked(stage.control(), SIGNAL(clicked()));
    QVERIFY(!stage.control()->property("visualFocus").toBool());
    QTest::keyClick(&stage.view, Qt::Key_Tab);
    QVERIFY(stage.control()->hasActiveFocus());
    QVERIFY(stage.control()->property("visualFocus").toBool());
    QTest::keyClick(&stage.view, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
    QTest::keyClick(&stage.view, Qt::Key_Return);
    QCOMPARE(clicked.count(), 2);
    QTest::keyClick(&stage.view, Qt::Key_Enter);
    QCOMPARE(clicked.count(), 3);
    QTest::mouseClick(&stage.view, Qt::LeftButton, {}, {5, 5});
    QCOMPARE(clicked.count(), 4);
}

void ControlsTest::aScreenReaderSeesAButton()
{
    const Stage stage("FilledButton { title: 'Continue'; height: 28 }");
    QVERIFY(stage.accessible());
    QCOMPARE(stage.accessible()->role(), QAccessible::Button);
    QCOMPARE(stage.accessible()->text(QAccessible::Name), u"Continue"_s);
    QCOMPARE(stage.accessible()->childCount(), 0);
}

void ControlsTest::aDisabledButtonDoesNothing_data()
{
    buttonsCanBeOperatedByMouseAndKeys_data();
}

void ControlsTest::aDisabledButtonDoesNothing()
{
    QFETCH(QByteArray, control);
    Stage stage(control);
    const QSignalSpy clicked(stage.control(), SIGNAL(clicked()));
    const auto press = [&] {
        stage.accessible()->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    press();
    QCOMPARE(clicked.count(), 1);
    stage.control()->setEnabled(false);
    press();
    QTest::mouseClick(&stage.view, Qt::LeftButton, {}, {5, 5});
    QTest::keyClick(&stage.view, Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
}

void ControlsTest::releasingTheMouseOutsideOfAButtonDoesNotClickIt()
{
    Stage stage(leftHalf);
    const QSignalSpy clicked(stage.control(), SIGNAL(clicked()));
    QTest::mouseMove(&stage.view, onTheButton);
    QTest::mousePress(&stage.view, Qt::LeftButton, {}, onTheButton);
    QVERIFY(isDown(stage));
    QVERIFY(isHovered(stage));
    QTest::mouseMove(&stage.view, besideTheButton);
    QVERIFY(!isDown(stage));
    QVERIFY(!isHovered(stage));
    QTest::mouseRelease(&stage.view, Qt::LeftButton, {}, besideTheButton);
    QCOMPARE(clicked.count(), 0);
}

void ControlsTest::aButtonIsDownAgainWhenTheMouseReturnsToIt()
{
    Stage stage(leftHalf);
    const QSignalSpy clicked(stage.control(), SIGNAL(clicked()));
    QTest::mousePress(&stage.view, Qt::LeftButton, {}, onTheButton);
    QTest::mouseMove(&stage.view, besideTheButton);
    QTest::mouseMove(&stage.view, onTheButton);
    QVERIFY(isDown(stage));
    QVERIFY(isHovered(stage));
    QTest::mouseRelease(&stage.view, Qt::LeftButton, {}, onTheButton);
    QVERIFY(!isDown(stage));
    QCOMPARE(clicked.count(), 1);
}

void ControlsTest::aButtonIsUpAgainWhenItIsClicked()
{
    Stage stage(leftHalf);
    QList<bool> down;
    connect(qobject_cast<ButtonItem *>(stage.control()), &ButtonItem::clicked, this,
            [&] { down.append(isDown(stage)); });
    QTest::mouseClick(&stage.view, Qt::LeftButton, {}, onTheButton);
    QCOMPARE(down, QList<bool>{false});
}

void ControlsTest::aButtonWithoutHoverIsNotHoveredWhenTheMouseReturnsToIt()
{
    Stage stage("ButtonItem { width: 150; height: 100; hoverEnabled: false }");
    QTest::mousePress(&stage.view, Qt::LeftButton, {}, onTheButton);
    QTest::mouseMove(&stage.view, besideTheButton);
    QTest::mouseMove(&stage.view, onTheButton);
    QVERIFY(isDown(stage));
    QVERIFY(!isHovered(stage));
    QTest::mouseRelease(&stage.view, Qt::LeftButton, {}, onTheButton);
}

void ControlsTest::aButtonIsNeitherDownNorHoveredWhenItCannotBeClicked_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("disabled") << QByteArray("enabled");
    QTest::newRow("hidden") << QByteArray("visible");
}

void ControlsTest::aButtonIsNeitherDownNorHoveredWhenItCannotBeClicked()
{
    QFETCH(const QByteArray, property);
    Stage stage(leftHalf);
    const QSignalSpy clicked(stage.control(), SIGNAL(clicked()));
    QTest::mouseMove(&stage.view, onTheButton);
    QTest::mousePress(&stage.view, Qt::LeftButton, {}, onTheButton);
    stage.control()->setProperty(property, false);
    QVERIFY(!isDown(stage));
    QVERIFY(!isHovered(stage));
    stage.control()->setProperty(property, true);
    QTest::mouseRelease(&stage.view, Qt::LeftButton, {}, onTheButton);
    QCOMPARE(clicked.count(), 0);
}

void ControlsTest::aButtonStaysHoveredWhenItLosesTheFocus()
{
    Stage stage(leftHalf);
    QTest::mouseMove(&stage.view, onTheButton);
    stage.control()->forceActiveFocus();
    QVERIFY(isHovered(stage));
    stage.control()->setFocus(false);
    QVERIFY(!stage.control()->hasActiveFocus());
    QVERIFY(isHovered(stage));
}

void ControlsTest::aButtonTellsThatItsWindowHasChanged()
{
    const Stage stage(leftHalf);
    const QSignalSpy changed(stage.control(), &QQuickItem::windowChanged);
    stage.control()->setParentItem(nullptr);
    QCOMPARE(changed.count(), 1);
}

void ControlsTest::aButtonTellsTheImplicitSizesOfItsParts()
{
    const Stage stage("ButtonItem {"
                      "    background: Item { implicitWidth: 30; implicitHeight: 20 }"
                      "    contentItem: Item { implicitWidth: 40; implicitHeight: 10 } }");
    auto *button = stage.control();
    QCOMPARE(button->property("implicitBackgroundWidth").toReal(), 30.0);
    QCOMPARE(button->property("implicitBackgroundHeight").toReal(), 20.0);
    QCOMPARE(button->property("implicitContentWidth").toReal(), 40.0);
    QCOMPARE(button->property("implicitContentHeight").toReal(), 10.0);

    const QSignalSpy widths(button, SIGNAL(implicitWidthsChanged()));
    const QSignalSpy heights(button, SIGNAL(implicitHeightsChanged()));
    stage.content()->setImplicitWidth(50);
    QCOMPARE(button->property("implicitContentWidth").toReal(), 50.0);
    QCOMPARE(widths.count(), 1);
    QCOMPARE(heights.count(), 0);
    stage.content()->setImplicitHeight(15);
    QCOMPARE(button->property("implicitContentHeight").toReal(), 15.0);
    QCOMPARE(widths.count(), 1);
    QCOMPARE(heights.count(), 1);
}

void ControlsTest::aButtonTellsItsPlaceAndSize()
{
    const Stage stage("ButtonItem { width: 30; height: 20; Item { anchors.fill: parent } }");
    auto *button = stage.control();
    const QSignalSpy moved(button, &QQuickItem::xChanged);
    const QSignalSpy resized(button, &QQuickItem::widthChanged);
    button->setX(5);
    button->setWidth(40);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(resized.count(), 1);
    QCOMPARE(button->childItems().constLast()->size(), QSizeF(40, 20));
}

void ControlsTest::aPartThatIsSetAgainChangesNothing()
{
    const Stage stage("ButtonItem { background: Item {} contentItem: Item {} }");
    for (const auto &[property, signal] : {std::pair("background", SIGNAL(backgroundChanged())),
                                           std::pair("contentItem", SIGNAL(contentItemChanged()))}) {
        const QSignalSpy changed(stage.control(), signal);
        const auto part = stage.control()->property(property);
        QVERIFY(part.value<QQuickItem *>());
        stage.control()->setProperty(property, part);
        QCOMPARE(changed.count(), 0);
        stage.control()->setProperty(property, QVariant::fromValue<QQuickItem *>(nullptr));
        QCOMPARE(changed.count(), 1);
    }
}

void ControlsTest::aPartThatIsSetLaterIsLaidOut()
{
    const Stage stage("ButtonItem { width: 60; height: 30; leftPadding: 3; rightPadding: 4; topPadding: 5;"
                      "             bottomPadding: 6 }");
    QQuickItem background;
    QQuickItem content;
    stage.control()->setProperty("background", QVariant::fromValue(&background));
    stage.control()->setProperty("contentItem", QVariant::fromValue(&content));
    QCOMPARE(background.size(), QSizeF(60, 30));
    QVERIFY(background.z() < content.z());
    QCOMPARE(content.position(), QPointF(3, 5));
    QCOMPARE(content.size(), QSizeF(53, 19));
    stage.control()->setProperty("leftPadding", 10);
    QCOMPARE(content.position(), QPointF(10, 5));
    QCOMPARE(content.size(), QSizeF(46, 19));
    stage.control()->setSize({5, 8});
    QCOMPARE(background.size(), QSizeF(5, 8));
    QCOMPARE(content.size(), QSizeF(0, 0));
}

void ControlsTest::aClickEndsTheVisibleFocus()
{
    Stage stage(leftHalf);
    const auto hasVisualFocus = [&stage] { return stage.control()->property("visualFocus").toBool(); };
    QTest::keyClick(&stage.view, Qt::Key_Tab);
    QVERIFY(hasVisualFocus());
    const QSignalSpy changed(stage.control(), SIGNAL(visualFocusChanged()));
    QTest::mouseClick(&stage.view, Qt::LeftButton, {}, onTheButton);
    QVERIFY(stage.control()->hasActiveFocus());
    QVERIFY(!hasVisualFocus());
    QCOMPARE(changed.count(), 1);
    for (const auto reason : {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
        stage.control()->setFocus(false);
        stage.control()->setFocus(true, reason);
        QVERIFY(hasVisualFocus());
    }
    for (const auto reason : {Qt::MouseFocusReason, Qt::OtherFocusReason}) {
        stage.control()->setFocus(false);
        stage.control()->setFocus(true, reason);
        QVERIFY(!hasVisualFocus());
    }
}

void ControlsTest::aButtonGrowsWithAContentThatWraps()
{
    const Stage stage("PopoverButton {"
                      "    width: 290; topPadding: 3; bottomPadding: 4; text: 'A name of some words';"
                      "    contentItem: Label { text: 'A name of some words'; wrapMode: Text.Wrap } }");
    const auto oneLine = stage.content()->implicitHeight();
    QCOMPARE(stage.control()->height(), oneLine + 7);
    stage.control()->setWidth(60);
    QVERIFY(stage.content()->property("lineCount").toInt() > 1);
    QVERIFY(stage.content()->implicitHeight() > oneLine);
    QCOMPARE(stage.control()->height(), stage.content()->implicitHeight() + 7);
    QCOMPARE(stage.content()->height(), stage.content()->implicitHeight());
}

} // namespace kelvo

QTEST_MAIN(kelvo::ControlsTest)
#include "tst_controls.moc"
