#pragma once

#include "search/discovery/Discovery.h"

#include <QList>
#include <QString>

namespace vorle {

/// A direct dependency as its manifest declares it.
struct DeclaredDependency {
    QString name;        ///< as the manifest writes it, or what its address ends in
    QString requirement; ///< as the manifest writes it: "^1.2.3", ">=4.2,<5"; empty for none
    QString version;     ///< the exact version, or the lowest the requirement names; or empty

    bool operator==(const DeclaredDependency &) const = default;
};

/// The direct dependencies of a manifest, in its order, one entry a name. Understands
/// package.json, pyproject.toml (standard tables, groups and Poetry's), requirements.txt,
/// Package.swift, libs.versions.toml (its version references resolved) and build.gradle.kts.
/// Empty for a malformed or unknown one. Pure, any thread; time linear in the text.
QList<DeclaredDependency> declaredDependencies(const discovery::Manifest &manifest);

/// The lowest version a requirement names, without its operators: "1.2.3" for "^1.2.3",
/// ">=1.2.3 <2" or "1.x || 1.2.3"; upper bounds and exclusions name none. Empty when there is none.
QString lowestVersion(const QString &requirement);

} // namespace vorle
