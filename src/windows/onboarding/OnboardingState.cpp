#include "windows/onboarding/OnboardingState.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The services that are offered as the primary service: all except Claude Code.
std::vector<Service> offered()
{
    std::vector<Service> services;
    for (const auto &service : Service::catalog()) {
        if (service.id != ServiceID::claudeCode) {
            services.push_back(service);
        }
    }
    return services;
}

} // namespace

OnboardingState::OnboardingState(SettingsStore &settings, NotifierStore &notifier, QObject *parent)
    : QObject(parent)
    , settings_(settings)
    , notifier_(notifier)
    , choices_(offered())
{
    if (const auto primary = settings.primaryService()) {
        selected_ = primary->id;
    }
    connect(&settings, &SettingsStore::objectDidChange, this, &OnboardingState::watchingTextChanged);
}

QStringList OnboardingState::choices() const
{
    QStringList names;
    for (const auto &service : choices_) {
        names.append(service.name);
    }
    return names;
}

QString OnboardingState::watchingText() const
{
    const auto primary = settings_.primaryService();
    return u"Watching %1 · checks every five minutes"_s.arg(primary ? primary->name : QString());
}

int OnboardingState::selected() const
{
    const auto found = std::find_if(choices_.begin(), choices_.end(),
                                    [this](const Service &service) { return service.id == selected_; });
    return found == choices_.end() ? -1 : static_cast<int>(found - choices_.begin());
}

void OnboardingState::select(int choice)
{
    selected_ = choices_.at(static_cast<std::size_t>(choice)).id;
    Q_EMIT selectedChanged();
}

void OnboardingState::continueToPermission()
{
    if (!selected_) {
        return;
    }
    settings_.setPrimary(*selected_);
    turnTo(Permission);
}

void OnboardingState::allowNotifications()
{
    notifier_.requestAuthorization();
    turnTo(Complete);
}

void OnboardingState::finish()
{
    settings_.setHasOnboarded(true);
    Q_EMIT finished();
}

void OnboardingState::turnTo(Page page)
{
    page_ = page;
    Q_EMIT pageChanged();
}

} // namespace kelvo
