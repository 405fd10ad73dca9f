#pragma once

#include "model/StatusReading.h"

#include <QByteArray>
#include <QFuture>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace kelvo {

/// Decodes documents without blocking the calling thread: small ones at once, large ones in sequence on another thread,
/// which ends after the last of them. A document that is the same as the one before is not decoded again: most have not
/// changed since the round before.
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

    /// `what` identifies the document and what `decode` reads from it: with the same `what` and an equal document, `decode`
    /// is expected to give the same.
    QFuture<std::optional<StatusReading>> run(const QStringList &what, const QByteArray &document, Decode decode);

private:
    /// Tells documents apart. Two different ones have the same with a probability of 2 to the power of -64.
    struct Fingerprint
    {
        qsizetype size;
        size_t hash;
        bool operator==(const Fingerprint &) const = default;
    };
    struct Decoded
    {
        Fingerprint fingerprint;
        std::optional<StatusReading> reading;
    };

    QHash<QStringList, Decoded> last_;
    QObject receiver_;
    QThreadPool pool_;
};

} // namespace kelvo
