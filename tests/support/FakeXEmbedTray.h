#pragma once

#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QString>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace kelvo {

/// A fake XEmbed tray on a given display. It counts the windows that ask to be docked, and leaves them where they are.
class FakeXEmbedTray : public QObject
{
    Q_OBJECT

public:
    explicit FakeXEmbedTray(const QString &display);
    ~FakeXEmbedTray() override;

    /// The number of docked windows that exist.
    qsizetype dockedCount() const { return docked_.size(); }

private:
    std::uint32_t atom(const char *name) const;
    void announce(std::uint32_t root, std::uint32_t selection, std::uint32_t window) const;
    void dock(std::uint32_t window);
    void readEvents();

    xcb_connection_t *connection_;
    std::unique_ptr<QSocketNotifier> readable_;
    QSet<std::uint32_t> docked_;
};

} // namespace kelvo
