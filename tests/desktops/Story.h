#pragma once

#include "Desktop.h"
#include "KelvoProcess.h"

#include "monitor/RingState.h"
#include "simulator/SimulatedInternet.h"

#include <QDir>
#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>

#include <functional>

namespace kelvo {

/// What was seen of one step of the story.
struct Observation
{
    enum class Verdict { yes, no, notSeen };

    QString step;
    Verdict verdict = Verdict::notSeen;
    QString note; ///< what was measured, or why it was not seen
};

/// One use of the program on the desktop, from its start to its end, with a simulated internet.
class Story
{
public:
    /// Pictures are saved in the directory.
    Story(Desktop &desktop, QDir pictures);

    QList<Observation> tell();

private:
    using Verdict = Observation::Verdict;

    void note(const QString &step, Verdict verdict, const QString &text = {});
    void note(const QString &step, bool isTrue, const QString &text = {});

    void ringAppears();
    void clickOpens();
    void isPlacedAtTheRing();
    void escapeCloses();
    void clickElsewhereCloses();
    void breakTheService();
    void theRingTurnsRed();
    void menu();
    void settings();
    void settingsComeToThisWorkspace();
    void notification();
    void secondStart();
    void changesItsLook();
    void panelRestarts();
    void quits();

    /// Takes a picture and saves it under this name.
    QImage picture(const QString &name);
    /// Waits until the condition is true for a new picture, which it saves under this name.
    bool await(const QString &name, const std::function<bool(const QImage &)> &condition);
    QRect card(const QImage &picture) const;
    bool popoverAppears(const QString &name);
    bool popoverDisappears(const QString &name);
    void clickRing();
    bool startAgain();
    bool sees(const QImage &now, const QList<RingState> &states);
    bool findRing(const QString &name, const QList<RingState> &states);
    void movePointerAway();

    Desktop &desktop_;
    QString name_;
    QDir pictures_;
    SimulatedInternet internet_;
    KelvoProcess kelvo_;
    QProcess monitor_;
    QList<Observation> observations_;
    QImage empty_;  ///< the desktop before the program starts
    QImage closed_; ///< the desktop with the ring, before the popover opens
    QImage last_;
    QRect dot_;  ///< the dot of the ring, in pixels
    QRect ring_; ///< the ring, in pixels
    QRect card_; ///< the popover without its shadow, in pixels
    double scale_ = 1;
};

} // namespace kelvo
