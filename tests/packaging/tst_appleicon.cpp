#include "menubar/AppIcon.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

struct Entry
{
    QByteArray type;
    QByteArray content;
};

/// Reads the blocks of an Apple icon file. Returns none if the file is malformed.
std::vector<Entry> read(const QByteArray &blocks)
{
    std::vector<Entry> entries;
    for (qsizetype at = 0; at < blocks.size();) {
        const auto length = blocks.size() - at < 8 ? 0 : qFromBigEndian<quint32>(blocks.constData() + at + 4);
        if (length < 8 || length > blocks.size() - at) {
            return {};
        }
        entries.push_back({blocks.mid(at, 4), blocks.mid(at + 8, length - 8)});
        at += length;
    }
    return entries;
}

/// Runs the tool and returns its exit code.
int writeIcon(const QString &path)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    tool.start(QStringLiteral(KELVO_ICNS), {path});
    return tool.waitForFinished() && tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : -1;
}

} // namespace

class AppleIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasThePicturesOfTheBundle();
    void anUnwritableFileIsReported();
};

void AppleIconTest::hasThePicturesOfTheBundle()
{
    const QTemporaryDir directory;
    const auto path = directory.filePath(u"Kelvo.icns"_s);
    QCOMPARE(writeIcon(path), 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto whole = read(file.readAll());
    QCOMPARE(whole.size(), std::size_t(1));
    QCOMPARE(whole[0].type, "icns"_ba);

    std::map<QByteArray, int> sides;
    for (const auto &entry : read(whole[0].content)) {
        QVERIFY(entry.content.startsWith("\x89PNG"));
        const auto picture = QImage::fromData(entry.content, "PNG");
        QCOMPARE(picture.width(), picture.height());
        QByteArray expected;
        QBuffer buffer(&expected);
        AppIcon::image().pixmap(picture.size(), 1.0).save(&buffer, "PNG");
        QCOMPARE(picture, QImage::fromData(expected, "PNG"));
        sides[entry.type] = picture.width();
    }
    const std::map<QByteArray, int> documented{{"ic07", 128}, {"ic08", 256}, {"ic09", 512}, {"ic10", 1024},
                                               {"ic11", 32},  {"ic12", 64},  {"ic13", 256}, {"ic14", 512}};
    QCOMPARE(sides, documented);
}

void AppleIconTest::anUnwritableFileIsReported()
{
    QCOMPARE(writeIcon(u"/nonexistent/Kelvo.icns"_s), 1);
}

} // namespace kelvo

QTEST_MAIN(kelvo::AppleIconTest)
#include "tst_appleicon.moc"
