#pragma once

#include "platform/Preferences.h"

namespace kelvo {

/// The standard user defaults of the application's bundle. A number or boolean that is stored as text, as the `defaults`
/// command can do, is converted as the system does it.
class UserDefaultsPreferences : public Preferences
{
public:
    std::optional<bool> boolean(const QString &key) const override;
    std::optional<int> integer(const QString &key) const override;
    std::optional<QString> text(const QString &key) const override;
    std::optional<QStringList> texts(const QString &key) const override;

    void setBoolean(const QString &key, bool value) override;
    void setInteger(const QString &key, int value) override;
    void setText(const QString &key, const QString &value) override;
    void setTexts(const QString &key, const QStringList &value) override;
};

} // namespace kelvo
