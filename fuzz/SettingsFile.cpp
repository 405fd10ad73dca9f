#include "FuzzTargets.h"
#include "ScratchFile.h"

#include "platform/linux/IniPreferences.h"
#include "settings/SettingsStore.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// A login item that is off.
class NoLoginItem : public LoginItem
{
public:
    bool isEnabled() const override { return false; }
    bool registerItem() override { return false; }
    bool unregisterItem() override { return true; }
};

const QStringList textKeys{u"armedChannel"_s,     u"slackWebhookURL"_s, u"slackChannelLabel"_s,
                           u"telegramBotToken"_s, u"telegramChatID"_s,  u"checkInterval"_s,
                           u"hasOnboarded"_s,     u"watchOnThisMac"_s,  u"outageAlertsEnabled"_s,
                           u"serviceOrder"_s,     u"enabledServices"_s};

/// Requires the properties that hold for every stored setting. Returns all of them as one list.
QVariantList readSettings(Preferences &preferences)
{
    NoLoginItem loginItem;
    const SettingsStore store(preferences, loginItem);
    for (const auto &service : Service::catalog()) {
        require(std::count(store.serviceOrder().begin(), store.serviceOrder().end(), service.id) >= 1,
                "the order names every service");
    }
    const auto primary = store.primaryService();
    require(primary.has_value() != store.enabledServices().empty(), "some service is primary if any is enabled");
    require(!primary || store.enabledServices().contains(primary->id), "the primary service is enabled");

    QVariantList all{store.hasOnboarded(),      rawValue(store.checkInterval()),
                     store.watchOnThisMac(),    store.outageAlertsEnabled(),
                     int(store.armedChannel()), store.slackWebhookURL(),
                     store.slackChannelLabel(), store.telegramBotToken(),
                     store.telegramChatID(),    int(store.serviceOrder().size())};
    for (const auto id : store.serviceOrder()) {
        all.append(int(id));
    }
    for (const auto id : store.enabledServices()) {
        all.append(int(id));
    }
    return all;
}

} // namespace

void fuzzSettingsFile(QByteArrayView input)
{
    const auto zero = input.lastIndexOf('\0');
    const QByteArrayView bytes = zero < 0 ? input : input.first(zero);
    const QString text = zero < 0 ? u"a text"_s : QString::fromUtf8(input.sliced(zero + 1));

    const ScratchFile file(u"Kelvo.conf"_s, bytes);
    IniPreferences preferences(file.path());
    const auto before = readSettings(preferences);
    require(file.content() == bytes, "reading changes nothing");

    const auto written = u"slackChannelLabel"_s;
    preferences.setText(written, text);
    const auto inMemory = readSettings(preferences);
    IniPreferences again(file.path());
    require(again.text(written).value_or(QString()) == text, "a text is read as it was written");
    require(readSettings(again) == inMemory, "the file holds what the program knows");
    for (const auto &key : textKeys) {
        if (key != written) {
            require(again.text(key) == preferences.text(key) && again.texts(key) == preferences.texts(key),
                    "a write keeps the other settings");
        }
    }
}

} // namespace kelvo
