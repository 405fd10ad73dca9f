// A program with only a tray item. It is a process of its own, because the test gives it other displays and buses.
//
// Each line on standard input is a command of the test: "icon <colour>", "tooltip <text>", "menu <entry>", "show".
// "show" prints "shown"; each click of the item prints "activated" and the point, or "activated in" and the rectangle of the
// item; "menu opens" is printed when the program opens the menu itself; each chosen menu entry prints "chosen <entry>".

#include "platform/linux/TrayStatusItem.h"

#include <QApplication>
#include <QIconEngine>
#include <QMenu>
#include <QPainter>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Paints a disc at any size, like the icon of the application.
class DiscEngine : public QIconEngine
{
public:
    explicit DiscEngine(const QColor &color)
        : color_(color)
    {
    }
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->setBrush(color_);
        painter->drawEllipse(rect);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    QIconEngine *clone() const override { return new DiscEngine(color_); }

private:
    QColor color_;
};

void say(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QMenu menu;
    kelvo::TrayStatusItem item(kelvo::BusConnection::session(), std::chrono::milliseconds(200));
    QObject::connect(&item, &kelvo::StatusItem::activated, [&item](std::optional<QPoint> point) {
        const auto place = item.geometry();
        say(qPrintable(
            point
                ? u"activated %1 %2"_s.arg(point->x()).arg(point->y())
                : u"activated in %1 %2 %3 %4"_s.arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height())));
    });
    QObject::connect(&menu, &QMenu::aboutToShow, [] { say("menu opens"); });

    const auto obey = [&](const QString &line) {
        const auto command = line.section(u' ', 0, 0);
        const auto argument = line.section(u' ', 1);
        if (command == "icon"_L1) {
            const QIcon disc(new DiscEngine(QColor(argument)));
            item.setImage({disc, disc}, false);
        } else if (command == "tooltip"_L1) {
            item.setToolTip(argument);
        } else if (command == "menu"_L1) {
            menu.addAction(argument, [argument] { say(qPrintable("chosen "_L1 + argument)); });
            item.setMenu(&menu);
        } else if (command == "show"_L1) {
            item.show();
            say("shown");
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
