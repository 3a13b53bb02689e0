#pragma once

#include "app/window/Shell.h"

namespace vorle {

class Application;

/// What the shell asks of the system.
struct ShellAdapters {
    LinkOpener &links;
    Pasteboard &pasteboard;
    ClaudeLauncher &launcher;
    FilePicker &files;
    FileReveal &reveal;
    Notifier &notifier;
    LoginItem &login;
    HotKey &hotKey;
    KeyWatch &keys;
    MailComposer &mail;
    Updater &updater;
    FrontBrowser *browser = nullptr; ///< null where the system tells nothing of what is in front
    QString version = {};            ///< the program's, as the system has it; "" where it has none
};

/// What the shell is made of, out of the application's objects and of what the system gives; all of
/// it outlives the shell.
Shell::Parts shellParts(Application &app, const ShellAdapters &adapters);

} // namespace vorle
