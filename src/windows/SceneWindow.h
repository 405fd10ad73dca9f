#pragma once

#include "style/Tokens.h"
#include "style/ViewEngine.h"

#include <QObject>
#include <QQuickView>
#include <QUrl>
#include <QVariantMap>

#include <memory>

namespace kelvo {

/// A normal window with a title and one view. The view and its state are created when the window opens and destroyed when
/// it closes; nothing is kept between two openings.
class SceneWindow : public QObject
{
    Q_OBJECT

public:
    ~SceneWindow() override;

    bool isOpen() const { return view_ != nullptr; }
    /// Opens the window. If it is open, brings it to the front. If its view cannot be loaded, it stays closed and `failed` is
    /// emitted.
    void open();
    void close();

    /// The window; null while it is closed.
    QQuickView *view() const { return view_.get(); }

Q_SIGNALS:
    /// The window was closed, by the user, the desktop or the program.
    void closed();
    /// The view of the window, or a part of it that is loaded later, could not be loaded.
    void failed();
    /// The user asked for the settings.
    void settingsRequested();

protected:
    SceneWindow(ViewEngine &engine, const Appearance &appearance, QString title, QUrl source);

    /// Makes the initial properties of the view. Called for each opening. The objects are children of `view`.
    virtual QVariantMap makeState(QQuickView &view) = 0;
    /// Sets the minimum, maximum and initial size of the window.
    virtual void setSizes(QQuickView &view) const = 0;

private:
    /// Deletes an object on the next turn of the event loop, because a view may close its own window from a handler.
    struct Later
    {
        void operator()(QObject *object) const { object->deleteLater(); }
    };

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool handleKey(const QKeyEvent &event);
    bool isUnmarkedRepeat(const QKeyEvent &event) const;
    /// Makes the window. Returns false if its view cannot be loaded.
    bool load();

    ViewEngine &engine_;
    Tokens tokens_;
    QString title_;
    QUrl source_;
    std::unique_ptr<QQuickView, Later> view_;
    int releasedKey_ = 0;
    quint64 releasedAt_ = 0;
};

} // namespace kelvo
