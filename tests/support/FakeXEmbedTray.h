#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QSet>
#include <QSize>
#include <QSocketNotifier>
#include <QString>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace kelvo {

/// A fake XEmbed tray on a given display. It embeds the windows that ask to be docked, all at the same place.
class FakeXEmbedTray : public QObject
{
    Q_OBJECT

public:
    enum class Visual { opaque, transparent };

    static constexpr QRect place{30, 4, 24, 24};
    static constexpr QColor background{0x20, 0x40, 0x60};

    explicit FakeXEmbedTray(const QString &display, Visual visual = Visual::opaque);
    ~FakeXEmbedTray() override;

    /// The number of docked windows that exist.
    qsizetype dockedCount() const { return docked_.size(); }
    /// What the docked window shows; null when there is none.
    QImage picture() const;
    /// The value of a property of the docked window as the X server stores it.
    QByteArray property(const char *name) const;
    /// The size that the docked window had before the tray changed it.
    QSize formerSize() const { return formerSize_; }
    /// Moves the tray on the screen.
    void moveTo(int x, int y) const;
    /// Presses a button of the mouse in the docked window: 1 to 3, and 4 to 7 for the wheel.
    void click(int button) const;
    /// Destroys the docked window.
    void destroyItem() const;
    /// Shows or hides the tray, with the docked window.
    void setVisible(bool visible) const;
    /// Tells all programs that there is a tray, as at its start.
    void announce() const;

private:
    void dock(std::uint32_t window);
    void readEvents();

    xcb_connection_t *connection_;
    std::uint32_t root_;
    std::uint32_t window_;
    std::unique_ptr<QSocketNotifier> readable_;
    QSet<std::uint32_t> docked_;
    QSize formerSize_;
};

} // namespace kelvo
