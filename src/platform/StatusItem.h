#pragma once

#include <QIcon>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

class QMenu;

namespace kelvo {

/// An image for bars of both kinds.
struct StatusItemImage
{
    QIcon onLightBar;
    QIcon onDarkBar;
};

/// The application's item in the tray or menu bar. It appears as soon as there is a tray, even if the tray starts after
/// the application, and appears again after the tray restarts.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Sets the image. The bar chooses the size; the image is not tinted. `barIsDark` selects the one to show on systems
    /// whose bar does not choose by itself.
    virtual void setImage(const StatusItemImage &image, bool barIsDark) = 0;
    virtual void setToolTip(const QString &text) = 0;
    /// Sets the menu that a right click opens (on some desktops any click). The menu is not owned and must outlive the
    /// item.
    virtual void setMenu(QMenu *menu) = 0;
    /// The rectangle of the item on the screen; empty when the bar does not report it.
    virtual QRect geometry() const = 0;
    /// Shows the item. It stays until the object is destroyed.
    virtual void show() = 0;

Q_SIGNALS:
    /// The user clicked the item. `point` is where the bar says that the item is, as the bar reported it: some bars report
    /// a point that is relative to the item. Null when the bar reports no point; then `geometry` may know the place.
    void activated(std::optional<QPoint> point);
};

} // namespace kelvo
