#pragma once

#include <QByteArrayView>
#include <QString>

#include <simdjson.h>

#include <memory>
#include <optional>

namespace kelvo {

/// A parsed JSON document and the memory that its elements live in.
class JsonDocument
{
public:
    /// Nothing when `bytes` are not one well-formed JSON text in UTF-8 (RFC 8259); a byte-order mark before it is
    /// passed over.
    static std::optional<JsonDocument> parse(QByteArrayView bytes);

    simdjson::dom::element root() const { return root_; }

private:
    JsonDocument() = default;

    // Elements point into the parser, so it must not move.
    std::unique_ptr<simdjson::dom::parser> parser_ = std::make_unique<simdjson::dom::parser>();
    simdjson::dom::element root_;
};

/// The text that `object` has under `key`; nothing when it is missing or no text.
std::optional<QString> textAt(simdjson::dom::object object, std::string_view key);

} // namespace kelvo
