#pragma once

#include "style/Tokens.h"
#include "style/ViewEngine.h"
#include "support/FakeAppearance.h"

#include <QByteArray>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>

namespace kelvo {

/// Shows one QML item, given as source text, in a window.
class QmlStage
{
public:
    QmlStage(const QByteArray &source, const QSize &size, bool reduceMotion = false)
    {
        appearance.still = reduceMotion;
        QQmlComponent component(&engine.get());
        component.setData("import QtQuick\nimport Kelvo\nItem { width: " + QByteArray::number(size.width())
                              + "; height: " + QByteArray::number(size.height()) + "; " + source + " }",
                          QUrl());
        root_ = qobject_cast<QQuickItem *>(component.create());
        if (!root_) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        view.setContent(QUrl(), nullptr, root_);
    }

    QQuickItem *item() const { return root_->childItems().constFirst(); }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Tokens tokens{&appearance};
    QQuickView view{&engine.get(), nullptr};

private:
    QQuickItem *root_;
};

} // namespace kelvo
