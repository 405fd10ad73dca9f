#include "style/ViewEngine.h"

#include "style/Tokens.h"

#include <QFile>
#include <QQmlComponent>
#include <QQuickView>

#include <algorithm>

// The generated registration of the QML module. Referring to it here makes the linker include its object file, whose
// static initialiser registers the module.
extern void qml_register_types_Kelvo();

// The same for the compiled QML files. Without them, Qt 6.8 compiles the views again and stores them in the user's cache.
// The macro declares a function, so it cannot be inside a namespace.
static void registerCompiledViews()
{
    Q_INIT_RESOURCE(qmlcache_kelvo_views);
}

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// Prints the errors of the component in one line.
void warn(const QQmlComponent &component)
{
    QStringList errors;
    for (const auto &error : component.errors()) {
        errors.append(error.toString());
    }
    qWarning("The windows cannot be opened: %s", qPrintable(errors.join("; "_L1)));
}

} // namespace

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
        registerCompiledViews();
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
    const auto folders = get().importPathList();
    for (const auto module : {"QtQml"_L1, "QtQml/WorkerScript"_L1, "QtQuick"_L1, "QtQuick/Templates"_L1}) {
        const bool isInstalled = std::any_of(folders.begin(), folders.end(), [module](const QString &folder) {
            return QFile::exists(folder + u'/' + module + "/qmldir"_L1);
        });
        if (!isInstalled) {
            qWarning("The windows cannot be opened: the QML module %s is not installed", module.latin1());
            return false;
        }
    }
    return true;
}

bool ViewEngine::load(QQuickView &window, const QUrl &source, const QVariantMap &properties)
{
    auto *component = new QQmlComponent(&get(), source, &window);
    auto *root = component->isReady() ? component->createWithInitialProperties(properties) : nullptr;
    if (!root) {
        warn(*component);
        return false;
    }
    window.setContent(source, component, root);
    return true;
}

} // namespace kelvo
