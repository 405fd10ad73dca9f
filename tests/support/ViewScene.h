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

namespace kelvo {

/// The item of that name on the screen; an item's parent there need not be its owner.
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

/// Columns and rows know their sizes only at the first frame.
inline void layOut(QQuickItem *item)
{
    for (auto *child : item->childItems()) {
        layOut(child);
    }
    item->ensurePolished();
}

/// What the view shows, which knows how many pixels it has a point.
inline QImage picture(QQuickView &view)
{
    auto image = view.grabWindow();
    image.setDevicePixelRatio(view.effectiveDevicePixelRatio());
    return image;
}

/// What a screen reader is told of an item.
inline QAccessibleInterface *accessible(QQuickItem *item)
{
    QAccessible::setActive(true);
    return QAccessible::queryAccessibleInterface(item);
}

inline QString accessibleName(QQuickItem *item)
{
    return accessible(item)->text(QAccessible::Name);
}

/// A view in a window of its own, over real stores and with the boundaries held.
struct ViewScene
{
    /// A first start; watched are `watched`, in that order.
    explicit ViewScene(const std::vector<ServiceID> &watched = {ServiceID::claude})
        : stores({watched})
    {
        // What a fresh store has: everything after the watched ones.
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
    /// By name, anywhere in the window.
    QQuickItem *item(const QString &name) const { return findItem(view.contentItem(), name); }
    QQuickItem *item(const QString &in, const QString &name) const { return findItem(item(in), name); }
    /// In the window.
    QRectF frame(QQuickItem *of) const
    {
        layOut(view.contentItem());
        return of->mapRectToScene(QRectF(0, 0, of->width(), of->height()));
    }
    QRectF frame(const QString &name) const { return frame(item(name)); }
    QPoint middle(QQuickItem *of) const { return frame(of).center().toPoint(); }
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
    void type(const QString &text)
    {
        for (const auto character : text) {
            QTest::keyClick(&view, character.toLatin1());
        }
        settle();
    }
    /// The tab key, until the item has the focus; fails after a round.
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
