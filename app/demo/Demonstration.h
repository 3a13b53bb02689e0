#pragma once

#include "app/demo/DemoSite.h"
#include "base/Descriptor.h"

#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace vorle {

class Preferences;

/// All that lets a run work on a bare machine: a temporary folder with a home of its own where a
/// demonstration agent stands for the real ones, and two example projects; and a site on this
/// machine that serves the pages the agent finds. Nothing of the user's is read or written. Made
/// under --demo and nowhere else. The folder goes with the object. Main thread only.
class Demonstration {
public:
    /// @throws std::runtime_error (French) when the demonstration agent does not stand beside the
    ///   program, when a folder or a file cannot be made or when no port can be opened
    static std::unique_ptr<Demonstration> start();

    /// The home directory the agents are looked for in; the demonstration's settings belong there.
    QString home() const { return m_folder.filePath(QStringLiteral("home")); }
    const DemoSite &site() const { return *m_site; }

    /// The variables to set, in the program's own environment, before any agent is looked for:
    /// VORLE_HOME, VORLE_DEMO_SITE and VORLE_PICTURES, a picture cache of its own.
    QMap<QString, QString> environment() const;

    /// Fills a demonstration territory into `preferences`, which must be a demonstration's own.
    void populate(Preferences &preferences) const;

private:
    Demonstration();

    QString pictures() const { return m_folder.filePath(QStringLiteral("images")); }
    QString projectFolder(const QString &name) const;
    void makeHome() const;
    void makeProjects() const;
    /// Those that the topics of its past have (see DemoPast).
    void makePictures() const;

    QTemporaryDir m_folder;
    std::optional<Descriptor> m_use; ///< of the folder
    std::unique_ptr<DemoSite> m_site;
};

} // namespace vorle
