#include "style/ViewEngine.h"

#include "style/Tokens.h"

#include <QQmlComponent>
#include <QQuickWindow>

// The generated registration of the QML module. Referring to it here makes the linker include its object file, whose
// static initialiser registers the module.
extern void qml_register_types_Kelvo();

namespace kelvo {

using namespace Qt::StringLiterals;

ViewEngine::ViewEngine(const Appearance &appearance)
{
    Tokens::setAppearance(appearance);
}

ViewEngine::~ViewEngine() = default;

// The software scene graph is sufficient for these views. A GPU driver would use several times the memory of the program.
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

bool ViewEngine::findsModules()
{
    QQmlComponent component(&get());
    component.setData("import QtQuick\nimport QtQuick.Templates\nItem {}", {});
    if (component.isError()) {
        qWarning("The windows cannot be opened: %s", qPrintable(component.errorString().trimmed()));
    }
    return !component.isError();
}

} // namespace kelvo
