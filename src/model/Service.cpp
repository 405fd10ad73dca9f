#include "model/Service.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

// Component names are spelled as on the status pages. Services that share a page differ only in their components.
// The API endpoints are probed without credentials: a 401 response still shows that the service answers.
const std::vector<Service> &Service::catalog()
{
    static const QString anthropicPage = u"https://status.claude.com"_s;
    static const QString openaiPage = u"https://status.openai.com"_s;
    static const QString cursorPage = u"https://status.cursor.com"_s;
    static const QString githubPage = u"https://www.githubstatus.com"_s;
    static const QUrl anthropicModels{u"https://api.anthropic.com/v1/models"_s};

    // clang-format off
    static const std::vector<Service> services{
        {ServiceID::claude, u"Claude"_s,
         StatuspageSource{anthropicPage, {u"claude.ai"_s}},
         QUrl{u"https://claude.ai/login"_s}},
        {ServiceID::chatgpt, u"ChatGPT"_s,
         StatuspageSource{openaiPage, {u"Conversations"_s, u"Login"_s}},
         QUrl{u"https://chatgpt.com/"_s}},
        {ServiceID::cursor, u"Cursor"_s,
         StatuspageSource{cursorPage, {u"IDE"_s, u"cursor.com"_s}},
         QUrl{u"https://cursor.com/"_s}},
        {ServiceID::gemini, u"Gemini"_s,
         GoogleDashboardSource{u"Gemini"_s},
         QUrl{u"https://gemini.google.com/"_s}},
        {ServiceID::copilot, u"GitHub Copilot"_s,
         StatuspageSource{githubPage, {u"Copilot"_s}},
         QUrl{u"https://api.githubcopilot.com/"_s}},
        {ServiceID::anthropicAPI, u"Anthropic API"_s,
         StatuspageSource{anthropicPage, {u"Claude API"_s}},
         anthropicModels},
        {ServiceID::openaiAPI, u"OpenAI API"_s,
         StatuspageSource{openaiPage, {u"Responses"_s, u"Embeddings"_s}},
         QUrl{u"https://api.openai.com/v1/models"_s}},
        {ServiceID::claudeCode, u"Claude Code"_s,
         StatuspageSource{anthropicPage, {u"Claude Code"_s}},
         anthropicModels},
    };
    // clang-format on
    return services;
}

const Service &Service::by(ServiceID id)
{
    const auto &services = catalog();
    const auto found = std::find_if(services.begin(), services.end(), [id](const Service &s) { return s.id == id; });
    if (found == services.end()) {
        qFatal("No service has the id %d", static_cast<int>(id));
    }
    return *found;
}

size_t qHash(const Service &service, size_t seed)
{
    return qHashMulti(seed, service.id, service.name, service.source, service.probeURL);
}

} // namespace kelvo
