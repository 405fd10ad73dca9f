#pragma once

#include "NotificationWatch.h"

#include "monitor/StatusStore.h"
#include "simulator/SimulatedInternet.h"

#include <QDir>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// Plays an outage in chapters: Claude goes down, its status page reports it operational too early, and then it answers
/// again. Each chapter changes the simulated internet, waits until the program shows the change, and may save a picture of
/// the screen.
class Story : public QObject
{
    Q_OBJECT

public:
    /// Pictures are saved to `pictures`, if given, which must exist.
    Story(SimulatedInternet &internet, const StatusStore &store, const NotificationWatch &watch,
          std::optional<QDir> pictures);

    void begin();

Q_SIGNALS:
    /// The story has ended. `complaint` says what went wrong; it is empty when exactly one alert was sent, the right one.
    void ended(const QString &complaint);

private:
    struct Chapter
    {
        QString name;                   ///< the name of the picture
        QString line;                   ///< printed when the chapter begins
        std::function<void()> setScene; ///< changes the simulated internet; may be empty
        std::function<bool()> isShown;  ///< whether the program shows the change
        QString shown;                  ///< printed when it does
        std::chrono::milliseconds rest; ///< how long the result stays on the screen before the picture is taken
    };

    std::vector<Chapter> chapters();
    void beginChapter();
    void look();
    void endChapter();
    void tell(const QString &line) const;
    QString complaint() const;

    SimulatedInternet &internet_;
    const StatusStore &store_;
    const NotificationWatch &watch_;
    std::optional<QDir> pictures_;
    std::vector<Chapter> chapters_;
    size_t chapter_ = 0;
    bool caughtUp_ = false;
    QElapsedTimer sinceBegin_;
    QTimer rest_;
    QTimer patience_;
};

} // namespace kelvo
