#pragma once

#include "platform/Appearance.h"

#include <QQmlEngine>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQuickView;

namespace kelvo {

/// The QML engine that all views share. It is created when a view needs it.
class ViewEngine
{
public:
    /// The views follow `appearance`, which must outlive this object.
    explicit ViewEngine(const Appearance &appearance);
    ~ViewEngine();
    ViewEngine(const ViewEngine &) = delete;
    ViewEngine &operator=(const ViewEngine &) = delete;

    QQmlEngine &get();
    /// Destroys the engine. Call this only when nothing that it has made exists any more.
    void unload() { engine_.reset(); }
    /// Whether the QML modules that the views import are installed. Prints a warning when one is missing.
    bool findsModules();
    /// Loads a view into the window, with these values of its root item's properties. If it has an error, or a module that
    /// it imports is not installed, prints a warning and returns false; the window is then without a root item.
    bool load(QQuickView &window, const QUrl &source, const QVariantMap &properties);

private:
    std::unique_ptr<QQmlEngine> engine_;
};

} // namespace kelvo
