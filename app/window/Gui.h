#pragma once

#include "update/UpdateConfig.h"

#include <QString>

#include <functional>
#include <memory>

namespace vorle {

class DockPresence;
class DropSignal;
class FilePicker;
class FileReveal;
class FrontBrowser;
class GlobalHotKey;
class InstalledApps;
class KeyWatch;
class LinkOpener;
class LoginItem;
class MailComposer;
class MotionSetting;
class Notifications;
class Pasteboard;
class SharedContainer;
class SignatureCheck;
class Terminals;
class UpdateEngine;
class WidgetTimelines;

/// What the app asks of the system it runs on.
struct GuiAdapters {
    const InstalledApps &installedApps;
    const Terminals &terminals;
    Pasteboard &pasteboard;
    LinkOpener &links;
    FilePicker &files;
    FileReveal &reveal;
    const SharedContainer *container; ///< null where the system has none
    DropSignal *drops;                ///< null where the drop folder alone tells
    FrontBrowser *browser;            ///< null where the system tells nothing of what is in front
    const SignatureCheck *signatures; ///< null where the system has no such check
    WidgetTimelines &widgets;
    DockPresence &dock;
    // Made once the program has a QApplication: a bus or a window system may only be asked then.
    std::function<std::unique_ptr<MotionSetting>()> motion;
    std::function<std::unique_ptr<Notifications>()> notifications;
    std::function<std::unique_ptr<LoginItem>()> login;
    std::function<std::unique_ptr<GlobalHotKey>()> hotKey;
    std::function<std::unique_ptr<KeyWatch>()> keys;
    std::function<std::unique_ptr<MailComposer>()> mail;
    QString version;      ///< the program's, as the system has it; "" where it has none
    UpdateConfig updates; ///< for where the system has nothing to update programs by
    std::function<std::unique_ptr<UpdateEngine>()> updateEngine; ///< gives null there
};

/// How the app is opened.
enum class Entrance {
    Window,       ///< on the user's topics
    Hidden,       ///< the same, in the menu bar alone, where there is one
    Demonstration ///< on demonstration topics, with the demonstration's agent, pages and territory
};

/// Opens the app: the main window, the menu-bar item, the panel under the notch. One process a
/// topics file: a second start raises the first and ends. Gives the exit status; what went wrong is
/// told on standard error.
int runGui(int &argc, char **argv, const GuiAdapters &adapters, Entrance entrance);

} // namespace vorle
