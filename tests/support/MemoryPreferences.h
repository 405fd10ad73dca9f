#pragma once

#include "platform/Preferences.h"

#include <QHash>

#include <utility>
#include <variant>

namespace kelvo {

/// Preferences in memory that count writes. They outlive the store under test, so a test can make a second store from
/// them to simulate the next start of the program.
class MemoryPreferences : public Preferences
{
public:
    using Value = std::variant<bool, int, QString, QStringList>;

    std::optional<bool> boolean(const QString &key) const override { return read<bool>(key); }
    std::optional<int> integer(const QString &key) const override { return read<int>(key); }
    std::optional<QString> text(const QString &key) const override { return read<QString>(key); }
    std::optional<QStringList> texts(const QString &key) const override { return read<QStringList>(key); }

    void setBoolean(const QString &key, bool value) override { write(key, value); }
    void setInteger(const QString &key, int value) override { write(key, value); }
    void setText(const QString &key, const QString &value) override { write(key, value); }
    void setTexts(const QString &key, const QStringList &value) override { write(key, value); }

    /// Stores a value of any type without counting a write, as if an earlier run or the user had stored it.
    void place(const QString &key, Value value) { values_.insert(key, std::move(value)); }
    void remove(const QString &key) { values_.remove(key); }

    bool contains(const QString &key) const { return values_.contains(key); }
    QStringList keys() const
    {
        QStringList names = values_.keys();
        names.sort();
        return names;
    }

    /// The number of writes to `key`.
    int writeCount(const QString &key) const { return writes_.value(key); }
    /// The number of writes to all keys.
    int writeCount() const
    {
        int sum = 0;
        for (const int count : writes_)
            sum += count;
        return sum;
    }

private:
    template<typename T>
    std::optional<T> read(const QString &key) const
    {
        const auto found = values_.constFind(key);
        if (found == values_.constEnd())
            return std::nullopt;
        const T *value = std::get_if<T>(&*found);
        return value ? std::optional<T>(*value) : std::nullopt;
    }

    void write(const QString &key, Value value)
    {
        ++writes_[key];
        values_.insert(key, std::move(value));
    }

    QHash<QString, Value> values_;
    QHash<QString, int> writes_;
};

} // namespace kelvo
