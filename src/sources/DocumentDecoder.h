#pragma once

#include "model/StatusReading.h"

#include <QByteArray>
#include <QFuture>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace kelvo {

/// Decodes documents without blocking the calling thread: small ones at once, large ones in sequence on another thread,
/// which ends after the last of them.
class DocumentDecoder
{
public:
    /// The size in bytes from which a document is large. A smaller one takes a few milliseconds at most.
    static constexpr qsizetype largeSize = 256 * 1024;

    /// Returns nullopt when the document cannot be read. Must be callable on any thread.
    using Decode = std::function<std::optional<StatusReading>(const QByteArray &document)>;

    DocumentDecoder();
    /// Waits for the document that is being decoded. Cancels the futures of large documents.
    ~DocumentDecoder();

    QFuture<std::optional<StatusReading>> run(const QByteArray &document, Decode decode);

private:
    QObject receiver_;
    QThreadPool pool_;
};

} // namespace kelvo
