#include "sources/JsonMutator.h"
#include "sources/VendorDocuments.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace Qt::StringLiterals;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

// The JSON parser is not instrumented, so changes of bytes alone seldom give another well-formed document. Half of the
// changes therefore change the values of the document.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    using namespace kelvo;
    static const QStringList texts{u"none"_s,
                                   u"minor"_s,
                                   u"major"_s,
                                   u"critical"_s,
                                   u"operational"_s,
                                   u"claude.ai"_s,
                                   u"Claude Code"_s,
                                   u"Copilot"_s,
                                   u"major_outage"_s,
                                   u"degraded_performance"_s,
                                   u"high"_s,
                                   u"medium"_s,
                                   u"partial_outage"_s,
                                   u"Gemini"_s,
                                   u"under_maintenance"_s,
                                   u"description"_s,
                                   u"components"_s,
                                   u"end"_s,
                                   u"title"_s,
                                   u"affected_products"_s,
                                   u"\u0130"_s,
                                   u"\ufeffGemini"_s,
                                   u"severity"_s,
                                   u"CLAUDE\u0000"_s,
                                   u"currently_affected_locations"_s};
    if (seed % 2 == 0) {
        const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
        const auto document = QJsonDocument::fromJson(bytes);
        if (!document.isNull()) {
            const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
            const QByteArray changed = json(JsonMutator(seed, texts).mutated(value));
            if (static_cast<std::size_t>(changed.size()) <= maxSize) {
                std::copy(changed.begin(), changed.end(), data);
                return static_cast<std::size_t>(changed.size());
            }
        }
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}
