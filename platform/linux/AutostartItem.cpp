#include "platform/linux/AutostartItem.h"

#include "base/French.h"
#include "base/InstalledProgram.h"
#include "base/SystemErrorText.h"
#include "platform/DesktopExec.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>

namespace vorle {

namespace {

constexpr qint64 maxAutostartBytes = 64 * 1024;

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

/// Why the last call to the system failed.
QString refusal() { return systemErrorText(std::error_code(errno, std::generic_category())); }

} // namespace

AutostartItem::Setting AutostartItem::Setting::ofThisProcess() {
    // From an AppImage the program's own path is gone with the process.
    const QString image = qEnvironmentVariable("APPIMAGE");
    return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                QStringLiteral("/autostart"),
            {image.startsWith(u'/') ? image : programToStart(),
             QStringLiteral("--hidden")}};
}

LoginItem::State AutostartItem::state() const {
    QFile file(this->file());
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        return State::Off;
    }
    const QByteArray entry = file.read(maxAutostartBytes);
    const bool hidden = valueOf(entry, "Hidden").value_or("false") == "true" ||
                        valueOf(entry, "X-GNOME-Autostart-enabled").value_or("true") == "false";
    return hidden || !valueOf(entry, "Exec") ? State::Off : State::On;
}

std::optional<QString> AutostartItem::set(bool on) {
    const QString path = file();
    if (!on) {
        QFile entry(path);
        const bool there = QFileInfo(path).isSymLink() || entry.exists();
        return !there || entry.remove() ? std::nullopt : std::optional(refusal());
    }
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
    const QByteArray bytes = words.toUtf8();
    QFile present(path);
    if (present.open(QIODevice::ReadOnly) && present.read(maxAutostartBytes) == bytes) {
        return std::nullopt;
    }
    present.close();
    if (!QDir().mkpath(m_setting.folder)) {
        return refusal();
    }
    QSaveFile entry(path);
    if (!entry.open(QIODevice::WriteOnly) || entry.write(bytes) != bytes.size() ||
        !entry.commit()) {
        return refusal();
    }
    return std::nullopt;
}

} // namespace vorle
