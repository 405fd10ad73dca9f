#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace kelvo {

/// A fake XEmbed tray on a given display. It counts the windows that ask to be docked.
class FakeXEmbedTray : public QObject
{
    Q_OBJECT

public:
    explicit FakeXEmbedTray(const QString &display);
    ~FakeXEmbedTray() override;

    int dockedCount() const { return docked_; }

private:
    std::uint32_t atom(const char *name) const;
    void announce(std::uint32_t root, std::uint32_t selection, std::uint32_t window) const;
    void readEvents();

    xcb_connection_t *connection_;
    std::unique_ptr<QSocketNotifier> readable_;
    int docked_ = 0;
};

} // namespace kelvo
