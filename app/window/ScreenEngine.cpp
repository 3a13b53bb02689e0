#include "app/window/ScreenEngine.h"

#include "app/window/Fonts.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

QUrl urlOf(const QString &screen) { return QUrl(QStringLiteral("qrc:/qt/qml/Vorle/") + screen); }

/// An engine that runs the screens' scripts as bytecode. Qt makes machine code of each at its third
/// call, three hundred of them during a start, and takes longer over it than these short bindings
/// ever win back: keys and frames take as long without (docs/benchmarks.md). It reads the number of
/// calls as the first engine is made; programs started later have no use for it. See Qt's
/// "Configuring the JavaScript Engine".
std::unique_ptr<QQmlEngine> bytecodeEngine() {
    constexpr const char *variable = "QV4_JIT_CALL_THRESHOLD";
    static bool first = true; // other threads may read the environment later
    const bool own = std::exchange(first, false) && !qEnvironmentVariableIsSet(variable);
    if (own) {
        qputenv(variable, "1000000000");
    }
    auto engine = std::make_unique<QQmlEngine>();
    if (own) {
        qunsetenv(variable);
    }
    return engine;
}

} // namespace

ScreenEngine::ScreenEngine() : m_qml(bytecodeEngine()) {
    m_qml->addImportPath(QStringLiteral("qrc:/qt/qml"));
}

ScreenEngine::~ScreenEngine() {
    if (m_fonts.joinable()) {
        m_fonts.join();
    }
}

std::unique_ptr<ScreenEngine> ScreenEngine::reading() {
    auto engine = std::make_unique<ScreenEngine>();
    try {
        engine->m_fonts = std::thread(&Typefaces::list);
    } catch (const std::system_error &) { // too many processes: the first text has them listed
    }
    QQmlEngine *qml = engine->m_qml.get();
    // The modules that this names are set up by this thread, which the other would wait for.
    engine->m_look.emplace(qml, urlOf(QStringLiteral("theme/Look.qml")));
    engine->m_main.emplace(qml, urlOf(QStringLiteral("screens/Main.qml")),
                           QQmlComponent::Asynchronous);
    return engine;
}

std::unique_ptr<QObject> ScreenEngine::made(const QString &screen, const QVariantMap &properties) {
    QQmlComponent component(m_qml.get(), urlOf(screen));
    std::unique_ptr<QObject> object(
        component.isReady() ? component.createWithInitialProperties(properties) : nullptr);
    if (!object) {
        throw std::runtime_error("the screens could not be loaded: " +
                                 component.errorString().toStdString());
    }
    return object;
}

} // namespace vorle
