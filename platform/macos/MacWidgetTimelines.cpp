#include "platform/macos/MacWidgetTimelines.h"

#include <QCoreApplication>
#include <QFile>

#include <dlfcn.h>

#include <utility>

namespace vorle {

void MacWidgetTimelines::reload() {
    if (!std::exchange(m_looked, true)) {
        const QString library =
            QCoreApplication::applicationDirPath() + QStringLiteral("/libvorle-widgets.dylib");
        // It stays loaded as long as the program runs.
        if (void *loaded = ::dlopen(QFile::encodeName(library).constData(), RTLD_LAZY)) {
            m_reload = reinterpret_cast<void (*)()>(::dlsym(loaded, "vorle_reload_widgets"));
        }
    }
    if (m_reload != nullptr) {
        m_reload();
    }
}

} // namespace vorle
