#include "platform/linux/AutostartItem.h"

#include "base/Descriptor.h"
#include "base/French.h"
#include "base/InstalledProgram.h"
#include "base/OnDisk.h"
#include "base/SystemErrorText.h"
#include "platform/DesktopExec.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace vorle {

namespace {

using State = LoginItem::State;

constexpr qint64 maxAutostartBytes = 64 * 1024;

/// The beginning of an ordinary file; nothing where it is none. A pipe that nobody writes to would
/// hold the reader up for ever.
std::optional<QByteArray> beginningOf(const QString &path) {
    const Descriptor opened(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    QFile file;
    if (!file.open(opened.number(), QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.read(maxAutostartBytes);
}

/// What the key of the entry's main group says, without its escapes; nothing when it is not there.
std::optional<QByteArray> valueOf(const QByteArray &entry, QByteArrayView key) {
    bool inside = false;
    for (const QByteArray &raw : entry.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            inside = line == "[Desktop Entry]";
        } else if (const qsizetype equals = line.indexOf('=');
                   inside && equals > 0 && line.first(equals).trimmed() == key) {
            return line.sliced(equals + 1).trimmed();
        }
    }
    return std::nullopt;
}

/// Whether there is such a program: a path, or a name on the search path.
bool isProgram(const QString &program) {
    if (program.contains(u'/')) {
        const QFileInfo file(program);
        return file.isFile() && file.isExecutable();
    }
    return !program.isEmpty() && !QStandardPaths::findExecutable(program).isEmpty();
}

/// Whether desktops find what the entry starts. Where a shell stands between, as in an entry of
/// ours for a path that none can hold, it is the program behind that.
bool leadsSomewhere(const QByteArray &entry) {
    const auto tried = valueOf(entry, "TryExec");
    if (tried && !isProgram(desktopText(QString::fromUtf8(*tried)))) {
        return false;
    }
    const QStringList words =
        desktopExecWords(QString::fromUtf8(valueOf(entry, "Exec").value_or(QByteArray())));
    const QStringList ours = desktopExecWords(desktopExec({QStringLiteral("a=b")})).first(3);
    return isProgram(words.value(0)) &&
           (words.first(std::min<qsizetype>(3, words.size())) != ours || isProgram(words.value(3)));
}

/// Any thread.
State stateIn(const QString &path) {
    const auto entry = beginningOf(path);
    if (!entry) {
        return State::Off;
    }
    const bool hidden = valueOf(*entry, "Hidden").value_or("false") == "true" ||
                        valueOf(*entry, "X-GNOME-Autostart-enabled").value_or("true") == "false";
    if (hidden || !valueOf(*entry, "Exec")) {
        return State::Off;
    }
    return leadsSomewhere(*entry) ? State::On : State::Astray;
}

/// Why the last call to the system failed.
QString refusal() { return systemErrorText(std::error_code(errno, std::generic_category())); }

std::optional<QString> removed(const QString &path) {
    QFile entry(path);
    const bool there = QFileInfo(path).isSymLink() || entry.exists();
    return !there || entry.remove() ? std::nullopt : std::optional(refusal());
}

std::optional<QString> written(const QString &path, const QByteArray &bytes) {
    if (beginningOf(path) == bytes) {
        return std::nullopt;
    }
    const QFileInfo present(path);
    if (present.exists() && !present.isFile() && !present.isDir()) {
        QFile::remove(path); // a pipe would take the words, and keep nothing
    }
    if (!QDir().mkpath(present.path())) {
        return refusal();
    }
    QSaveFile entry(path);
    if (!entry.open(QIODevice::WriteOnly) || entry.write(bytes) != bytes.size() ||
        !entry.commit()) {
        return refusal();
    }
    return std::nullopt;
}

} // namespace

AutostartItem::Setting AutostartItem::Setting::ofThisProcess() {
    // From an AppImage the program's own path is gone with the process.
    const QString image = qEnvironmentVariable("APPIMAGE");
    return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                QStringLiteral("/autostart"),
            {image.startsWith(u'/') ? image : programToStart(), QStringLiteral("--hidden")}};
}

Task<State> AutostartItem::state() {
    const auto state = co_await onDisk([path = file()] { return stateIn(path); });
    co_return state.value_or(State::Off); // a disk that does not answer opens nothing either
}

QString AutostartItem::remedy(State state) const {
    return state == State::Astray
               ? French::tr("La session ouvrirait un vorle qui n’est plus là. Rallume "
                            "l’interrupteur, et elle ouvrira celui-ci.")
               : QString();
}

Task<std::optional<QString>> AutostartItem::set(bool on) {
    const QString words =
        QStringLiteral("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=vorle\n"
                       "Comment=%1\n"
                       "Exec=%2\n"
                       "Terminal=false\n"
                       "StartupNotify=false\n"
                       "X-GNOME-Autostart-enabled=true\n")
            .arg(desktopValue(French::tr("Ta veille technique")), desktopExec(m_setting.command));
    const auto refused = co_await onDisk([on, path = file(), bytes = words.toUtf8()] {
        return on ? written(path, bytes) : removed(path);
    });
    co_return refused ? *refused : std::optional(French::tr("le disque ne répond pas"));
}

} // namespace vorle
