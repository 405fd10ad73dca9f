#include "platform/ProcessMemory.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

class ProcessMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void privateMemoryIsInNoCoreFile_data();
    void privateMemoryIsInNoCoreFile();
};

void ProcessMemoryTest::privateMemoryIsInNoCoreFile_data()
{
    QTest::addColumn<qulonglong>("hardLimit");
    QTest::addColumn<qulonglong>("softLimit");
    QTest::newRow("core files are allowed") << qulonglong(1'000'000) << 1ULL;
    QTest::newRow("core files are forbidden") << 0ULL << 0ULL;
}

void ProcessMemoryTest::privateMemoryIsInNoCoreFile()
{
    QFETCH(qulonglong, hardLimit);
    QFETCH(qulonglong, softLimit);
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    if (limit.rlim_max < hardLimit) {
        QSKIP("core files are forbidden here");
    }
    const pid_t child = ::fork();
    if (child == 0) {
        limit = {hardLimit, hardLimit};
        ::setrlimit(RLIMIT_CORE, &limit);
        keepProcessMemoryPrivate();
        ::getrlimit(RLIMIT_CORE, &limit);
        QFile filter(u"/proc/self/coredump_filter"_s);
        const bool isPrivate = limit.rlim_cur == softLimit && limit.rlim_max == hardLimit
            && filter.open(QIODevice::ReadOnly) && filter.readAll().toInt(nullptr, 16) == 0;
        ::_exit(isPrivate ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    QCOMPARE(status, 0);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::ProcessMemoryTest)
#include "tst_processmemory.moc"
