#include "windows/OnboardingState.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// Claude Code can be watched, but is not offered as the one that matters most.
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
    const auto found = std::find(choices_.begin(), choices_.end(), settings.primaryService());
    if (found != choices_.end()) {
        selected_ = static_cast<int>(found - choices_.begin());
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

void OnboardingState::select(int choice)
{
    selected_ = choice;
    Q_EMIT selectedChanged();
}

void OnboardingState::continueToPermission()
{
    if (selected_ < 0) {
        return;
    }
    settings_.setPrimary(choices_.at(static_cast<std::size_t>(selected_)).id);
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
