#pragma once

#include "model/StatusReading.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFuture>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace kelvo {

/// Decodes documents without holding up the thread that asks: small ones at once, large ones one after the other on a
/// thread that ends with the last of them.
class DocumentDecoder
{
public:
    /// From this size on a document is large, bytes. A smaller one takes a few milliseconds at the very most.
    static constexpr qsizetype largeSize = 256 * 1024;

    /// Nothing where the document cannot be read. Runs on any thread.
    using Decode = std::function<std::optional<StatusReading>(QByteArrayView document)>;

    DocumentDecoder();
    /// Waits for the document that is being decoded. The futures of large documents are cancelled.
    ~DocumentDecoder();

    QFuture<std::optional<StatusReading>> run(const QByteArray &document, Decode decode);

private:
    QObject receiver_;
    QThreadPool pool_;
};

} // namespace kelvo
