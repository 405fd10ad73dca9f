#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace kelvo {

/// The services that can be watched. The order is the catalogue's and the default order of the watch list.
enum class ServiceID { claude, chatgpt, cursor, gemini, copilot, anthropicAPI, openaiAPI, claudeCode };

/// Every ServiceID, in the order of its declaration.
inline constexpr std::array allServiceIDs{
    ServiceID::claude,  ServiceID::chatgpt,      ServiceID::cursor,    ServiceID::gemini,
    ServiceID::copilot, ServiceID::anthropicAPI, ServiceID::openaiAPI, ServiceID::claudeCode,
};

/// The text by which a service is stored: the case's name.
QString rawValue(ServiceID id);
/// The service stored as `raw`, compared exactly; nothing for any other text.
std::optional<ServiceID> serviceIDFromRawValue(QStringView raw);

inline size_t qHash(ServiceID id, size_t seed = 0)
{
    return ::qHash(static_cast<int>(id), seed);
}

} // namespace kelvo
