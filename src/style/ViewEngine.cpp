#include "style/ViewEngine.h"

#include "style/Tokens.h"

#include <QQuickWindow>

// The module's own registration. Being named here, it is linked, and so runs before main.
extern void qml_register_types_Kelvo();

namespace kelvo {

using namespace Qt::StringLiterals;

ViewEngine::ViewEngine(const Appearance &appearance)
{
    Tokens::setAppearance(appearance);
}

ViewEngine::~ViewEngine() = default;

// Views this small need no GPU, whose drivers weigh several times as much as all the rest.
QQmlEngine &ViewEngine::get()
{
    if (!engine_) {
        [[maybe_unused]] static volatile auto registration = &qml_register_types_Kelvo;
        if (QQuickWindow::sceneGraphBackend() != u"software"_s) {
            QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        }
        engine_ = std::make_unique<QQmlEngine>();
        engine_->addImportPath(u"qrc:/qt/qml"_s);
    }
    return *engine_;
}

} // namespace kelvo
