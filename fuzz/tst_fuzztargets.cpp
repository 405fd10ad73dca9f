#include "FuzzTargets.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

class FuzzTargetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyInputOfTheCorpusHasTheProperties_data()
    {
        QTest::addColumn<FuzzTarget>("target");
        QTest::addColumn<QByteArray>("input");
        for (const auto &target : fuzzTargets) {
            const QDir folder(QStringLiteral(KELVO_FUZZ_CORPUS "/") + QLatin1StringView(target.name));
            const auto names = folder.entryList(QDir::Files);
            QVERIFY2(!names.isEmpty(), target.name);
            for (const auto &name : names) {
                QFile file(folder.filePath(name));
                QVERIFY(file.open(QIODevice::ReadOnly));
                QTest::addRow("%s/%s", target.name, qPrintable(name)) << target << file.readAll();
            }
        }
    }

    void everyInputOfTheCorpusHasTheProperties()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        QFETCH(FuzzTarget, target);
        QFETCH(QByteArray, input);
        try {
            target.run(input);
            target.run(QByteArrayView(input).first(input.size() / 2));
        } catch (const FuzzFailure &failure) {
            QFAIL(failure.what());
        }
    }
};

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::FuzzTargetsTest)
#include "tst_fuzztargets.moc"
