#include "platform/macos/UserDefaultsPreferences.h"

#import <Foundation/Foundation.h>

#include <utility>

namespace kelvo {

namespace {

NSUserDefaults *defaults()
{
    return NSUserDefaults.standardUserDefaults;
}

bool holdsScalar(const QString &key)
{
    const id value = [defaults() objectForKey:key.toNSString()];
    return [value isKindOfClass:NSNumber.class] || [value isKindOfClass:NSString.class];
}

void store(id value, const QString &key)
{
    [defaults() setObject:value forKey:key.toNSString()];
    // Without this the value is stored asynchronously, and lost if the process is killed before.
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

} // namespace

std::optional<bool> UserDefaultsPreferences::boolean(const QString &key) const
{
    if (!holdsScalar(key)) {
        return std::nullopt;
    }
    return [defaults() boolForKey:key.toNSString()];
}

std::optional<int> UserDefaultsPreferences::integer(const QString &key) const
{
    if (!holdsScalar(key)) {
        return std::nullopt;
    }
    const NSInteger value = [defaults() integerForKey:key.toNSString()];
    if (!std::in_range<int>(value)) {
        return std::nullopt;
    }
    return static_cast<int>(value);
}

std::optional<QString> UserDefaultsPreferences::text(const QString &key) const
{
    NSString *value = [defaults() stringForKey:key.toNSString()];
    if (!value) {
        return std::nullopt;
    }
    return QString::fromNSString(value);
}

std::optional<QStringList> UserDefaultsPreferences::texts(const QString &key) const
{
    // Returns nil unless every element is a string.
    NSArray<NSString *> *values = [defaults() stringArrayForKey:key.toNSString()];
    if (!values) {
        return std::nullopt;
    }
    QStringList result;
    for (NSString *value in values) {
        result.append(QString::fromNSString(value));
    }
    return result;
}

void UserDefaultsPreferences::setBoolean(const QString &key, bool value)
{
    store(@(value), key);
}

void UserDefaultsPreferences::setInteger(const QString &key, int value)
{
    store(@(value), key);
}

void UserDefaultsPreferences::setText(const QString &key, const QString &value)
{
    store(value.toNSString(), key);
}

void UserDefaultsPreferences::setTexts(const QString &key, const QStringList &value)
{
    NSMutableArray<NSString *> *values = [NSMutableArray array];
    for (const QString &text : value) {
        [values addObject:text.toNSString()];
    }
    store(values, key);
}

} // namespace kelvo
