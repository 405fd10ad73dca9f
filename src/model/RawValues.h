#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <array>
#include <concepts>
#include <optional>

namespace kelvo {

/// A case of an enumeration and the value that is stored for it.
template<typename Enum, typename Raw>
struct RawValue
{
    Enum value;
    Raw raw;
};

/// The table of an enumeration: every case with its raw value, in order of declaration. Each enumeration with raw values
/// specializes it.
template<typename Enum>
inline constexpr std::array<RawValue<Enum, int>, 0> rawValueTable{};

template<typename Enum>
concept HasRawValues = !rawValueTable<Enum>.empty();

/// The type of a raw value in a lookup: QStringView or a number.
template<HasRawValues Enum>
using RawValueOf = decltype(rawValueTable<Enum>.front().raw);

/// All cases of the enumeration, in the order of its table.
template<HasRawValues Enum>
constexpr auto allCases()
{
    std::array<Enum, rawValueTable<Enum>.size()> cases{};
    std::transform(rawValueTable<Enum>.begin(), rawValueTable<Enum>.end(), cases.begin(),
                   [](const auto &entry) { return entry.value; });
    return cases;
}

/// Returns the raw value of a case: a QString or a number.
template<HasRawValues Enum>
auto rawValue(Enum value)
{
    const auto &table = rawValueTable<Enum>;
    const auto entry = std::find_if(table.begin(), table.end(), [value](const auto &e) { return e.value == value; });
    Q_ASSERT(entry != table.end());
    if constexpr (std::same_as<RawValueOf<Enum>, QStringView>) {
        return entry->raw.toString();
    } else {
        return entry->raw;
    }
}

/// Returns the case whose raw value is exactly `raw`, or nullopt.
template<HasRawValues Enum>
std::optional<Enum> fromRawValue(RawValueOf<Enum> raw)
{
    const auto &table = rawValueTable<Enum>;
    const auto entry = std::find_if(table.begin(), table.end(), [raw](const auto &e) { return e.raw == raw; });
    return entry == table.end() ? std::nullopt : std::optional(entry->value);
}

} // namespace kelvo
