#pragma once

#include <QByteArrayView>

#include <stdexcept>

namespace kelvo {

/// A property that does not hold for an input.
class FuzzFailure : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

/// Throws a FuzzFailure that names the property, unless it holds.
inline void require(bool holds, const char *property)
{
    if (!holds) {
        throw FuzzFailure(property);
    }
}

// Each target gives arbitrary bytes to one part of the program and requires properties of the result.

/// A summary document of a status page.
void fuzzStatuspageSummary(QByteArrayView document);
/// Google's incident feed.
void fuzzGoogleIncidentFeed(QByteArrayView document);
/// The settings file. The text after the last zero byte is then written as a setting.
void fuzzSettingsFile(QByteArrayView input);
/// The entry that starts the program at login.
void fuzzLoginItem(QByteArrayView entry);
/// A sequence of readings of one service, one byte each.
void fuzzTransition(QByteArrayView readings);

struct FuzzTarget
{
    const char *name; ///< of the program fuzz-NAME and of the folder corpus/NAME
    void (*run)(QByteArrayView input);
};

inline constexpr FuzzTarget fuzzTargets[] = {
    {"StatuspageSummary", fuzzStatuspageSummary},
    {"GoogleIncidentFeed", fuzzGoogleIncidentFeed},
    {"SettingsFile", fuzzSettingsFile},
    {"LoginItem", fuzzLoginItem},
    {"Transition", fuzzTransition},
};

} // namespace kelvo
