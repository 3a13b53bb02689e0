#include "app/window/ScreenEngine.h"

#include <stdexcept>

namespace vorle {

namespace {

QUrl urlOf(const QString &screen) { return QUrl(QStringLiteral("qrc:/qt/qml/Vorle/") + screen); }

} // namespace

ScreenEngine::ScreenEngine() { m_qml.addImportPath(QStringLiteral("qrc:/qt/qml")); }

std::unique_ptr<ScreenEngine> ScreenEngine::reading() {
    auto engine = std::make_unique<ScreenEngine>();
    QQmlEngine *qml = &engine->m_qml;
    // The modules that this names are set up by this thread, which the other would wait for.
    engine->m_look.emplace(qml, urlOf(QStringLiteral("theme/Look.qml")));
    engine->m_main.emplace(qml, urlOf(QStringLiteral("screens/Main.qml")),
                           QQmlComponent::Asynchronous);
    return engine;
}

std::unique_ptr<QObject> ScreenEngine::made(const QString &screen, const QVariantMap &properties) {
    QQmlComponent component(&m_qml, urlOf(screen));
    std::unique_ptr<QObject> object(
        component.isReady() ? component.createWithInitialProperties(properties) : nullptr);
    if (!object) {
        throw std::runtime_error("the screens could not be loaded: " +
                                 component.errorString().toStdString());
    }
    return object;
}

} // namespace vorle
