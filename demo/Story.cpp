#include "Story.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto claudeHost = u"claude.ai"_s;
const auto theAlert = u"Claude is back: You can continue working."_s;

/// The time after which a chapter has failed.
constexpr auto patience = 45s;

} // namespace

Story::Story(SimulatedInternet &internet, const StatusStore &store, const NotificationWatch &watch,
             std::optional<QDir> pictures)
    : internet_(internet)
    , store_(store)
    , watch_(watch)
    , pictures_(std::move(pictures))
    , chapters_(chapters())
{
    rest_.setSingleShot(true);
    patience_.setSingleShot(true);
    connect(&rest_, &QTimer::timeout, this, &Story::endChapter);
    connect(&patience_, &QTimer::timeout, this,
            [this] { Q_EMIT ended(u"The program did not show \"%1\" in time."_s.arg(chapters_[chapter_].name)); });
    connect(&store, &StatusStore::statusesChanged, this, &Story::look);
    connect(&watch, &NotificationWatch::notified, this, &Story::look);
}

std::vector<Story::Chapter> Story::chapters()
{
    const auto ring = [this](RingState state) { return store_.ringState() == state; };
    // clang-format off
    return {
        {u"1-all-well"_s, u"Eight services are watched."_s, {},
         [=] { return ring(RingState::available); },
         u"All of them work: the ring is green."_s, 3s},
        {u"2-claude-down"_s, u"Claude goes down."_s,
         [this] {
             internet_.setComponent(StatusPage::Claude, claudeHost, u"major_outage"_s);
             internet_.setIndicator(StatusPage::Claude, u"major"_s);
             internet_.setProbe(claudeHost, 503);
         },
         [=] { return ring(RingState::outage); },
         u"Kelvo noticed: the ring is red."_s, 4s},
        {u"3-not-yet"_s, u"Claude’s page says operational, but Claude still refuses."_s,
         [this] { internet_.setAllOperational(StatusPage::Claude); },
         [=] { return ring(RingState::recovering); },
         u"Kelvo asked Claude itself and does not believe it: \"Recovering\", the ring is orange, no alert."_s, 8s},
        {u"4-back"_s, u"Claude answers again."_s,
         [this] { internet_.setProbe(claudeHost, 200); },
         [=, this] { return ring(RingState::available) && !watch_.seen().isEmpty(); },
         u"The ring is green, and the one alert is out."_s, 2s},
        {u"5-quiet"_s, u"Nothing more happens."_s, {},
         [] { return true; },
         u"Kelvo goes on watching and keeps quiet."_s, 12s},
    };
    // clang-format on
}

void Story::begin()
{
    sinceBegin_.start();
    beginChapter();
}

void Story::beginChapter()
{
    const auto &chapter = chapters_[chapter_];
    tell(chapter.line);
    caughtUp_ = false;
    patience_.start(patience);
    if (chapter.setScene) {
        chapter.setScene();
    }
    look();
}

void Story::look()
{
    if (caughtUp_ || chapter_ >= chapters_.size() || !chapters_[chapter_].isShown()) {
        return;
    }
    caughtUp_ = true;
    patience_.stop();
    tell(chapters_[chapter_].shown);
    rest_.start(chapters_[chapter_].rest);
}

void Story::endChapter()
{
    if (pictures_) {
        QGuiApplication::primaryScreen()->grabWindow().save(pictures_->filePath(chapters_[chapter_].name + ".png"_L1));
    }
    if (++chapter_ < chapters_.size()) {
        beginChapter();
    } else {
        Q_EMIT ended(complaint());
    }
}

void Story::tell(const QString &line) const
{
    QTextStream(stdout) << u"[%1 s] %2"_s.arg(sinceBegin_.elapsed() / 1000, 2).arg(line) << Qt::endl;
}

QString Story::complaint() const
{
    if (watch_.seen() == QStringList{theAlert}) {
        return {};
    }
    return u"Expected the one notification \"%1\", but saw %2: %3"_s.arg(theAlert)
        .arg(watch_.seen().size())
        .arg(watch_.seen().join("; "_L1));
}

} // namespace kelvo
