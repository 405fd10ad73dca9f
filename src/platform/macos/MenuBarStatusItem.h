#pragma once

#include "platform/StatusItem.h"

#include <QPointer>

#include <memory>

Q_FORWARD_DECLARE_OBJC_CLASS(NSView);

namespace kelvo {

/// The item in the menu bar: an NSStatusItem.
///
/// QSystemTrayIcon is not used: it draws one image for all bars, although the bars of two displays can differ, and opens its
/// menu at every click.
class MenuBarStatusItem : public StatusItem
{
    Q_OBJECT

public:
    MenuBarStatusItem();
    ~MenuBarStatusItem() override;

    /// The bar that draws the image chooses between its two forms.
    void setImage(const StatusItemImage &image, bool barIsDark) override;
    /// Sets the tool tip and what VoiceOver reads.
    void setToolTip(const QString &text) override;
    void setMenu(QMenu *menu) override;
    QRect geometry() const override;
    void show() override;
    /// The view in the menu bar; nil before `show`.
    NSView *view() const;

Q_SIGNALS:
    /// The item is in the menu bar now.
    void shown();

private:
    class Item;

    std::unique_ptr<Item> item_;
    StatusItemImage image_;
    QString toolTip_;
    QPointer<QMenu> menu_;
};

} // namespace kelvo
