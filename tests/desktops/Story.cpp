#include "Story.h"

#include "Command.h"
#include "Picture.h"
#include "TrayItem.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QTest>

#include <cmath>

namespace kelvo {

using namespace Qt::StringLiterals;
using Verdict = Observation::Verdict;

namespace {

/// The longest time that a desktop without a GPU takes to show something.
constexpr int patience = 10'000;
/// Time for motions to end and for the desktop to settle.
constexpr int pause = 700;
/// A larger difference than a shadow makes.
constexpr int beyondShadow = 60;

/// The colours of the dot on a light panel and on a dark one.
struct DotColours
{
    QColor onLight;
    QColor onDark;
};

DotColours coloursOf(RingState state)
{
    switch (state) {
    case RingState::available: return {QColor(36, 138, 61), QColor(50, 215, 75)};
    case RingState::outage: return {QColor(215, 0, 21), QColor(255, 69, 58)};
    case RingState::recovering: return {QColor(178, 80, 0), QColor(255, 159, 10)};
    case RingState::inactive: break; // has no dot
    }
    return {};
}

/// The distance between two rectangles; 0 if they touch.
double distance(const QRect &left, const QRect &right)
{
    const auto gap = [](int firstEnd, int secondStart, int secondEnd, int firstStart) {
        return std::max({0, secondStart - firstEnd - 1, firstStart - secondEnd - 1});
    };
    return std::hypot(gap(left.right(), right.left(), right.right(), left.left()),
                      gap(left.bottom(), right.top(), right.bottom(), left.top()));
}

/// How a desktop switches between dark and light windows: a command and its two last arguments.
struct LookSwitch
{
    const char *desktop;
    QStringList command;
    QString dark;
    QString light;
};

const LookSwitch *lookSwitchOf(const QString &desktop)
{
    static const LookSwitch switches[] = {
        {"plasma", {u"plasma-apply-colorscheme"_s}, u"BreezeDark"_s, u"BreezeLight"_s},
        {"gnome",
         {u"gsettings"_s, u"set"_s, u"org.gnome.desktop.interface"_s, u"color-scheme"_s},
         u"prefer-dark"_s,
         u"default"_s},
        {"mate", {u"gsettings"_s, u"set"_s, u"org.mate.interface"_s, u"gtk-theme"_s}, u"BlackMATE"_s, u"Menta"_s},
        {"cinnamon",
         {u"gsettings"_s, u"set"_s, u"org.cinnamon.desktop.interface"_s, u"gtk-theme"_s},
         u"Adwaita-dark"_s,
         u"Adwaita"_s},
    };
    for (const auto &each : switches) {
        if (desktop.startsWith(QLatin1StringView(each.desktop))) {
            return &each;
        }
    }
    return nullptr;
}

} // namespace

Story::Story(Desktop &desktop, QDir pictures)
    : desktop_(desktop)
    , name_(qEnvironmentVariable("KELVO_DESKTOP"))
    , pictures_(std::move(pictures))
    , kelvo_(internet_)
{
    pictures_.mkpath(u"."_s);
    kelvo_.writeSettings("[General]\nhasOnboarded=true\nenabledServices=claude, chatgpt, cursor, gemini\n"
                         "checkInterval=60\n");
}

QList<Observation> Story::tell()
{
    QTest::qWait(pause * 3);
    const auto size = qEnvironmentVariable("KELVO_DESKTOP_SCREEN").split(u'x');
    desktop_.moveTo({size.value(0).toInt() / 3, size.value(1).toInt() / 3});
    QTest::qWait(pause);
    empty_ = picture(u"00-empty"_s);
    scale_ = double(empty_.width()) / size.value(0).toInt();

    monitor_.start(u"dbus-monitor"_s, {u"--session"_s, u"interface='org.freedesktop.Notifications',member='Notify'"_s});
    kelvo_.start();
    ringAppears();
    if (!ring_.isEmpty()) {
        clickOpens();
        isPlacedAtTheRing();
        escapeCloses();
        clickElsewhereCloses();
        theRingTurnsRed();
        menu();
    } else {
        for (const auto &step : {u"click"_s, u"placement"_s, u"focus, Escape"_s, u"click elsewhere"_s, u"menu"_s}) {
            note(step, Verdict::notSeen, u"no ring"_s);
        }
        breakTheService();
        startAgain();
        QTest::qWait(patience);
        desktop_.pressEscape();
        QTest::qWait(pause);
    }
    notification();
    secondStart();
    changesItsLook();
    panelRestarts();
    if (!ring_.isEmpty()) {
        settings();
        settingsComeToThisWorkspace();
        quits();
    } else {
        note(u"settings"_s, Verdict::notSeen, u"no menu"_s);
        note(u"workspace"_s, Verdict::notSeen, u"no menu"_s);
        note(u"quit"_s, Verdict::notSeen, u"no menu"_s);
        kelvo_.stop();
    }
    monitor_.kill();
    monitor_.waitForFinished();
    return observations_;
}

void Story::ringAppears()
{
    const bool isThere = findRing(u"01-ring"_s, {RingState::available});
    note(u"ring"_s, isThere);
    if (!isThere) {
        note(u"colours"_s, Verdict::notSeen, u"no ring"_s);
        return;
    }
    closed_ = last_;
    // The line of the ring at three o'clock stands out from the panel outside of it.
    const auto panel = qGray(last_.pixel(ring_.right() + 3, ring_.center().y()));
    int contrast = 0;
    for (int x = dot_.right() + 2; x <= ring_.right(); ++x) {
        contrast = std::max(contrast, std::abs(qGray(last_.pixel(x, dot_.center().y())) - panel));
    }
    constexpr int leastContrast = 80;
    note(u"colours"_s, contrast >= leastContrast, u"contrast %1 of 255"_s.arg(contrast));
}

void Story::clickOpens()
{
    clickRing();
    note(u"click"_s, popoverAppears(u"02-popover"_s));
}

void Story::isPlacedAtTheRing()
{
    if (card_.isEmpty()) {
        note(u"placement"_s, Verdict::notSeen, u"no popover"_s);
        return;
    }
    const double points = distance(ring_, card_) / scale_;
    constexpr double atMost = 20;
    note(u"placement"_s, points <= atMost, u"%1 points from the ring"_s.arg(points, 0, 'f', 0));
}

void Story::escapeCloses()
{
    if (card_.isEmpty()) {
        note(u"focus, Escape"_s, Verdict::notSeen, u"no popover"_s);
        return;
    }
    desktop_.pressEscape();
    const bool isClosed = popoverDisappears(u"03-after-escape"_s);
    note(u"focus, Escape"_s, isClosed);
    if (!isClosed) {
        clickRing();
        popoverDisappears(u"03-after-second-click"_s);
    }
}

void Story::clickElsewhereCloses()
{
    QTest::qWait(pause);
    clickRing();
    if (!popoverAppears(u"04-popover-again"_s)) {
        note(u"click elsewhere"_s, Verdict::no, u"the popover did not open again"_s);
        return;
    }
    movePointerAway();
    desktop_.click(Desktop::Button::left);
    const bool isClosed = popoverDisappears(u"05-after-click-elsewhere"_s);
    note(u"click elsewhere"_s, isClosed);
    if (!isClosed) {
        desktop_.pressEscape();
        popoverDisappears(u"05-after-escape"_s);
    }
}

void Story::breakTheService()
{
    internet_.setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    internet_.setProbe(u"claude.ai"_s, 503);
}

/// Opening the popover checks the services.
void Story::theRingTurnsRed()
{
    QTest::qWait(pause);
    breakTheService();
    clickRing();
    popoverAppears(u"06-outage"_s);
    desktop_.pressEscape();
    QTest::qWait(pause);
    note(u"ring turns red"_s, findRing(u"07-red-ring"_s, {RingState::outage}));
    closed_ = last_;
}

void Story::menu()
{
    desktop_.moveTo((QRectF(ring_).center() / scale_).toPoint());
    QTest::qWait(pause);
    const auto before = picture(u"08-before-menu"_s);
    desktop_.click(name_ == u"gnome"_s ? Desktop::Button::left : Desktop::Button::right);
    constexpr int leastHeight = 50;
    const bool isOpen = await(u"09-menu"_s, [&before](const QImage &now) {
        return Picture::change(before, now, beyondShadow / 3).height() > leastHeight;
    });
    const auto entries = TrayItem::menu();
    const bool isComplete = entries == QStringList{u"Open Kelvo"_s, u"Settings…"_s, u"Quit Kelvo"_s};
    note(u"menu"_s, isOpen && isComplete, isComplete ? QString() : entries.join(u", "_s));
    desktop_.pressEscape();
    // The menu of waybar has no keyboard.
    movePointerAway();
    desktop_.click(Desktop::Button::left);
    QTest::qWait(pause);
}

void Story::settings()
{
    const auto before = picture(u"10-before-settings"_s);
    TrayItem::choose(u"Settings…"_s);
    constexpr int leastWidth = 300;
    // Wider than the button of the window in the task bar.
    const int atLeast = static_cast<int>(leastWidth * scale_ * 0.8);
    QRect window;
    const bool isOpen = await(u"11-settings"_s, [&](const QImage &now) {
        window = Picture::bulkOfChange(before, now, beyondShadow, atLeast);
        return window.width() / scale_ >= leastWidth;
    });
    QTest::qWait(pause);
    window = Picture::bulkOfChange(before, picture(u"11-settings"_s), beyondShadow, atLeast);
    // The panel is the band at the edge of the screen whose middle is the ring.
    const int centre = ring_.center().y();
    const bool isAtTop = centre < empty_.height() / 2;
    const QRect free = ring_.isEmpty() ? empty_.rect()
        : isAtTop                      ? empty_.rect().adjusted(0, 2 * centre - 4, 0, 0)
                                       : QRect(0, 0, empty_.width(), 2 * centre - empty_.height() + 4);
    note(u"settings"_s, isOpen && free.contains(window),
         u"%1 × %2 points"_s.arg(window.width() / scale_).arg(window.height() / scale_));
}

/// The settings are open on the first workspace and are asked for on the second.
void Story::settingsComeToThisWorkspace()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        note(u"workspace"_s, Verdict::notSeen, u"not looked at on Wayland"_s);
        return;
    }
    if (outputOf(u"xdotool"_s, {u"get_num_desktops"_s}).trimmed().toInt() < 2) {
        note(u"workspace"_s, Verdict::notSeen, u"there is only one"_s);
        return;
    }
    outputOf(u"xdotool"_s, {u"set_desktop"_s, u"1"_s});
    QTest::qWait(pause * 2);
    const auto before = picture(u"23-second-workspace"_s);
    TrayItem::choose(u"Settings…"_s);
    constexpr int leastWidth = 300;
    note(u"workspace"_s, await(u"24-settings-on-second-workspace"_s, [&](const QImage &now) {
             return Picture::bulkOfChange(before, now, beyondShadow, leastWidth).width() >= leastWidth;
         }));
}

