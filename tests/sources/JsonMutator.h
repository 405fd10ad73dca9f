#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>
#include <memory>

namespace kelvo {

/// Changes documents at random, but in the same way in every run.
class JsonMutator
{
public:
    /// `texts` are used as replacement values, so that changes often produce texts that the decoders look for.
    JsonMutator(quint32 seed, QStringList texts);

    /// Returns `value` with one to four changes: another type or text, entries removed, duplicated or moved, keys
    /// misspelt. It still serialises to well-formed JSON.
    QJsonValue mutated(QJsonValue value);
    /// Returns `bytes` with one to four changes: bytes replaced, inserted or removed, ranges duplicated or cut off.
    QByteArray mutated(QByteArray bytes);
    /// Returns a random number in [0, `bound`). `bound` must be positive.
    qsizetype below(qsizetype bound);

private:
    QJsonValue changed(const QJsonValue &value);
    QJsonValue changedArray(QJsonArray array);
    QJsonValue changedObject(QJsonObject object);
    QJsonValue anything();

    QRandomGenerator random_;
    QStringList texts_;
};

/// Calls `use` with a copy of the bytes that ends where its memory ends, so that AddressSanitizer detects a read beyond.
template<typename Use>
auto withExactMemory(const QByteArray &bytes, Use use)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::unique_ptr<char[]> memory(new char[size]);
    std::copy_n(bytes.constData(), size, memory.get());
    return use(QByteArray::fromRawData(memory.get(), bytes.size()));
}

} // namespace kelvo
