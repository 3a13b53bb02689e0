#pragma once

#include "search/discovery/Discovery.h"

#include <QMap>
#include <QString>

namespace vorle {

/// The versions a project really uses of the dependencies its manifest names, by the name the
/// manifest gives them ("@tanstack/react-query", "Django", "swift-nio", "io.ktor:ktor-client-core",
/// the id of a Gradle plugin).
///
/// Each comes from the lock file beside the manifest (package-lock.json, pnpm-lock.yaml, yarn.lock,
/// poetry.lock, uv.lock, Package.resolved, gradle.lockfile, buildscript-gradle.lockfile), else from
/// the manifest: the version it names, or the lowest its range names. Where a lock file holds
/// several versions of one package, the lowest counts: a release must not be taken for one that is
/// already everywhere. A dependency without a version number (a folder, a branch, "latest"), or
/// whose name or version is not one line of at most 200 characters, is left out, and so is what
/// only other dependencies need.
///
/// Never throws: a lock file that is missing, malformed, past 20,000,000 bytes or no regular file
/// gives nothing, and the manifest alone speaks. Any thread; reads up to 20 MB, so that it belongs
/// on the thread pool.
QMap<QString, QString> versionsInUse(const QString &folder, const discovery::Manifest &manifest);

} // namespace vorle