/// The service comes back. Starting the program again opens the popover, which checks the services.
void Story::notification()
{
    const bool hasServer = QDBusConnection::sessionBus().interface()->isServiceRegistered(
                               u"org.freedesktop.Notifications"_s)
        || QDBusConnection::sessionBus().interface()->activatableServiceNames().value().contains(
            u"org.freedesktop.Notifications"_s);
    const auto before = picture(u"12-before-notification"_s);
    internet_.setAllOperational(StatusPage::Claude);
    internet_.setProbe(u"claude.ai"_s, 200);
    monitor_.readAll();
    startAgain();
    QByteArray heard;
    const bool isSent = QTest::qWaitFor([&] { return (heard += monitor_.readAll()).contains("Claude is back"); },
                                        patience);
    if (!hasServer) {
        note(u"notification"_s, Verdict::notSeen, u"no notification service"_s);
        return;
    }
    QTest::qWait(pause);
    desktop_.pressEscape();
    // Larger than the ring, whose colour changes.
    constexpr int leastHeight = 40;
    const bool isShown = await(u"13-notification"_s, [&before](const QImage &now) {
        return Picture::change(before, now, beyondShadow / 3).height() >= leastHeight;
    });
    note(u"notification"_s, isSent && isShown, isSent ? QString() : u"not sent"_s);
    // It may cover what comes next.
    await(u"14-after-notification"_s, [&before](const QImage &now) {
        return Picture::change(before, now, beyondShadow / 3).height() < leastHeight;
    });
}

