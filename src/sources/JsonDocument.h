#pragma once

#include <QByteArray>
#include <QString>

#include <simdjson.h>

#include <memory>
#include <optional>

namespace kelvo {

/// A parsed JSON document. It owns the memory of its elements.
class JsonDocument
{
public:
    /// Parses one JSON text in UTF-8 (RFC 8259). A leading byte-order mark is skipped. Returns nullopt when the text is
    /// not well formed. Does not copy `bytes` when they have a capacity of 64 bytes more than their size.
    static std::optional<JsonDocument> parse(const QByteArray &bytes);

    simdjson::dom::element root() const { return root_; }

private:
    JsonDocument() = default;

    // Elements point into the parser, so it must not move.
    std::unique_ptr<simdjson::dom::parser> parser_ = std::make_unique<simdjson::dom::parser>();
    simdjson::dom::element root_;
};

/// Returns the string that `object` has under `key`; nullopt when the key is missing or its value is not a string.
std::optional<QString> textAt(simdjson::dom::object object, std::string_view key);

} // namespace kelvo
