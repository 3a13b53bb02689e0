#include "tests/app/spoken/ScreenReader.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDir>
#include <QElapsedTimer>

namespace vorle::test {

namespace {

using namespace std::chrono_literals;

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

[[noreturn]] void fail(const QString &what) { throw std::runtime_error(what.toStdString()); }

/// Whether it holds in time.
bool holdsSoon(const std::function<bool()> &done) {
    try {
        spinUntil(done, 8s);
        return true;
    } catch (const std::runtime_error &) {
        return false;
    }
}

void walkFrom(Spoken::Way way, const std::function<bool(const Spoken::Way &)> &look) {
    if (look(way)) {
        for (const Spoken &part : way.last()->parts) {
            walkFrom(way + Spoken::Way{&part}, look);
        }
    }
}

/// Not every build puts it into the same folder.
QString launcher() {
    for (const char *folder : {"/usr/libexec", "/usr/lib/at-spi2-core", "/usr/lib"}) {
        const QString path = text(folder) + text("/at-spi-bus-launcher");
        if (QFile::exists(path)) {
            return path;
        }
    }
    fail(text("no at-spi-bus-launcher on this machine"));
}

} // namespace

QString Spoken::told() const { return text("%1 « %2 »").arg(role, name); }

void Spoken::walk(const std::function<bool(const Way &)> &look) const { walkFrom({this}, look); }

QList<const Spoken *> Spoken::all(const std::function<bool(const Spoken &)> &wanted) const {
    QList<const Spoken *> found;
    walk([&](const Way &way) {
        if (wanted(*way.last())) {
            found += way.last();
        }
        return true;
    });
    return found;
}

QList<const Spoken *> Spoken::all(const char *wantedRole) const {
    return all([&](const Spoken &part) { return part.role == QLatin1String(wantedRole); });
}

std::string Spoken::lines() const {
    QString lines;
    walk([&](const Way &way) {
        const Spoken &part = *way.last();
        lines += QString(2 * (way.size() - 1), u' ') + part.told();
        if (!part.description.isEmpty()) {
            lines += text(" (%1)").arg(part.description);
        }
        for (const auto &[state, word] :
             {std::pair(Focused, " focused"), std::pair(Selected, " selected"),
              std::pair(Checked, " checked"), std::pair(Focusable, " focusable")}) {
            lines += text(part.is(state) ? word : "");
        }
        lines += text(part.acts ? " acts" : "") + text(part.is(Enabled) ? "" : " disabled") + u'\n';
        return true;
    });
    return lines.toStdString();
}

ScreenReader::ScreenReader() {
    startDisplay();
    startBus();
    startProgram();
    listen();
}

ScreenReader::~ScreenReader() {
    QDBusConnection::disconnectFromBus(text("reader"));
    for (QProcess *process : {&m_launcher, &m_display}) {
        process->terminate(); // the launcher takes its bus along
        process->waitForFinished();
    }
}

void ScreenReader::startDisplay() {
    m_display.start(text("Xvfb"),
                    {text("-displayfd"), text("1"), text("-nolisten"), text("tcp"), text("-screen"),
                     text("0"), text("1180x780x24"), text("-noreset")});
    QByteArray number;
    spinUntil([&] {
        number += m_display.readAllStandardOutput();
        return number.endsWith('\n') || m_display.state() == QProcess::NotRunning;
    });
    QProcessEnvironment &environment = m_program.environment;
    environment.insert(text("DISPLAY"), text(":") + QString::fromLatin1(number.trimmed()));
    environment.insert(text("QT_QPA_PLATFORM"), text("xcb"));
    environment.insert(text("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), text("1"));
    environment.insert(text("VORLE_DEMO_PACE"), text("0"));
    environment.insert(text("HOME"), m_program.path("home"));
    environment.insert(text("DBUS_SESSION_BUS_ADDRESS"), m_session.address());
    for (const char *variable : {"WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS", "XDG_CACHE_HOME"}) {
        environment.remove(text(variable));
    }
}

void ScreenReader::startBus() {
    m_launcher.setProcessEnvironment(m_program.environment);
    m_launcher.setProgram(launcher());
    m_launcher.setArguments({text("--launch-immediately"), text("--a11y=1")});
    m_launcher.setStandardOutputFile(QProcess::nullDevice());
    m_launcher.setStandardErrorFile(QProcess::nullDevice());
    m_launcher.start();
    QString address;
    const auto asked = QDBusMessage::createMethodCall(text("org.a11y.Bus"), text("/org/a11y/bus"),
                                                      text("org.a11y.Bus"), text("GetAddress"));
    spinUntil([&] {
        const QDBusMessage reply = m_session.connection("reader of the session").call(asked);
        address = reply.arguments().value(0).toString();
        return reply.type() == QDBusMessage::ReplyMessage && !address.isEmpty();
    });
    if (!QDBusConnection::connectToBus(address, text("reader")).isConnected()) {
        fail(text("no accessibility bus at ") + address);
    }
}

void ScreenReader::startProgram() {
    m_program.start("--demo");
    const Place registry{text("org.a11y.atspi.Registry"), text("/org/a11y/atspi/accessible/root")};
    spinUntil([&] {
        for (const Place &application : partsOf(registry)) {
            for (const Place &window : partsOf(application)) {
                if (property(window, "Name").startsWith(text("vorle"))) {
                    m_window = window;
                    return true;
                }
            }
        }
        return false;
    });
    // There is no window manager to give it the keyboard.
    run("xdotool", {text("search"), text("--sync"), text("--onlyvisible"), text("--name"),
                    text("^vorle"), text("windowfocus"), text("--sync")});
}

void ScreenReader::listen() {
    // Programs tell but what somebody asked to be told.
    const Place registry{text("org.a11y.atspi.Registry"), text("/org/a11y/atspi/registry")};
    ask(registry, "org.a11y.atspi.Registry", "RegisterEvent",
        {text("object:state-changed"), QStringList(), QString()});
    bus().connect(m_window.service, {}, text("org.a11y.atspi.Event.Object"), text("StateChanged"),
                  this, SLOT(take(QDBusMessage)));
}

void ScreenReader::take(const QDBusMessage &event) {
    const QString state = event.arguments().value(0).toString();
    if (event.arguments().value(1).toInt() != 1) {
        return;
    }
    const Place place{event.service(), event.path()};
    if (state == u"focused" || state == u"selected") {
        heard +=
            (state == u"focused" ? text("here: ") : text("chosen: ")) + property(place, "Name");
    } else if (state == u"showing") {
        const QString role =
            ask(place, "org.a11y.atspi.Accessible", "GetRoleName").arguments().value(0).toString();
        if (role == u"notification" || role == u"alert") {
            heard += text("said: ") + property(place, "Name");
        }
    }
}

Spoken ScreenReader::window() { return read(m_window); }

Spoken ScreenReader::windowOnce(const std::function<bool(const Spoken &)> &wanted) {
    Spoken now;
    holdsSoon([&] {
        now = window();
        return wanted(now);
    });
    return now;
}

void ScreenReader::type(std::initializer_list<const char *> keys) {
    for (const char *key : keys) {
        run("xdotool", {text("key"), text("--clearmodifiers"), text(key)});
        property(m_window, "Name"); // it has been there
        holdsSoon([turns = 0]() mutable { return ++turns > 3; });
    }
}

void ScreenReader::press(const Spoken &control) {
    ask({m_window.service, control.path}, "org.a11y.atspi.Action", "DoAction", {0});
}

bool ScreenReader::hears(const QString &beginning) {
    return holdsSoon([&] {
        return std::any_of(heard.cbegin(), heard.cend(),
                           [&](const QString &each) { return each.startsWith(beginning); });
    });
}

QDBusMessage ScreenReader::ask(const Place &place, const char *interface, const char *method,
                               const QVariantList &arguments) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(place.service, place.path, text(interface), text(method));
    call.setArguments(arguments);
    return bus().call(call, QDBus::Block, 5000);
}

QString ScreenReader::property(const Place &place, const char *name) {
    return ask(place, "org.freedesktop.DBus.Properties", "Get",
               {text("org.a11y.atspi.Accessible"), text(name)})
        .arguments()
        .value(0)
        .value<QDBusVariant>()
        .variant()
        .toString()
        .replace(QChar(0x00A0), u' ')
        .replace(QChar(0x202F), u' '); // all blanks sound alike
}

QList<ScreenReader::Place> ScreenReader::partsOf(const Place &place) {
    const QDBusMessage reply = ask(place, "org.a11y.atspi.Accessible", "GetChildren");
    QList<Place> parts;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return parts;
    }
    const auto list = reply.arguments().first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Place part;
        QDBusObjectPath path;
        list.beginStructure();
        list >> part.service >> path;
        list.endStructure();
        part.path = path.path();
        parts += part;
    }
    list.endArray();
    return parts;
}

