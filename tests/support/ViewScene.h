#pragma once

#include "support/FakeAppearance.h"
#include "support/Golden.h"
#include "support/Stores.h"

#include "style/Tokens.h"
#include "style/ViewEngine.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QTest>

#include <utility>

namespace kelvo {

/// Finds an item by object name among the visual children, which can differ from the QObject children.
inline QQuickItem *findItem(QQuickItem *in, const QString &name)
{
    if (in->objectName() == name) {
        return in;
    }
    for (auto *child : in->childItems()) {
        if (auto *found = findItem(child, name)) {
            return found;
        }
    }
    return nullptr;
}

/// Lays out the item and its children now. Positioners would otherwise compute their sizes at the first frame.
inline void layOut(QQuickItem *item)
{
    for (auto *child : item->childItems()) {
        layOut(child);
    }
    item->ensurePolished();
}

/// Returns the contents of the view, with its device pixel ratio set.
inline QImage picture(QQuickView &view)
{
    auto image = view.grabWindow();
    image.setDevicePixelRatio(view.effectiveDevicePixelRatio());
    return image;
}

/// Returns what a screen reader sees of an item.
inline QAccessibleInterface *accessible(QQuickItem *item)
{
    QAccessible::setActive(true);
    return QAccessible::queryAccessibleInterface(item);
}

inline QString accessibleName(QQuickItem *item)
{
    return accessible(item)->text(QAccessible::Name);
}

/// Records what an Announcer lets a screen reader speak.
class Announcements
{
public:
    explicit Announcements(QQuickItem *announcer)
        : connection_(QObject::connect(announcer, &QQuickItem::visibleChanged, announcer, [this, announcer] {
            if (announcer->isVisible()) {
                texts_.append(accessibleName(announcer));
            }
        }))
    {
    }
    ~Announcements() { QObject::disconnect(connection_); }
    Announcements(const Announcements &) = delete;
    Announcements &operator=(const Announcements &) = delete;

    /// Returns what was announced since the last call.
    QStringList take() { return std::exchange(texts_, {}); }

private:
    QStringList texts_;
    QMetaObject::Connection connection_;
};

/// A view in a window, with real stores and fakes at all boundaries.
struct ViewScene
{
    /// Watches the services `watched`, in this order. The others follow in the order of services, as in a new store.
    explicit ViewScene(const std::vector<ServiceID> &watched = {ServiceID::claude})
        : stores({watched})
    {
        // The services that are not watched follow in catalogue order.
        auto order = watched;
        for (const auto id : allServiceIDs) {
            if (std::find(watched.begin(), watched.end(), id) == watched.end()) {
                order.push_back(id);
            }
        }
        stores.settings.setServiceOrder(order);
        appearance.still = true;
        view.setResizeMode(QQuickView::SizeRootObjectToView);
    }

    void show(const QString &file, const QVariantMap &properties, QSize size = {})
    {
        using namespace Qt::StringLiterals;
        view.setColor(tokens.window());
        view.setInitialProperties(properties);
        view.setSource(QUrl(u"qrc:/qt/qml/Kelvo/windows/"_s + file));
        QVERIFY2(view.status() == QQuickView::Ready, qPrintable(view.errors().value(0).toString()));
        layOut(root());
        view.resize(size.isEmpty() ? QSize(qCeil(root()->implicitWidth()), qCeil(root()->implicitHeight())) : size);
        view.show();
        view.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        settle();
    }

    QQuickItem *root() const { return view.rootObject(); }
    /// Finds an item by name in the whole window.
    QQuickItem *item(const QString &name) const { return findItem(view.contentItem(), name); }
    QQuickItem *item(const QString &in, const QString &name) const { return findItem(item(in), name); }
    /// The rectangle of an item in window coordinates.
    QRectF frame(QQuickItem *of) const
    {
        layOut(view.contentItem());
        return of->mapRectToScene(QRectF(0, 0, of->width(), of->height()));
    }
    QRectF frame(const QString &name) const { return frame(item(name)); }
    QPoint middle(QQuickItem *of) const { return frame(of).center().toPoint(); }
    /// The text of a Prose.
    QString words(QQuickItem *of) const { return of->property("words").toString(); }
    QString text(QQuickItem *of) const { return of->property("text").toString(); }

    void click(QQuickItem *target)
    {
        QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, middle(target));
        settle();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view, key, modifiers);
        settle();
    }
    /// Sends the key events of a key that is held down and repeats three times.
    void holdDown(Qt::Key key)
    {
        const auto text = key == Qt::Key_Space ? QStringLiteral(" ") : QString();
        const auto send = [&](QEvent::Type type, bool repeated) {
            QKeyEvent event(type, key, Qt::NoModifier, text, repeated);
            QCoreApplication::sendEvent(&view, &event);
            settle();
        };
        send(QEvent::KeyPress, false);
        for (int i = 0; i < 3; ++i) {
            send(QEvent::KeyRelease, true);
            send(QEvent::KeyPress, true);
        }
        send(QEvent::KeyRelease, false);
    }
    void hover(QPoint at)
    {
        QTest::mouseMove(&view, at);
        settle();
    }
    void type(const QString &text)
    {
        for (const auto character : text) {
            QTest::keyClick(&view, character.toLatin1());
        }
        settle();
    }
    /// Presses Tab until the item has the focus. Returns false when it has not after 40 presses.
    bool tabTo(QQuickItem *target)
    {
        for (int i = 0; i < 40 && view.activeFocusItem() != target; ++i) {
            key(Qt::Key_Tab);
        }
        return view.activeFocusItem() == target;
    }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Tokens tokens{&appearance};
    Stores stores;
    QQuickView view{&engine.get(), nullptr};
};

} // namespace kelvo
