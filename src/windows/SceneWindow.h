#pragma once

#include "style/Tokens.h"
#include "style/ViewEngine.h"

#include <QObject>
#include <QQuickView>
#include <QUrl>
#include <QVariantMap>

#include <memory>

namespace kelvo {

/// An ordinary titled window around one view. The view is loaded when the window opens and gone when it closes, with
/// everything that it holds; nothing is remembered between two openings.
class SceneWindow : public QObject
{
    Q_OBJECT

public:
    ~SceneWindow() override;

    bool isOpen() const { return view_ != nullptr; }
    /// Opens the window, or brings the open one forward.
    void open();
    void close();

    /// The window; null while it is closed.
    QQuickView *view() const { return view_.get(); }

Q_SIGNALS:
    /// The window closed, whoever closed it.
    void closed();
    /// The user asks for the settings.
    void settingsRequested();

protected:
    SceneWindow(ViewEngine &engine, const Appearance &appearance, QString title, QUrl source);

    /// Makes what the view is given, anew for each opening, as children of `owner`.
    virtual QVariantMap makeState(QObject *owner) = 0;
    /// Sets the sizes that the window may take and the one that it opens with.
    virtual void setSizes(QQuickView &view) const = 0;

private:
    /// Deletes when control is back in the event loop: a view closes its own window from one of its handlers.
    struct Later
    {
        void operator()(QObject *object) const { object->deleteLater(); }
    };

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool handleKey(const QKeyEvent &event);
    void load();

    ViewEngine &engine_;
    Tokens tokens_;
    QString title_;
    QUrl source_;
    std::unique_ptr<QQuickView, Later> view_;
};

} // namespace kelvo
