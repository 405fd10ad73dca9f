#pragma once

#include "model/RawValues.h"

#include <QHashFunctions>

namespace kelvo {

/// The services that can be watched, in the order of the catalogue, which is also the default order of the watch list.
enum class ServiceID { claude, chatgpt, cursor, gemini, copilot, anthropicAPI, openaiAPI, claudeCode };

/// The raw value of a service is the name of its case.
template<>
inline constexpr auto rawValueTable<ServiceID> = std::to_array<RawValue<ServiceID, QStringView>>({
    {ServiceID::claude, u"claude"},
    {ServiceID::chatgpt, u"chatgpt"},
    {ServiceID::cursor, u"cursor"},
    {ServiceID::gemini, u"gemini"},
    {ServiceID::copilot, u"copilot"},
    {ServiceID::anthropicAPI, u"anthropicAPI"},
    {ServiceID::openaiAPI, u"openaiAPI"},
    {ServiceID::claudeCode, u"claudeCode"},
});

/// All service ids, in order of declaration.
inline constexpr auto allServiceIDs = allCases<ServiceID>();

inline size_t qHash(ServiceID id, size_t seed = 0)
{
    return ::qHash(static_cast<int>(id), seed);
}

} // namespace kelvo
