#include "sources/JsonDocument.h"

#include <QStringDecoder>

namespace kelvo {

std::optional<JsonDocument> JsonDocument::parse(const QByteArray &document)
{
    static constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    QByteArrayView bytes = document;
    if (bytes.startsWith(byteOrderMark)) {
        bytes = bytes.sliced(byteOrderMark.size());
    }
    if (bytes.isEmpty()) {
        return std::nullopt; // the data pointer may be null, and the parser copies from it
    }
    if (bytes.startsWith(byteOrderMark)) {
        return std::nullopt; // newer parsers pass over one themselves, and so over a second one here
    }
    // The parser reads, and ignores, this many bytes beyond the text. Without them, it copies the text.
    const auto freeSpace = QByteArray(document).data_ptr().freeSpaceAtEnd();
    const bool hasPadding = freeSpace >= static_cast<qsizetype>(simdjson::SIMDJSON_PADDING);
    JsonDocument parsed;
    if (parsed.parser_->parse(bytes.data(), static_cast<size_t>(bytes.size()), !hasPadding).get(parsed.root_)
        != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return parsed;
}

std::optional<QString> textAt(simdjson::dom::object object, std::string_view key)
{
    std::string_view text;
    if (object.at_key(key).get(text) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    // QString::fromUtf8 drops a leading U+FEFF, which is part of the text here.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace kelvo
