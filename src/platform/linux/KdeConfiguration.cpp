#include "platform/linux/KdeConfiguration.h"

#include <QFile>

namespace kelvo {

namespace {

constexpr QByteArrayView finalMark("[$i]");

struct Entry
{
    QByteArray value;
    bool isFinal;
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
std::optional<Entry> entryIn(const QString &path, const QByteArray &group, const QByteArray &key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    bool isFileFinal = false;
    bool isGroupFinal = false;
    bool isInGroup = false;
    std::optional<Entry> entry;
    for (const auto &line : file.readAll().split('\n')) {
        auto text = line.trimmed();
        if (text.startsWith('[')) {
            isGroupFinal = takeFinalMark(text);
            isFileFinal = isFileFinal || (isGroupFinal && text.isEmpty());
            isInGroup = text == group;
            continue;
        }
        auto name = text.left(text.indexOf('=')).trimmed();
        const bool isKeyFinal = takeFinalMark(name);
        if (isInGroup && name == key) {
            entry = {text.mid(text.indexOf('=') + 1).trimmed(), isFileFinal || isGroupFinal || isKeyFinal};
        }
    }
    return entry;
}

} // namespace

std::optional<QByteArray> kdeEntry(const QStringList &files, const QByteArray &group, const QByteArray &key)
{
    std::optional<QByteArray> value;
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        if (const auto entry = entryIn(*file, group, key)) {
            value = entry->value;
            if (entry->isFinal) {
                break;
            }
        }
    }
    return value;
}

} // namespace kelvo
