#include "JsonMutator.h"

namespace kelvo {

JsonMutator::JsonMutator(quint32 seed, QStringList texts)
    : random_(seed)
    , texts_(std::move(texts))
{
}

QJsonValue JsonMutator::mutated(QJsonValue value)
{
    for (auto changes = 1 + below(4); changes > 0; --changes) {
        value = changed(value);
    }
    return value;
}

QByteArray JsonMutator::mutated(QByteArray bytes)
{
    static constexpr char telling[] = "{}[]\",:\\tfn0-9eE. \x00\x01\x7f\x80\xc3\xed\xff";
    for (auto changes = 1 + below(4); changes > 0; --changes) {
        const auto at = below(bytes.size() + 1);
        const char byte = telling[below(sizeof telling - 1)];
        switch (below(6)) {
        case 0:
            if (at < bytes.size()) {
                bytes[at] = byte;
            }
            break;
        case 1:
            if (at < bytes.size()) {
                bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
            }
            break;
        case 2: bytes.insert(at, byte); break;
        case 3: bytes.remove(at, 1 + below(8)); break;
        case 4: bytes.insert(at, bytes.mid(below(bytes.size() + 1), 1 + below(64))); break;
        default:
            if (below(8) == 0) {
                bytes.truncate(at);
            }
        }
    }
    return bytes;
}

qsizetype JsonMutator::below(qsizetype bound)
{
    return static_cast<qsizetype>(random_.bounded(static_cast<quint64>(bound)));
}

QJsonValue JsonMutator::changed(const QJsonValue &value)
{
    // Sometimes change the whole value, but mostly a part of it.
    if (below(12) == 0) {
        return anything();
    }
    if (value.isArray() && !value.toArray().isEmpty()) {
        return changedArray(value.toArray());
    }
    if (value.isObject() && !value.toObject().isEmpty()) {
        return changedObject(value.toObject());
    }
    return anything();
}

QJsonValue JsonMutator::changedArray(QJsonArray array)
{
    const auto at = below(array.size());
    const QJsonValue entry = array.at(at);
    switch (below(8)) {
    case 0: array.removeAt(at); break;
    case 1: array.insert(below(array.size() + 1), entry); break;
    case 2:
        array.removeAt(at);
        array.insert(below(array.size() + 1), entry);
        break;
    default: array.replace(at, changed(entry));
    }
    return array;
}

QJsonValue JsonMutator::changedObject(QJsonObject object)
{
    const QStringList keys = object.keys();
    const QString key = keys.at(below(keys.size()));
    switch (below(10)) {
    case 0: object.remove(key); break;
    case 1: object.insert(key.toUpper(), object.take(key)); break;
    case 2: object.insert(texts_.at(below(texts_.size())), anything()); break;
    default: object.insert(key, changed(object.value(key)));
    }
    return object;
}

QJsonValue JsonMutator::anything()
{
    switch (below(10)) {
    case 0: return QJsonValue::Null;
    case 1: return below(2) == 0;
    case 2: return static_cast<double>(below(1000)) / 8;
    case 3: return QJsonArray();
    case 4: return QJsonObject();
    case 5: return QJsonArray{anything()};
    default: return texts_.at(below(texts_.size()));
    }
}

} // namespace kelvo
