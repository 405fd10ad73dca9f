#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QString>

#include <array>

namespace kelvo {

/// A button without an appearance: an item that is clicked by the left mouse button, or once for each press of Return,
/// Enter or Space. A disabled button does nothing. It sizes its background to itself, and its content to itself without
/// the paddings. (The buttons of Qt Quick Templates do more, and their library takes longer to load than the popover.)
class ButtonItem : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY textChanged FINAL)
    /// Whether the button notices the pointer over it. The default depends on the desktop.
    Q_PROPERTY(bool hoverEnabled READ acceptHoverEvents WRITE setAcceptHoverEvents FINAL)
    /// Whether the pointer is over the button.
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)
    /// Whether the button is held down with the mouse.
    Q_PROPERTY(bool down READ isDown NOTIFY downChanged FINAL)
    /// Whether the button has the focus because of the keyboard, and so needs a focus indicator.
    Q_PROPERTY(bool visualFocus READ hasVisualFocus NOTIFY visualFocusChanged FINAL)
    Q_PROPERTY(QQuickItem *background READ background WRITE setBackground NOTIFY backgroundChanged FINAL)
    Q_PROPERTY(QQuickItem *contentItem READ contentItem WRITE setContentItem NOTIFY contentItemChanged FINAL)
    Q_PROPERTY(qreal leftPadding MEMBER leftPadding_ NOTIFY paddingChanged FINAL)
    Q_PROPERTY(qreal rightPadding MEMBER rightPadding_ NOTIFY paddingChanged FINAL)
    Q_PROPERTY(qreal topPadding MEMBER topPadding_ NOTIFY paddingChanged FINAL)
    Q_PROPERTY(qreal bottomPadding MEMBER bottomPadding_ NOTIFY paddingChanged FINAL)
    /// The implicit sizes of the background and the content; 0 without one.
    Q_PROPERTY(qreal implicitBackgroundWidth READ implicitBackgroundWidth NOTIFY implicitWidthsChanged FINAL)
    Q_PROPERTY(qreal implicitBackgroundHeight READ implicitBackgroundHeight NOTIFY implicitHeightsChanged FINAL)
    Q_PROPERTY(qreal implicitContentWidth READ implicitContentWidth NOTIFY implicitWidthsChanged FINAL)
    Q_PROPERTY(qreal implicitContentHeight READ implicitContentHeight NOTIFY implicitHeightsChanged FINAL)

public:
    explicit ButtonItem(QQuickItem *parent = nullptr);

    bool isHovered() const { return hovered_; }
    bool isDown() const { return down_; }
    bool hasVisualFocus() const;
    QQuickItem *background() const { return background_; }
    QQuickItem *contentItem() const { return content_; }
    qreal implicitBackgroundWidth() const { return known_[0]; }
    qreal implicitBackgroundHeight() const { return known_[1]; }
    qreal implicitContentWidth() const { return known_[2]; }
    qreal implicitContentHeight() const { return known_[3]; }

    /// The item becomes a visual child of the button, which does not own it.
    void setBackground(QQuickItem *background);
    void setContentItem(QQuickItem *content);

    /// What a click does: emits `clicked`, unless the button is disabled.
    Q_INVOKABLE void press();

Q_SIGNALS:
    void clicked();
    void textChanged();
    void hoveredChanged();
    void downChanged();
    void visualFocusChanged();
    void backgroundChanged();
    void contentItemChanged();
    void paddingChanged();
    void implicitWidthsChanged();
    void implicitHeightsChanged();

protected:
    void componentComplete() override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void takePart(QQuickItem *part);
    void layOutParts();
    void tellImplicitSizes();
    void setHovered(bool hovered);
    void setDown(bool down);
    void setFocusReason(Qt::FocusReason reason);

    QString text_;
    QPointer<QQuickItem> background_;
    QPointer<QQuickItem> content_;
    qreal leftPadding_ = 0;
    qreal rightPadding_ = 0;
    qreal topPadding_ = 0;
    qreal bottomPadding_ = 0;
    std::array<qreal, 4> known_{}; ///< the implicit sizes of the background and of the content
    bool hovered_ = false;
    bool down_ = false;
    Qt::FocusReason focusReason_ = Qt::OtherFocusReason;
};

} // namespace kelvo
