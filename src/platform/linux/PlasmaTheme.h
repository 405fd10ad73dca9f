#pragma once

#include "platform/linux/FileWatch.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// The theme of the Plasma panel, read from Plasma's own files: the name of the theme in plasmarc, and the colours of that
/// theme. Global themes, such as Breeze Twilight, put their plasmarc in kdedefaults.
class PlasmaTheme : public QObject
{
    Q_OBJECT

public:
    PlasmaTheme();

    /// Whether the panel is dark. Null when the theme has no colours of its own; then the panel looks like the windows.
    std::optional<bool> isDark() const { return isDark_; }

Q_SIGNALS:
    void changed();

private:
    void read();

    /// The files that may name the theme. The first one that does so counts.
    std::vector<std::unique_ptr<FileWatch>> files_;
    std::optional<bool> isDark_;
};

} // namespace kelvo
