#include "model/ServiceID.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

QString rawValue(ServiceID id)
{
    switch (id) {
    case ServiceID::claude: return u"claude"_s;
    case ServiceID::chatgpt: return u"chatgpt"_s;
    case ServiceID::cursor: return u"cursor"_s;
    case ServiceID::gemini: return u"gemini"_s;
    case ServiceID::copilot: return u"copilot"_s;
    case ServiceID::anthropicAPI: return u"anthropicAPI"_s;
    case ServiceID::openaiAPI: return u"openaiAPI"_s;
    case ServiceID::claudeCode: return u"claudeCode"_s;
    }
    Q_UNREACHABLE();
}

std::optional<ServiceID> serviceIDFromRawValue(QStringView raw)
{
    const auto found = std::find_if(allServiceIDs.begin(), allServiceIDs.end(),
                                    [&](ServiceID id) { return rawValue(id) == raw; });
    if (found == allServiceIDs.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace kelvo
