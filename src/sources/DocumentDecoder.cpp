#include "sources/DocumentDecoder.h"

#include "ReadyFuture.h"

#include <QPromise>

#include <memory>

namespace kelvo {

DocumentDecoder::DocumentDecoder()
{
    pool_.setMaxThreadCount(1);
    pool_.setExpiryTimeout(0);
}

DocumentDecoder::~DocumentDecoder()
{
    pool_.clear(); // the destructor of the pool waits for the document that is being decoded
}

QFuture<std::optional<StatusReading>> DocumentDecoder::run(const QByteArray &document, Decode decode)
{
    if (document.size() < largeSize) {
        return readyFuture(decode(document));
    }
    auto promise = std::make_shared<QPromise<std::optional<StatusReading>>>();
    promise->start();
    auto future = promise->future();
    pool_.start([this, promise = std::move(promise), document, decode = std::move(decode)] {
        QMetaObject::invokeMethod(
            &receiver_,
            [promise, reading = decode(document)] {
                promise->addResult(reading);
                promise->finish();
            },
            Qt::QueuedConnection);
    });
    return future;
}

} // namespace kelvo
