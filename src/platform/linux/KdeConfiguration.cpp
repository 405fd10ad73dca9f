#include "platform/linux/KdeConfiguration.h"

#include <QFile>

#include <utility>

namespace kelvo {

namespace {

constexpr QByteArrayView finalMark("[$i]");

/// What a file says about an entry. It can be final without a value: then it has none.
struct Entry
{
    std::optional<QByteArray> value;
    bool isFinal = false;
};

/// Removes the mark at the end of a key or a group. Returns whether it was there.
bool takeFinalMark(QByteArray &name)
{
    if (!name.endsWith(finalMark)) {
        return false;
    }
    name.chop(finalMark.size());
    return true;
}

// QSettings neither tells nested groups apart nor knows final entries.
Entry entryIn(const QString &path, const QByteArray &group, const QByteArray &key)
{
    Entry entry;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return entry;
    }
    bool isInGroup = false;
    for (const auto &line : file.readAll().split('\n')) {
        auto text = line.trimmed();
        if (text.startsWith('[')) {
            const bool isFinal = takeFinalMark(text);
            isInGroup = text == group;
            entry.isFinal = entry.isFinal || (isFinal && (isInGroup || text.isEmpty()));
            continue;
        }
        auto name = text.left(text.indexOf('=')).trimmed();
        const bool isFinal = takeFinalMark(name);
        if (isInGroup && name == key) {
            entry.value = text.mid(text.indexOf('=') + 1).trimmed();
            entry.isFinal = entry.isFinal || isFinal;
        }
    }
    return entry;
}

} // namespace

std::optional<QByteArray> kdeEntry(const QStringList &files, const QByteArray &group, const QByteArray &key)
{
    std::optional<QByteArray> value;
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        auto entry = entryIn(*file, group, key);
        if (entry.value || entry.isFinal) {
            value = std::move(entry.value);
        }
        if (entry.isFinal) {
            break;
        }
    }
    return value;
}

} // namespace kelvo
