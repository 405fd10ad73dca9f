#include "support/Golden.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

QImage plain(QSize size = {20, 10}, QColor color = Qt::red)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

} // namespace

class GoldenTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_.emplace();
        QVERIFY(QDir(folder_->path()).mkpath(u"golden"_s));
        QVERIFY(plain().save(golden(u"plain.png"_s)));
    }

    void samePictureMatchesAndLeavesNothing()
    {
        QCOMPARE(subject().difference(plain(), u"plain"_s), QString());
        QVERIFY(!QDir(folder_->filePath(u"failures"_s)).exists());
    }

    void roundingOfBlendedColoursIsTolerated()
    {
        QCOMPARE(subject().difference(plain({20, 10}, QColor(253, 0, 2)), u"plain"_s), QString());
        QVERIFY(!subject().difference(plain({20, 10}, QColor(250, 0, 0)), u"plain"_s).isEmpty());
    }

    void anEdgeMayBeAntialiasedDifferently()
    {
        const auto edge = [](int blend) {
            auto image = plain({20, 10}, Qt::white);
            for (int y = 0; y < 10; ++y) {
                image.setPixelColor(10, y, QColor(blend, blend, blend));
                for (int x = 11; x < 20; ++x) {
                    image.setPixelColor(x, y, Qt::black);
                }
            }
            return image;
        };
        QVERIFY(edge(200).save(golden(u"edge.png"_s)));
        QCOMPARE(subject().difference(edge(60), u"edge"_s), QString());
    }

    void aMissingApostropheIsReported()
    {
        auto text = plain({20, 10}, Qt::white);
        text.setPixelColor(5, 3, QColor(150, 150, 150));
        text.setPixelColor(5, 4, QColor(190, 190, 190));
        QVERIFY(text.save(golden(u"text.png"_s)));
        QVERIFY(!subject().difference(plain({20, 10}, Qt::white), u"text"_s).isEmpty());
        QVERIFY(plain({20, 10}, Qt::white).save(golden(u"text.png"_s)));
        QVERIFY(!subject().difference(text, u"text"_s).isEmpty());
    }

    void aLineThatMovedByTwoPixelsIsReported()
    {
        const auto line = [](int y) {
            auto image = plain({20, 10}, Qt::white);
            for (int x = 0; x < 20; ++x) {
                image.setPixelColor(x, y, Qt::black);
            }
            return image;
        };
        QVERIFY(line(4).save(golden(u"line.png"_s)));
        QVERIFY(!subject().difference(line(6), u"line"_s).isEmpty());
    }

    void colourOfInvisiblePixelsDoesNotCount()
    {
        QVERIFY(plain({4, 4}, QColor(255, 255, 255, 0)).save(golden(u"clear.png"_s)));
        QCOMPARE(subject().difference(plain({4, 4}, QColor(0, 0, 0, 0)), u"clear"_s), QString());
    }

    void differingPixelIsReportedWithBothPictures()
    {
        QImage actual = plain();
        actual.setPixelColor(3, 4, Qt::green);
        QVERIFY(subject().difference(actual, u"plain"_s).contains(u"1 pixels differ"_s));
        QCOMPARE(QImage(failure(u"plain.png"_s)).pixelColor(3, 4), QColor(Qt::green));
        const QImage diff(failure(u"plain.diff.png"_s));
        QCOMPARE(diff.pixelColor(3, 4), QColor(Qt::white));
        QCOMPARE(diff.pixelColor(4, 4), QColor(Qt::black));
    }

    void otherSizeIsReported()
    {
        QVERIFY(subject().difference(plain({20, 11}), u"plain"_s).contains(u"20 × 11 pixels instead of 20 × 10"_s));
    }

    void missingGoldenPictureIsAFailureAndIsNotMade()
    {
        QVERIFY(subject().difference(plain(), u"new"_s).contains(u"no golden picture"_s));
        QVERIFY(QFile::exists(failure(u"new.png"_s)));
        QCOMPARE(QDir(golden({})).entryList(QDir::Files), QStringList{u"plain.png"_s});
    }

    void goldenPictureIsNeverRewritten()
    {
        QVERIFY(!subject().difference(plain({20, 10}, Qt::blue), u"plain"_s).isEmpty());
        QCOMPARE(QImage(golden(u"plain.png"_s)).pixelColor(0, 0), QColor(Qt::red));
    }

    void matchingRunClearsWhatAnEarlierOneRejected()
    {
        QVERIFY(!subject().difference(plain({20, 10}, Qt::blue), u"plain"_s).isEmpty());
        QCOMPARE(subject().difference(plain(), u"plain"_s), QString());
        QCOMPARE(QDir(failure({})).entryList(QDir::Files), QStringList());
    }

private:
    QString golden(const QString &file) const { return folder_->filePath(u"golden/"_s + file); }
    QString failure(const QString &file) const { return folder_->filePath(u"failures/"_s + file); }
    Golden subject() const { return {folder_->filePath(u"golden"_s), folder_->filePath(u"failures"_s)}; }

    std::optional<QTemporaryDir> folder_;
};

QTEST_GUILESS_MAIN(GoldenTest)
#include "tst_golden.moc"