Spoken ScreenReader::read(const Place &place) {
    Spoken spoken;
    spoken.path = place.path;
    const auto asked = [&](const char *method) {
        return ask(place, "org.a11y.atspi.Accessible", method).arguments().value(0);
    };
    const auto states = qdbus_cast<QList<uint>>(asked("GetState"));
    spoken.states = states.value(0) | static_cast<quint64>(states.value(1)) << 32;
    if (!spoken.is(Spoken::Visible)) { // a screen reader passes over it and what is in it
        return spoken;
    }
    spoken.role = asked("GetRoleName").toString();
    spoken.name = property(place, "Name");
    spoken.description = property(place, "Description");
    const QStringList interfaces = asked("GetInterfaces").toStringList();
    if (interfaces.contains(text("org.a11y.atspi.Action"))) {
        const QDBusMessage count = ask(place, "org.freedesktop.DBus.Properties", "Get",
                                       {text("org.a11y.atspi.Action"), text("NActions")});
        spoken.acts = count.arguments().value(0).value<QDBusVariant>().variant().toInt() > 0;
    }
    for (const Place &part : partsOf(place)) {
        Spoken inside = read(part);
        if (inside.is(Spoken::Visible)) {
            spoken.parts += inside;
        }
    }
    return spoken;
}

void ScreenReader::run(const char *program, const QStringList &arguments) {
    QProcess process;
    process.setProcessEnvironment(m_program.environment);
    process.start(text(program), arguments);
    if (!process.waitForFinished(20000) || process.exitCode() != 0) {
        fail(text(program) + text(": ") + QString::fromUtf8(process.readAllStandardError()));
    }
}

} // namespace vorle::test
