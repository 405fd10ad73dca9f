#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

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

    QStringList files_; ///< the files that may name the theme; the first one that does so counts
    QFileSystemWatcher watcher_;
    std::optional<bool> isDark_;
};

} // namespace kelvo
