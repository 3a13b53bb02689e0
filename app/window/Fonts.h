#pragma once

#include <QString>

namespace vorle {

/// The families the screens are set in. Needs a QGuiApplication.
struct Typefaces {
    QString display; ///< titles, digits and section names
    QString text;    ///< the rest

    /// Bricolage Grotesque from the program's own resources where they hold it, else the system's
    /// sans; for the rest the system's face, or on Linux Inter where it is installed, which the
    /// application's own font is from then on.
    static Typefaces load();

    /// Has the system's fonts listed, which `load` and the first text would wait for. Any thread,
    /// while there is an application.
    static void list();
};

} // namespace vorle
