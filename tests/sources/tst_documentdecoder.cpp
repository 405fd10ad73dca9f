#include "sources/DocumentDecoder.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const StatusReading fine{ServiceHealth::operational, u"Operational"_s};
const QByteArray small(DocumentDecoder::largeSize - 1, ' ');
const QByteArray large(DocumentDecoder::largeSize, ' ');
const QStringList what{u"a document"_s};

} // namespace

class DocumentDecoderTest : public QObject
{
    Q_OBJECT

private:
    static qsizetype threads()
    {
        return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    }

    /// Counted before the tests, because the threads of an earlier one may still be ending.
    qsizetype threadsAtStart_ = 0;

private Q_SLOTS:
    void initTestCase() { threadsAtStart_ = threads(); }

    void aSmallDocumentIsDecodedAtOnce()
    {
        DocumentDecoder decoder;
        const QThread *thread = nullptr;
        const auto reading = decoder.run(what, small, [&](QByteArrayView document) {
            thread = QThread::currentThread();
            return document.size() == small.size() ? std::optional(fine) : std::nullopt;
        });
        QVERIFY(reading.isFinished());
        QCOMPARE(reading.result(), fine);
        QCOMPARE(thread, QThread::currentThread());
    }

    void aLargeDocumentIsDecodedOnAnotherThread()
    {
        DocumentDecoder decoder;
        const QThread *decodedOn = nullptr;
        const QThread *handedOverOn = nullptr;
        decoder
            .run(what, large,
                 [&](QByteArrayView) {
                     decodedOn = QThread::currentThread();
                     return std::optional(fine);
                 })
            .then([&](const std::optional<StatusReading> &reading) {
                QCOMPARE(reading, fine);
                handedOverOn = QThread::currentThread();
            });
        QTRY_COMPARE(handedOverOn, QThread::currentThread());
        QVERIFY(decodedOn);
        QVERIFY(decodedOn != handedOverOn);
    }

    void anUnreadableDocumentGivesNothing()
    {
        DocumentDecoder decoder;
        for (const auto &document : {small, large}) {
            const auto reading = decoder.run(what, document, [](QByteArrayView) { return std::nullopt; });
            QTRY_VERIFY(reading.isFinished());
            QCOMPARE(reading.result(), std::nullopt);
        }
    }

    void aDocumentThatHasNotChangedIsDecodedOnce_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<std::optional<StatusReading>>("reading");
        QTest::newRow("small") << small << std::optional(fine);
        QTest::newRow("large") << large << std::optional(fine);
        QTest::newRow("unreadable") << small << std::optional<StatusReading>();
    }

    void aDocumentThatHasNotChangedIsDecodedOnce()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const std::optional<StatusReading>, reading);
        DocumentDecoder decoder;
        int decodings = 0;
        const auto decode = [&](QByteArrayView) {
            ++decodings;
            return reading;
        };
        for (int round = 0; round < 3; ++round) {
            const auto future = decoder.run(what, QByteArray(document.constData(), document.size()), decode);
            QTRY_VERIFY(future.isFinished());
            QCOMPARE(future.result(), reading);
        }
        QCOMPARE(decodings, 1);
    }

    void aDocumentThatHasChangedIsDecoded_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("now");
        for (const auto &document : {small, large}) {
            const auto row = [&](const char *change, const QByteArray &now) {
                QTest::addRow("%s of %lld bytes", change, static_cast<long long>(document.size())) << document << now;
            };
            row("first byte", 'x' + document.sliced(1));
            row("last byte", document.chopped(1) + 'x');
            row("shorter", document.chopped(1));
            row("longer", document + ' ');
        }
    }

    void aDocumentThatHasChangedIsDecoded()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, now);
        DocumentDecoder decoder;
        QList<QByteArray> decoded;
        const auto decode = [&](const QByteArray &document) {
            decoded.append(document);
            return std::optional(fine);
        };
        for (const auto &document : {before, now, before}) {
            const auto future = decoder.run(what, document, decode);
            QTRY_VERIFY(future.isFinished());
        }
        QCOMPARE(decoded, QList({before, now, before}));
    }

    void anEqualDocumentIsDecodedForEachWhat()
    {
        DocumentDecoder decoder;
        const StatusReading broken{ServiceHealth::outage, u"Service outage"_s};
        const auto first = decoder.run({u"a"_s}, small, [](QByteArrayView) { return fine; });
        const auto second = decoder.run({u"b"_s}, small, [&](QByteArrayView) { return broken; });
        QCOMPARE(first.result(), fine);
        QCOMPARE(second.result(), broken);
    }

    void largeDocumentsAreDecodedInSequence()
    {
        DocumentDecoder decoder;
        std::atomic_int running = 0;
        std::atomic_int most = 0;
        QList<QFuture<std::optional<StatusReading>>> readings;
        for (int i = 0; i < 8; ++i) {
            readings.append(decoder.run(what, large, [&](QByteArrayView) {
                most = std::max(most.load(), ++running);
                QThread::yieldCurrentThread();
                --running;
                return std::optional(fine);
            }));
        }
        QTRY_VERIFY(std::all_of(readings.cbegin(), readings.cend(), [](const auto &f) { return f.isFinished(); }));
        QCOMPARE(most, 1);
    }

    void aDecoderMayBeDestroyedDuringADecoding()
    {
        auto decoder = std::make_unique<DocumentDecoder>();
        QSemaphore begun;
        bool handedOver = false;
        const auto decode = [&](QByteArrayView) {
            begun.release();
            return std::optional(fine);
        };
        const QList readings{decoder->run(what, large, decode), decoder->run(what, large, decode)};
        auto first = readings.constFirst();
        first.then([&](const std::optional<StatusReading> &) { handedOver = true; });
        begun.acquire();
        decoder.reset();
        for (const auto &reading : readings) {
            QVERIFY(reading.isCanceled());
        }
        QCoreApplication::processEvents();
        QVERIFY(!handedOver);
    }

    void documentsThatWaitAreDroppedWithTheDecoder()
    {
        auto decoder = std::make_unique<DocumentDecoder>();
        QSemaphore begun;
        bool wasSecondDecoded = false;
        auto token = std::make_shared<int>();
        // The first document is decoded until the second one is dropped.
        decoder->run(what, large, [&, second = std::weak_ptr(token)](QByteArrayView) {
            begun.release();
            const QDeadlineTimer limit(5s);
            while (!second.expired() && !limit.hasExpired()) {
                QThread::yieldCurrentThread();
            }
            return std::optional(fine);
        });
        decoder->run(what, large, [&wasSecondDecoded, token = std::move(token)](QByteArrayView) {
            wasSecondDecoded = true;
            return std::optional(fine);
        });
        begun.acquire();
        decoder.reset();
        QVERIFY(!wasSecondDecoded);
    }

    void theThreadEndsAfterTheLastDocument()
    {
        if (threadsAtStart_ == 0) {
            QSKIP("This system does not list a process's threads.");
        }
        DocumentDecoder decoder;
        const auto reading = decoder.run(what, large, [](QByteArrayView) { return std::optional(fine); });
        QTRY_VERIFY(reading.isFinished());
        QTRY_VERIFY(threads() <= threadsAtStart_);
    }
};

QTEST_GUILESS_MAIN(DocumentDecoderTest)
#include "tst_documentdecoder.moc"
