#include "windows/channel/ChannelField.h"

namespace kelvo {

ChannelField::ChannelField(const Binding &binding, SettingsStore &settings, QObject *parent)
    : QObject(parent)
    , binding_(binding)
    , settings_(settings)
{
    connect(&settings, binding.changed, this, &ChannelField::textChanged);
}

} // namespace kelvo