/// Returns whether the second process ended without an error and in time.
bool Story::startAgain()
{
    QProcess second;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, kelvo_.configurationPath({}));
    second.setProcessEnvironment(environment);
    second.start(QStringLiteral(KELVO_PROGRAM), QStringList());
    return second.waitForFinished(patience) && second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0;
}

void Story::secondStart()
{
    desktop_.pressEscape();
    QTest::qWait(pause);
    closed_ = picture(u"14-before-second-start"_s);
    const bool hasEnded = startAgain();
    const bool isOpen = popoverAppears(u"15-second-start"_s);
    note(u"second start"_s, hasEnded && isOpen, hasEnded ? QString() : u"the second process did not end"_s);
    desktop_.pressEscape();
    popoverDisappears(u"16-second-start-escape"_s);
}

void Story::changesItsLook()
{
    const auto *look = lookSwitchOf(name_);
    if (!look) {
        note(u"dark and light"_s, Verdict::notSeen, u"the desktop has no such setting"_s);
        return;
    }
    const auto switchTo = [look](const QString &value) {
        auto command = look->command + QStringList{value};
        outputOf(command.takeFirst(), command);
    };
    QTest::qWait(pause);
    const auto lightnessOfCard = [this](const QString &name) {
        QTest::qWait(pause * 2);
        const auto shown = picture(name);
        return Picture::lightness(shown, card_.adjusted(8, 8, -8, -8));
    };
    if (!startAgain() || !popoverAppears(u"17-light"_s)) {
        note(u"dark and light"_s, Verdict::notSeen, u"no popover"_s);
        return;
    }
    const int first = lightnessOfCard(u"17-light"_s);
    switchTo(look->dark);
    const int dark = lightnessOfCard(u"18-dark"_s);
    switchTo(look->light);
    const int light = lightnessOfCard(u"19-light-again"_s);
    note(u"dark and light"_s, first > 160 && dark < 100 && light > 160,
         u"lightness %1, %2, %3"_s.arg(first).arg(dark).arg(light));
    desktop_.pressEscape();
    QTest::qWait(pause);
}

