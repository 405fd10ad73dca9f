// A minimal Qt program with a tray icon that fetches the addresses given as arguments, as a baseline: once at the start
// and once for every line on standard input. It reads every response and discards it. As in Kelvo, the requests of a
// round use HTTP/1.1 over connections of their own.

#include <QApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QPixmap>
#include <QSocketNotifier>
#include <QSystemTrayIcon>

#include <memory>

#include <unistd.h>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::green);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.show();

    std::unique_ptr<QNetworkAccessManager> network;
    const auto round = [&] {
        network = std::make_unique<QNetworkAccessManager>();
        for (const auto &address : QApplication::arguments().sliced(1)) {
            QNetworkRequest request{QUrl(address)};
            request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
            auto *reply = network->get(request);
            QObject::connect(reply, &QNetworkReply::finished, reply, [reply] {
                reply->readAll();
                reply->deleteLater();
            });
        }
    };
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char line[16];
        if (::read(STDIN_FILENO, line, sizeof line) <= 0) {
            QApplication::quit();
            return;
        }
        round();
    });
    round();
    return QApplication::exec();
}
