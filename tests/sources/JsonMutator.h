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

#include <sys/mman.h>
#include <unistd.h>

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

/// Calls `use` with a copy of the bytes that ends at a page that cannot be read, so that a read beyond ends the test, also
/// one in a library that is not instrumented.
template<typename Use>
auto withExactMemory(const QByteArray &bytes, Use use)
{
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const auto size = static_cast<std::size_t>(bytes.size());
    const auto room = (size + page - 1) / page * page;
    const auto release = [&](char *memory) { ::munmap(memory, room + page); };
    const std::unique_ptr<char, decltype(release)> memory(
        static_cast<char *>(::mmap(nullptr, room + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)),
        release);
    if (memory.get() == MAP_FAILED || ::mprotect(memory.get() + room, page, PROT_NONE) != 0) {
        qFatal("No memory");
    }
    char *text = memory.get() + (room - size);
    std::copy_n(bytes.constData(), size, text);
    return use(QByteArray::fromRawData(text, bytes.size()));
}

} // namespace kelvo