void Story::panelRestarts()
{
    const auto panel = qEnvironmentVariable("KELVO_DESKTOP_PANEL").split(u' ', Qt::SkipEmptyParts);
    if (panel.isEmpty()) {
        note(u"panel restarted"_s, Verdict::notSeen, u"the panel is the desktop itself"_s);
        return;
    }
    // The service has come back. The ring shows that only for some time.
    const QList<RingState> states{RingState::recovering, RingState::available};
    const auto isWithoutRing = [this, &states](const QImage &now) { return !sees(now, states); };
    movePointerAway();
    if (isWithoutRing(picture(u"20-before-restart"_s))) {
        note(u"panel restarted"_s, Verdict::notSeen, u"no ring"_s);
        return;
    }
    killInSession(panel.constFirst());
    if (!await(u"21-without-panel"_s, isWithoutRing)) {
        note(u"panel restarted"_s, Verdict::notSeen, u"the panel did not end"_s);
        return;
    }
    QProcess restarted;
    restarted.setProgram(panel.constFirst());
    restarted.setArguments(panel.sliced(1));
    restarted.setStandardOutputFile(QProcess::nullDevice());
    restarted.setStandardErrorFile(QProcess::nullDevice());
    restarted.startDetached();
    note(u"panel restarted"_s, findRing(u"22-panel-restarted"_s, states));
}

