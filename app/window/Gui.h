#pragma once

#include <functional>
#include <memory>

namespace vorle {

class FilePicker;
class FileReveal;
class InstalledApps;
class LinkOpener;
class MotionSetting;
class Pasteboard;
class Terminals;

/// What the app asks of the system it runs on.
struct GuiAdapters {
    const InstalledApps &installedApps;
    const Terminals &terminals;
    Pasteboard &pasteboard;
    LinkOpener &links;
    FilePicker &files;
    FileReveal &reveal;
    /// Made once the program has a QApplication: a bus may only be asked then.
    std::function<std::unique_ptr<MotionSetting>()> motion;
};

/// Opens the app: the main window, the menu-bar item, the panel under the notch. One process a
/// topics file: a second start raises the first and ends. Gives the exit status; what went wrong is
/// told on standard error.
///
/// @param demo  on demonstration topics, with the demonstration's agent, pages and territory
int runGui(int &argc, char **argv, const GuiAdapters &adapters, bool demo);

} // namespace vorle
