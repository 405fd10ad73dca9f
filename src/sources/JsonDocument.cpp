#include "sources/JsonDocument.h"

#include <QStringDecoder>

namespace kelvo {

std::optional<JsonDocument> JsonDocument::parse(QByteArrayView bytes)
{
    static constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (bytes.startsWith(byteOrderMark)) {
        bytes = bytes.sliced(byteOrderMark.size());
    }
    if (bytes.isEmpty()) {
        return std::nullopt; // the data pointer may be null, and the parser copies from it
    }
    if (bytes.startsWith(byteOrderMark)) {
        return std::nullopt; // newer parsers pass over one themselves, and so over a second one here
    }
    JsonDocument document;
    if (document.parser_->parse(bytes.data(), static_cast<size_t>(bytes.size())).get(document.root_)
        != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return document;
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
