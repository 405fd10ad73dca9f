#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

struct Literal
{
    QString name;
    QRegularExpression pattern;
};

/// The literals that views must not contain, because the tokens provide these values.
const QList<Literal> &literals()
{
    static const QList<Literal> all{
        {u"a colour mixed in place"_s,
         QRegularExpression("\\bQt\\.(alpha|color|darker|hsla|hsva|lighter|rgba|tint)\\("_L1)},
        {u"a colour by number"_s, QRegularExpression("\"#[0-9A-Fa-f]{3,8}\""_L1)},
        {u"a colour by name"_s, QRegularExpression("[cC]olor: .*\"(?!transparent\")\\w+\""_L1)},
        {u"a font put together in place"_s, QRegularExpression("\\b(Qt\\.font|systemFont|tracked)\\("_L1)},
        {u"a part of a font"_s,
         QRegularExpression("\\bfont\\.(bold|family|letterSpacing|pixelSize|pointSize|weight)\\b"_L1)},
        {u"a duration"_s, QRegularExpression("\\b(delay|duration|interval): .*\\b[1-9]"_L1)},
        {u"a curve"_s, QRegularExpression("\\beasing\\."_L1)},
        {u"a rectangle that leaves gaps at fractional scales"_s, QRegularExpression("(^|[^\\w])Rectangle \\{"_L1)},
        {u"a corner"_s, QRegularExpression("\\b(innerRadius|radius): (.*[?:+(-] ?)?[1-9]"_L1)},
        {u"a height of a row or control"_s, QRegularExpression("\\bimplicitHeight: (Math\\.max\\()?\\d{2}"_L1)},
        {u"a padding that has a name"_s,
         QRegularExpression("\\b(margins|padding|\\w+Margin|\\w+Padding): (12|18|20|22|32)\\b"_L1)},
    };
    return all;
}

QStringList literalsIn(const QString &line)
{
    QStringList found;
    for (const auto &literal : literals()) {
        if (literal.pattern.match(line).hasMatch()) {
            found.append(literal.name);
        }
    }
    return found;
}

} // namespace

/// The tokens are the only source of colours, fonts, durations and sizes in QML, and rectangles are painted without gaps.
class QmlLiteralsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLiteralIsDetected_data();
    void aLiteralIsDetected();
    void aTokenIsNotALiteral();
    void viewsHaveNoLiterals_data();
    void viewsHaveNoLiterals();
};

void QmlLiteralsTest::aLiteralIsDetected_data()
{
    QTest::addColumn<QString>("name");
    const auto row = [](const char *line, const QString &name) { QTest::newRow(line) << name; };
    row("color: Qt.alpha(Tokens.primary, 0.06)", u"a colour mixed in place"_s);
    row("color: down ? Qt.darker(Tokens.action, 1.15) : Tokens.action", u"a colour mixed in place"_s);
    row("readonly property color ground: \"#f5f5f7\"", u"a colour by number"_s);
    row("color: \"white\"", u"a colour by name"_s);
    row("border.color: down ? \"red\" : Tokens.hairline", u"a colour by name"_s);
    row("font: Tokens.systemFont(11.5, Font.Normal)", u"a font put together in place"_s);
    row("font.pointSize: 12", u"a part of a font"_s);
    row("duration: 160", u"a duration"_s);
    row("duration: Tokens.reduceMotion ? 0 : 180", u"a duration"_s);
    row("easing.type: Easing.OutCubic", u"a curve"_s);
    row("background: Rectangle {", u"a rectangle that leaves gaps at fractional scales"_s);
    row("radius: 6", u"a corner"_s);
    row("readonly property real radius: translucent ? 12 : 0", u"a corner"_s);
    row("implicitHeight: 34", u"a height of a row or control"_s);
    row("implicitHeight: Math.max(24, name.implicitHeight)", u"a height of a row or control"_s);
    row("anchors.leftMargin: 12", u"a padding that has a name"_s);
    row("topPadding: 22", u"a padding that has a name"_s);
}

void QmlLiteralsTest::aLiteralIsDetected()
{
    QFETCH(QString, name);
    QCOMPARE(literalsIn(QString::fromLatin1(QTest::currentDataTag())), QStringList(name));
}

void QmlLiteralsTest::aTokenIsNotALiteral()
{
    for (const auto &line : {
             u"color: hovered ? Tokens.highlight : \"transparent\""_s,
             u"font: Tokens.footnote"_s,
             u"duration: Tokens.reduceMotion ? 0 : Tokens.sheetFade.duration"_s,
             u"easing: Tokens.sheetFade.curve"_s,
             u"radius: Tokens.windowRadius + Tokens.hairlineWidth"_s,
             u"property real innerRadius: 0"_s,
             u"radius: width / 2"_s,
             u"background: RoundedRectangle {"_s,
             u"implicitHeight: Math.max(Tokens.fieldHeight, contentHeight + 12)"_s,
             u"anchors.leftMargin: Tokens.rowPadding"_s,
         }) {
        QCOMPARE(literalsIn(line), QStringList());
    }
}

void QmlLiteralsTest::viewsHaveNoLiterals_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator views(u":/qt/qml/Kelvo"_s, {u"*.qml"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (views.hasNext()) {
        const auto path = views.next();
        QTest::newRow(qPrintable(views.fileName())) << path;
    }
}

void QmlLiteralsTest::viewsHaveNoLiterals()
{
    QFETCH(QString, path);
    QFile view(path);
    QVERIFY(view.open(QFile::ReadOnly));
    const auto lines = QString::fromUtf8(view.readAll()).split(u'\n');
    QVERIFY(lines.size() > 3);
    QStringList found;
    for (int number = 1; const auto &line : lines) {
        for (const auto &literal : literalsIn(line)) {
            found.append(u"%1: %2: %3"_s.arg(QString::number(number), literal, line.trimmed()));
        }
        ++number;
    }
    QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
}

} // namespace kelvo

QTEST_MAIN(kelvo::QmlLiteralsTest)
#include "tst_qmlliterals.moc"
