#include "style/ButtonItem.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <algorithm>

namespace kelvo {

namespace {

bool isPressKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Space;
}

} // namespace

ButtonItem::ButtonItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    setActiveFocusOnTab(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(QGuiApplication::styleHints()->useHoverEffects());
    connect(this, &QQuickItem::activeFocusChanged, this, &ButtonItem::visualFocusChanged);
    connect(this, &ButtonItem::paddingChanged, this, &ButtonItem::layOutParts);
}

bool ButtonItem::hasVisualFocus() const
{
    return hasActiveFocus()
        && (focusReason_ == Qt::TabFocusReason || focusReason_ == Qt::BacktabFocusReason
            || focusReason_ == Qt::ShortcutFocusReason);
}

void ButtonItem::setBackground(QQuickItem *background)
{
    if (background == background_) {
        return;
    }
    background_ = background;
    if (background) {
        background->setZ(-1);
        takePart(background);
    }
    Q_EMIT backgroundChanged();
    Q_EMIT implicitWidthsChanged();
    Q_EMIT implicitHeightsChanged();
}

void ButtonItem::setContentItem(QQuickItem *content)
{
    if (content == content_) {
        return;
    }
    content_ = content;
    if (content) {
        takePart(content);
    }
    Q_EMIT contentItemChanged();
    Q_EMIT implicitWidthsChanged();
    Q_EMIT implicitHeightsChanged();
}

void ButtonItem::press()
{
    if (isEnabled()) {
        Q_EMIT clicked();
    }
}

void ButtonItem::mousePressEvent(QMouseEvent *)
{
#ifndef Q_OS_MACOS // where buttons do not take the focus when they are clicked
    forceActiveFocus(Qt::MouseFocusReason);
#endif
    setFocusReason(Qt::MouseFocusReason);
    setDown(true);
}

void ButtonItem::mouseMoveEvent(QMouseEvent *event)
{
    setDown(contains(event->position()));
}

void ButtonItem::mouseReleaseEvent(QMouseEvent *)
{
    if (down_) {
        setDown(false);
        press();
    }
}

void ButtonItem::mouseUngrabEvent()
{
    setDown(false);
}

void ButtonItem::hoverEnterEvent(QHoverEvent *)
{
    setHovered(true);
}

void ButtonItem::hoverLeaveEvent(QHoverEvent *)
{
    setHovered(false);
}

// A key that is held down repeats, but is one press.
void ButtonItem::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(isPressKey(*event));
    if (event->isAccepted() && !event->isAutoRepeat()) {
        press();
    }
}

void ButtonItem::keyReleaseEvent(QKeyEvent *event)
{
    event->setAccepted(event->key() == Qt::Key_Space);
}

void ButtonItem::focusInEvent(QFocusEvent *event)
{
    QQuickItem::focusInEvent(event);
    setFocusReason(event->reason());
}

void ButtonItem::focusOutEvent(QFocusEvent *event)
{
    QQuickItem::focusOutEvent(event);
    setFocusReason(event->reason());
}

void ButtonItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    layOutParts();
}

void ButtonItem::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !value.boolValue) {
        setHovered(false);
        setDown(false);
    }
}

void ButtonItem::takePart(QQuickItem *part)
{
    part->setParentItem(this);
    connect(part, &QQuickItem::implicitWidthChanged, this, &ButtonItem::implicitWidthsChanged);
    connect(part, &QQuickItem::implicitHeightChanged, this, &ButtonItem::implicitHeightsChanged);
    layOutParts();
}

void ButtonItem::layOutParts()
{
    if (background_) {
        background_->setSize(size());
    }
    if (content_) {
        content_->setPosition({leftPadding_, topPadding_});
        content_->setSize({std::max(0.0, width() - leftPadding_ - rightPadding_),
                           std::max(0.0, height() - topPadding_ - bottomPadding_)});
    }
}

void ButtonItem::setHovered(bool hovered)
{
    if (hovered != hovered_) {
        hovered_ = hovered;
        Q_EMIT hoveredChanged();
    }
}

void ButtonItem::setDown(bool down)
{
    if (down != down_) {
        down_ = down;
        Q_EMIT downChanged();
    }
}

void ButtonItem::setFocusReason(Qt::FocusReason reason)
{
    if (reason != focusReason_) {
        focusReason_ = reason;
        Q_EMIT visualFocusChanged();
    }
}

} // namespace kelvo
