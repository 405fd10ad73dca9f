#pragma once

#include "NotificationWatch.h"

#include "monitor/StatusStore.h"
#include "simulator/SimulatedInternet.h"

#include <QDir>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace kelvo {

/// Tells the one story that the program exists for: Claude goes down, its page calls it well too early, it answers
/// again. Each chapter sets the scene in the simulated internet, waits until the program shows it, and takes a picture.
class Story : public QObject
{
    Q_OBJECT

public:
    /// Pictures go to `pictures`, which exists.
    Story(SimulatedInternet &internet, const StatusStore &store, const NotificationWatch &watch, QDir pictures);

    void begin();

Q_SIGNALS:
    /// The story is told. `complaint` says what went wrong; it is empty when exactly the one alert arrived.
    void ended(const QString &complaint);

private:
    struct Chapter
    {
        QString name;                   ///< of the picture
        QString line;                   ///< told when it begins
        std::function<void()> setScene; ///< may be empty
        std::function<bool()> isShown;  ///< whether the program has caught up
        QString shown;                  ///< told then
        std::chrono::milliseconds rest; ///< for the eyes, before the picture
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
    QDir pictures_;
    std::vector<Chapter> chapters_;
    size_t chapter_ = 0;
    bool caughtUp_ = false;
    QElapsedTimer sinceBegin_;
    QTimer rest_;
    QTimer patience_;
};

} // namespace kelvo
