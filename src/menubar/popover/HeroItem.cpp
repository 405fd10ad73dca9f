#include "menubar/popover/HeroItem.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>

namespace kelvo {

namespace {

class SpokenText : public QAccessibleObject
{
public:
    using QAccessibleObject::QAccessibleObject;

    QString text(QAccessible::Text which) const override
    {
        return which == QAccessible::Name ? item()->spokenText() : QString();
    }
    void setText(QAccessible::Text, const QString &) override { }
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.focused = item()->hasActiveFocus();
        state.readOnly = true;
        state.invisible = !item()->isVisible() || !item()->window() || !item()->window()->isVisible();
        return state;
    }
    QRect rect() const override
    {
        const auto inScene = item()->mapRectToScene(item()->boundingRect()).toAlignedRect();
        return item()->window() ? inScene.translated(item()->window()->mapToGlobal(QPoint())) : inScene;
    }

    /// The nearest ancestor that counts this as its child.
    QAccessibleInterface *parent() const override
    {
        for (auto *ancestor = item()->parentItem(); ancestor; ancestor = ancestor->parentItem()) {
            auto *candidate = QAccessible::queryAccessibleInterface(ancestor);
            if (candidate && candidate->indexOfChild(this) >= 0) {
                return candidate;
            }
        }
        return QAccessible::queryAccessibleInterface(item()->window());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QWindow *window() const override { return item()->window(); }

private:
    HeroItem *item() const { return static_cast<HeroItem *>(object()); }
};

QAccessibleInterface *makeSpokenText(const QString &, QObject *object)
{
    auto *item = qobject_cast<HeroItem *>(object);
    return item ? new SpokenText(item) : nullptr;
}

} // namespace

HeroItem::HeroItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    QAccessible::installFactory(makeSpokenText);
}

} // namespace kelvo
