#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// What is read in a person's files so that the territory keeps itself current.
namespace discovery {

/// A dependency file found in a project's folder.
struct Manifest {
    QString name; ///< as it lies in the folder: "package.json", "gradle/libs.versions.toml"
    QString text;
};

/// One watched folder and what was found there.
struct Project {
    enum class Problem {
        None,
        NoFolder,           ///< the folder is gone, or is no folder
        NoAnswer,           ///< its disk does not answer: see askProjects()
        NoManifest,         ///< it holds no dependency file known here
        UnreadableManifest, ///< it holds one that cannot be read, is binary, or past 2,000,000
                            ///< bytes
        MalformedManifest   ///< it is there, and its text is not what its name promises
    };

    QString folder;
    std::optional<Manifest> manifest; ///< absent unless that is None or MalformedManifest
    QStringList labels;               ///< at most 3 technology labels
    int dependencies = 0;
    Problem problem = Problem::None;

    /// It has a folder, and that is there and answers. One that was added by its description alone
    /// never had one.
    bool hasFolder() const { return problem != Problem::NoFolder && problem != Problem::NoAnswer; }
};

/// Reads one project folder. The first of these that exists wins: package.json, pyproject.toml,
/// requirements.txt, Package.swift, gradle/libs.versions.toml, libs.versions.toml,
/// app/build.gradle.kts, build.gradle.kts. Never throws.
Project readProject(const QString &folder);

/// The name of the dependency file that readProject() would read in that folder; "" where there
/// is none.
QString manifestIn(const QString &folder);

/// Technology labels of a manifest, at most 3, in the order of the table they come from.
QStringList technologyLabels(const QString &manifestText, const QString &fileName);

/// How many dependencies a manifest names; 0 for a package.json that is not a JSON object.
int dependencyCount(const QString &manifestText, const QString &fileName);

/// The French sentence that tells the user about the problem; empty for none.
QString problemText(const Project &project);

} // namespace discovery
} // namespace vorle
