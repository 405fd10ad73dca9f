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

/// Damages documents in the same way in every run.
class JsonMutator
{
public:
    /// `texts` are those that replaced values are drawn from, so that damage often hits what is looked for.
    JsonMutator(quint32 seed, QStringList texts);

    /// `value` with one to four changes: values of another type or text, entries lost, doubled, moved, keys misspelt.
    /// Well-formed when written.
    QJsonValue mutated(QJsonValue value);
    /// `bytes` with one to four changes: bytes replaced, inserted, lost, stretches doubled or cut off.
    QByteArray mutated(QByteArray bytes);
    /// A number below `bound`, which is above 0.
    qsizetype below(qsizetype bound);

private:
    QJsonValue changed(const QJsonValue &value);
    QJsonValue changedArray(QJsonArray array);
    QJsonValue changedObject(QJsonObject object);
    QJsonValue anything();

    QRandomGenerator random_;
    QStringList texts_;
};

/// What `use` makes of bytes that end where their memory ends, so that AddressSanitizer sees a read beyond them.
template<typename Use>
auto withExactMemory(const QByteArray &bytes, Use use)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::unique_ptr<char[]> memory(new char[size]);
    std::copy_n(bytes.constData(), size, memory.get());
    return use(QByteArrayView(memory.get(), bytes.size()));
}

} // namespace kelvo
