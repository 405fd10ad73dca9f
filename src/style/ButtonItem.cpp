#include "style/ButtonItem.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <algorithm>
#include <utility>

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
    tellImplicitSizes();
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
    tellImplicitSizes();
}

void ButtonItem::press()
{
    if (isEnabled()) {
        Q_EMIT clicked();
    }
}

void ButtonItem::componentComplete()
{
    QQuickItem::componentComplete();
    layOutParts();
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
    const bool isInside = contains(event->position());
    setDown(isInside);
    setHovered(isInside && acceptHoverEvents()); // no hover events arrive while the button is held down
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

void ButtonItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    layOutParts();
}

void ButtonItem::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !value.boolValue) {
        setHovered(false); // the mouse is ungrabbed, but no hover event arrives
    }
}

void ButtonItem::takePart(QQuickItem *part)
{
    part->setParentItem(this);
    connect(part, &QQuickItem::implicitWidthChanged, this, &ButtonItem::tellImplicitSizes);
    connect(part, &QQuickItem::implicitHeightChanged, this, &ButtonItem::tellImplicitSizes);
    layOutParts();
}

/// Sizes the background and the content. Not before the button is complete: a text that is resized before may change its
/// implicit size, on which the size of the button depends.
void ButtonItem::layOutParts()
{
    if (!isComponentComplete()) {
        return;
    }
    if (background_) {
        background_->setSize(size());
    }
    if (content_) {
        content_->setPosition({leftPadding_, topPadding_});
        content_->setSize({std::max(0.0, width() - leftPadding_ - rightPadding_),
                           std::max(0.0, height() - topPadding_ - bottomPadding_)});
    }
}

/// Reads the implicit sizes of the parts and tells of changes. They are read here only: a text may change its implicit size
/// when it is read, which must not happen while the size of the button is computed from it.
void ButtonItem::tellImplicitSizes()
{
    const auto width = [](const QQuickItem *part) { return part ? part->implicitWidth() : 0.0; };
    const auto height = [](const QQuickItem *part) { return part ? part->implicitHeight() : 0.0; };
    const auto before = std::exchange(known_,
                                      {width(background_), height(background_), width(content_), height(content_)});
    if (known_[0] != before[0] || known_[2] != before[2]) {
        Q_EMIT implicitWidthsChanged();
    }
    if (known_[1] != before[1] || known_[3] != before[3]) {
        Q_EMIT implicitHeightsChanged();
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