void Story::quits()
{
    TrayItem::choose(u"Quit Kelvo"_s);
    const int code = kelvo_.waitForEnd();
    note(u"quit"_s, code == 0, code == 0 ? QString() : u"exit code %1"_s.arg(code));
    QTest::qWait(pause);
    picture(u"30-after-quit"_s);
}

// ---- What a person sees and does ----

void Story::note(const QString &step, Verdict verdict, const QString &text)
{
    static const QString words[] = {u"yes"_s, u"NO"_s, u"not seen"_s};
    std::printf("%s: %s%s\n", qPrintable(step), qPrintable(words[static_cast<int>(verdict)]),
                text.isEmpty() ? "" : qPrintable(u" ("_s + text + u')'));
    std::fflush(stdout);
    observations_.append({step, verdict, text});
}

void Story::note(const QString &step, bool isTrue, const QString &text)
{
    note(step, isTrue ? Verdict::yes : Verdict::no, text);
}

QImage Story::picture(const QString &name)
{
    last_ = desktop_.picture().convertToFormat(QImage::Format_RGB32);
    last_.save(pictures_.filePath(name + u".png"_s));
    return last_;
}

bool Story::await(const QString &name, const std::function<bool(const QImage &)> &condition)
{
    QElapsedTimer timer;
    timer.start();
    do {
        if (condition(picture(name))) {
            return true;
        }
        QTest::qWait(100);
    } while (timer.elapsed() < patience);
    return false;
}

/// The popover in a picture: what changed since it was closed, without its shadow. Empty when it has another width.
QRect Story::card(const QImage &now) const
{
    constexpr int width = 320;
    constexpr int leastHeight = 240;
    const auto changed = Picture::bulkOfChange(closed_, now, beyondShadow, 100);
    const bool isCard = std::abs(changed.width() / scale_ - width) <= 6 && changed.height() / scale_ >= leastHeight;
    return isCard ? changed : QRect();
}

bool Story::popoverAppears(const QString &name)
{
    card_ = {};
    const bool isThere = await(name, [this](const QImage &now) {
        card_ = card(now);
        return !card_.isEmpty();
    });
    QTest::qWait(pause);
    picture(name);
    return isThere;
}

bool Story::popoverDisappears(const QString &name)
{
    return await(name, [this](const QImage &now) { return card(now).isEmpty(); });
}

/// To the empty desktop. Panels change the colours of the item under the pointer.
void Story::movePointerAway()
{
    desktop_.moveTo((QPointF(empty_.width(), empty_.height()) / scale_ / 3).toPoint());
}

/// GNOME opens the menu at a single click.
void Story::clickRing()
{
    desktop_.moveTo((QRectF(ring_).center() / scale_).toPoint());
    QTest::qWait(pause);
    closed_ = picture(u"99-before-click"_s);
    for (int i = 0; i < (name_ == u"gnome"_s ? 2 : 1); ++i) {
        desktop_.click(Desktop::Button::left);
    }
}

/// Looks for the dot of the ring.
bool Story::sees(const QImage &now, const QList<RingState> &states)
{
    for (const auto state : states) {
        const auto colours = coloursOf(state);
        for (const auto &colour : {colours.onDark, colours.onLight}) {
            const auto found = Picture::dot(empty_, now, colour);
            if (!found.isEmpty()) {
                dot_ = found;
                return true;
            }
        }
    }
    return false;
}

bool Story::findRing(const QString &name, const QList<RingState> &states)
{
    movePointerAway();
    if (!await(name, [this, &states](const QImage &now) { return sees(now, states); })) {
        return false;
    }
    // In the grid of 32 units, the diameter of the dot is 10.4. Its outermost pixels are blended and not part of `dot_`.
    const int side = static_cast<int>(std::lround((dot_.width() + 1) * 32 / 10.4));
    ring_ = QRect(dot_.center() - QPoint(side / 2, side / 2), QSize(side, side));
    return true;
}

} // namespace kelvo
