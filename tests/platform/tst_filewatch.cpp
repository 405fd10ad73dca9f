#include "platform/linux/FileWatch.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace kelvo {

class FileWatchTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;

    QString inFolder(const QString &name) const { return folder_->filePath(name); }
    static bool place(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly);
    }
    /// Changes the file in one step, which one event reports.
    static bool touch(const QString &path) { return QFile::setPermissions(path, QFile::ReadOwner); }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        folder_ = std::make_unique<QTemporaryDir>();
        path_ = inFolder(u"file"_s);
    }

    void aChangeIsReported()
    {
        QVERIFY(place(path_));
        const FileWatch watch(path_);
        QCOMPARE(watch.file(), path_);
        QSignalSpy changes(&watch, &FileWatch::changed);
        QVERIFY(touch(path_));
        QTRY_COMPARE(changes.size(), 1);
    }

    void otherFilesAreNotReportedWhileTheFileExists()
    {
        const FileWatch watch(path_);
        QSignalSpy changes(&watch, &FileWatch::changed);
        QVERIFY(place(path_));
        QTRY_COMPARE(changes.size(), 1);
        changes.clear();
        // The events arrive in order, so one of the other file would be seen before that of the file.
        QVERIFY(place(inFolder(u"other"_s)));
        QVERIFY(touch(path_));
        QTRY_VERIFY(!changes.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(changes.size(), 1);
    }

    void aReplacedFileIsWatchedOn()
    {
        QVERIFY(place(path_));
        const FileWatch watch(path_);
        QSignalSpy changes(&watch, &FileWatch::changed);
        for (int i = 0; i < 3; ++i) {
            changes.clear();
            QVERIFY(place(inFolder(u"new"_s)));
            QCOMPARE(std::rename(qPrintable(inFolder(u"new"_s)), qPrintable(path_)), 0);
            QTRY_VERIFY(!changes.isEmpty());
        }
    }

    void aRemovedFileIsWatchedForAgain()
    {
        QVERIFY(place(path_));
        const FileWatch watch(path_);
        QSignalSpy changes(&watch, &FileWatch::changed);
        QVERIFY(QFile::remove(path_));
        QTRY_VERIFY(!changes.isEmpty());
        changes.clear();
        QVERIFY(place(path_));
        QTRY_VERIFY(!changes.isEmpty());
        changes.clear();
        QVERIFY(touch(path_));
        QTRY_VERIFY(!changes.isEmpty());
    }

    void aDirectoryThatDoesNotExistIsQuiet()
    {
        const FileWatch watch(inFolder(u"nowhere/file"_s));
        QSignalSpy changes(&watch, &FileWatch::changed);
        QVERIFY(place(path_));
        QCoreApplication::processEvents();
        QVERIFY(changes.isEmpty());
    }
};

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::FileWatchTest)
#include "tst_filewatch.moc"
