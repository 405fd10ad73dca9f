// A minimal Qt Quick program with a tray icon, as a baseline: a click on the icon shows or hides one window, which is
// made at the first click. It uses the software scene graph.

#include <QApplication>
#include <QCursor>
#include <QPixmap>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSystemTrayIcon>

#include <memory>

namespace {

constexpr char content[] = R"(
import QtQuick
Rectangle {
    color: "#3050c0"
    height: 260
    width: 320
    Text {
        text: "A bare window"
    }
}
)";

std::unique_ptr<QQuickView> makeView(QQmlEngine &engine)
{
    auto view = std::make_unique<QQuickView>(&engine, nullptr);
    view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint);
    auto *component = new QQmlComponent(&engine, view.get());
    component->setData(content, QUrl());
    view->setContent(QUrl(), component, component->create());
    view->setPosition(QCursor::pos() + QPoint(-view->width() / 2, 20));
    return view;
}

} // namespace

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::green);
    QSystemTrayIcon icon{QIcon(pixmap)};

    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickView> view;
    QObject::connect(&icon, &QSystemTrayIcon::activated, &application, [&] {
        if (!view) {
            engine = std::make_unique<QQmlEngine>();
            view = makeView(*engine);
        }
        view->setVisible(!view->isVisible());
    });
    icon.show();
    return QApplication::exec();
}
