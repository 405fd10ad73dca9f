#include "FuzzTargets.h"
#include "ScratchFile.h"

#include "platform/linux/XdgLoginItem.h"

namespace kelvo {

using namespace Qt::StringLiterals;

void fuzzLoginItem(QByteArrayView entry)
{
    const ScratchFile file(u"autostart/app.kelvo.Kelvo.desktop"_s, entry);
    XdgLoginItem item(u"/bin/sh"_s, {file.folder()});
    const bool wasEnabled = item.isEnabled();
    require(file.content() == entry, "reading changes nothing");
    require(!wasEnabled
                || (entry.contains("[Desktop Entry]") && entry.contains("Application") && entry.contains("Exec")),
            "an entry that starts a program says so");

    require(item.registerItem(), "the item is registered");
    require(item.isEnabled(), "a registered item is enabled");
    const QByteArray registered = file.content();
    require(registered == entry ? wasEnabled : registered.contains("\nExec=\"/bin/sh\"\n"),
            "an entry is kept or replaced");
    require(item.registerItem() && file.content() == registered, "registering again changes nothing");

    require(item.unregisterItem(), "the item is removed");
    require(!item.isEnabled(), "a removed item is not enabled");
    require(!QFile::exists(file.path()), "nothing is left of a removed item");
}

} // namespace kelvo
