// A program with only a tray item. It is a process of its own, because the test gives it other displays and buses. Its
// argument is the time in milliseconds for which it waits for a tray on the bus.
//
// Each line on standard input is a command of the test: "icon <colour>", "square <colour>", "tooltip <text>",
// "hide tooltip", "menu <entry>", "show", "geometry", "token", "later". "show" prints "shown"; "geometry" prints "at" and the
// rectangle of the item; "token" prints "token" and the activation token, and forgets it; "later" prints "later" after the
// delay of tool tips. Each click of the item prints "activated" and the point, or "activated in" and the rectangle of the
// item; "menu opens" is printed when the program opens the menu itself; each chosen menu entry prints "chosen <entry>";
// "tool tip <text>" and "tool tip ends" are printed when the program shows and hides a tool tip itself.

#include "platform/linux/ActivationToken.h"
#include "platform/linux/TrayStatusItem.h"

#include <QApplication>
#include <QEvent>
#include <QIconEngine>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QSocketNotifier>
#include <QStyle>
#include <QTimer>
#include <QToolTip>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum class Shape { disc, square };

/// Paints a shape at any size, like the icon of the application.
class ShapeEngine : public QIconEngine
{
public:
    ShapeEngine(Shape shape, const QColor &color)
        : shape_(shape)
        , color_(color)
    {
    }
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->setPen(Qt::NoPen);
        painter->setBrush(color_);
        if (shape_ == Shape::disc) {
            painter->drawEllipse(rect);
        } else {
            painter->drawRect(rect);
        }
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    QIconEngine *clone() const override { return new ShapeEngine(shape_, color_); }

private:
    Shape shape_;
    QColor color_;
};

void say(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

QString text(const QRect &rect)
{
    return u"%1 %2 %3 %4"_s.arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

/// Tells when the application shows and hides a tool tip.
class ToolTipReporter : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *label = qobject_cast<QLabel *>(watched);
        if (label && label->windowType() == Qt::ToolTip) {
            if (event->type() == QEvent::Show) {
                say(qPrintable("tool tip "_L1 + label->text()));
            } else if (event->type() == QEvent::Hide) {
                say("tool tip ends");
            }
        }
        return false;
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QMenu menu;
    const auto grace = QApplication::arguments().at(1).toInt();
    kelvo::TrayStatusItem item(kelvo::BusConnection::session(), std::chrono::milliseconds(grace));
    QObject::connect(&item, &kelvo::StatusItem::activated, [&item](std::optional<QPoint> point) {
        say(qPrintable(point ? u"activated %1 %2"_s.arg(point->x()).arg(point->y())
                             : "activated in "_L1 + text(item.geometry())));
    });
    QObject::connect(&menu, &QMenu::aboutToShow, [] { say("menu opens"); });
    ToolTipReporter toolTips;
    application.installEventFilter(&toolTips);

    const auto obey = [&](const QString &line) {
        const auto command = line.section(u' ', 0, 0);
        const auto argument = line.section(u' ', 1);
        if (command == "icon"_L1 || command == "square"_L1) {
            const QIcon icon(new ShapeEngine(command == "icon"_L1 ? Shape::disc : Shape::square, QColor(argument)));
            item.setImage({icon, icon}, false);
        } else if (command == "hide"_L1) {
            QToolTip::hideText();
        } else if (command == "tooltip"_L1) {
            item.setToolTip(argument);
        } else if (command == "menu"_L1) {
            menu.addAction(argument, [argument] { say(qPrintable("chosen "_L1 + argument)); });
            item.setMenu(&menu);
        } else if (command == "show"_L1) {
            item.show();
            say("shown");
        } else if (command == "geometry"_L1) {
            say(qPrintable("at "_L1 + text(item.geometry())));
        } else if (command == "token"_L1) {
            say("token " + kelvo::ActivationToken::take());
        } else if (command == "later"_L1) {
            // Timers are up to five percent late.
            const int delay = QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay);
            QTimer::singleShot(delay * 11 / 10, Qt::PreciseTimer, [] { say("later"); });
        }
    };
    QByteArray received;
    QSocketNotifier commands(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, [&] {
        char buffer[256];
        const auto size = read(STDIN_FILENO, buffer, sizeof buffer);
        if (size <= 0) {
            QApplication::quit();
            return;
        }
        received.append(buffer, size);
        for (auto end = received.indexOf('\n'); end >= 0; end = received.indexOf('\n')) {
            obey(QString::fromUtf8(received.left(end)));
            received.remove(0, end + 1);
        }
    });
    return QApplication::exec();
}
