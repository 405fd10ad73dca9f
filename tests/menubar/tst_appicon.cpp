#include "menubar/AppIcon.h"
#include "support/Golden.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

class AppIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void isSharpAtEverySize();
};

void AppIconTest::matchesTheGoldenPictures_data()
{
    QTest::addColumn<int>("side");
    for (const int side : {16, 32, 64, 128, 512}) {
        QTest::addRow("%d", side) << side;
    }
}

void AppIconTest::matchesTheGoldenPictures()
{
    QFETCH(int, side);
    const auto picture = AppIcon::image().pixmap(QSize(side, side), 1.0).toImage();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture.convertToFormat(QImage::Format_ARGB32), u"app-icon-%1"_s.arg(side)), QString());
}

void AppIconTest::isSharpAtEverySize()
{
    const auto icon = AppIcon::image();
    QList<int> sides;
    for (const auto &size : icon.availableSizes()) {
        QCOMPARE(size.width(), size.height());
        sides.append(size.width());
    }
    QCOMPARE(sides, (QList<int>{16, 24, 32, 48, 64, 128}));
    const auto fine = icon.pixmap(QSize(256, 256), 1.0).toImage();
    QCOMPARE(fine.size(), QSize(256, 256));
    QCOMPARE(fine.pixelColor(128, 128), QColor(0x32d74b));
    QCOMPARE(fine.pixelColor(4, 4).alpha(), 0);
    // Two pixels from the edge, the dot has its full colour. In a scaled-up picture the edge would be wider.
    QCOMPARE(fine.pixelColor(128 + 17, 128), QColor(0x32d74b));
    QVERIFY(fine.pixelColor(128 + 20, 128).green() < 64);
}

} // namespace kelvo

QTEST_MAIN(kelvo::AppIconTest)
#include "tst_appicon.moc"
