#include "style/ViewEngine.h"
#include "support/FakeAppearance.h"

#include <QTest>

namespace kelvo {

class ViewEngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheInstalledModules()
    {
        const FakeAppearance appearance;
        ViewEngine engine(appearance);
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
        QVERIFY(engine.findsModules());
    }

    void namesTheModuleThatIsNotInstalled()
    {
        const FakeAppearance appearance;
        ViewEngine engine(appearance);
        engine.get().setImportPathList({});
        QTest::ignoreMessage(QtWarningMsg, "The windows cannot be opened: the QML module QtQml is not installed");
        QVERIFY(!engine.findsModules());
    }

    void looksForEachModuleInAllFolders_data()
    {
        QTest::addColumn<QString>("missing");
        for (const char *module : {"QtQml", "QtQml/WorkerScript", "QtQuick", "QtQuick/Templates"}) {
            QTest::newRow(module) << QString::fromLatin1(module);
        }
    }
    void looksForEachModuleInAllFolders()
    {
        QFETCH(const QString, missing);
        const QTemporaryDir folder;
        for (const char *module : {"QtQml", "QtQml/WorkerScript", "QtQuick", "QtQuick/Templates"}) {
            const auto name = QString::fromLatin1(module);
            QVERIFY(QDir(folder.path()).mkpath(name));
            QFile description(folder.filePath(name + QStringLiteral("/qmldir")));
            QVERIFY(name == missing || description.open(QFile::WriteOnly));
        }
        const FakeAppearance appearance;
        ViewEngine engine(appearance);
        engine.get().setImportPathList({folder.path()});
        QTest::ignoreMessage(
            QtWarningMsg, "The windows cannot be opened: the QML module " + missing.toLatin1() + " is not installed");
        QVERIFY(!engine.findsModules());
    }
};

} // namespace kelvo

QTEST_MAIN(kelvo::ViewEngineTest)
#include "tst_viewengine.moc"
