#include "base/Text.h"
#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/Discovery.h"
#include "search/discovery/LockFile.h"
#include "search/discovery/Toml.h"
#include "tests/fuzz/Require.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <cstdlib>

// Two digits choose the manifest's name and the lock file's; what follows is the one, a record
// separator, the other. Whatever they hold: labels and counts are bounded, dependencies have names
// and one entry each, versions belong to them and are plain words of one line.
namespace {

using namespace vorle;
using fuzz::require;

void write(const QString &path, QByteArrayView bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        std::abort();
    }
    file.write(bytes.data(), bytes.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static constexpr std::array<const char16_t *, 8> manifests{u"package.json",
                                                               u"pyproject.toml",
                                                               u"requirements.txt",
                                                               u"Package.swift",
                                                               u"libs.versions.toml",
                                                               u"build.gradle.kts",
                                                               u"gradle/libs.versions.toml",
                                                               u"app/build.gradle.kts"};
    static constexpr std::array<const char16_t *, 8> locks{
        u"pnpm-lock.yaml",    u"yarn.lock",
        u"package-lock.json", u"uv.lock",
        u"poetry.lock",       u"Package.resolved",
        u"gradle.lockfile",   u"buildscript-gradle.lockfile"};
    static const QTemporaryDir folder;
    if (size < 2) {
        return 0;
    }
    const QByteArrayView bytes(data + 2, static_cast<qsizetype>(size - 2));
    const qsizetype mark = bytes.indexOf('\x1E');
    const QByteArrayView text = bytes.first(mark < 0 ? bytes.size() : mark);
    const discovery::Manifest manifest{QString::fromUtf16(manifests[data[0] % 8]),
                                       QString::fromUtf8(text)};
    const QString lock = folder.filePath(QString::fromUtf16(locks[data[1] % 8]));
    write(lock, bytes.sliced(std::min(text.size() + 1, bytes.size())));
    const QMap<QString, QString> versions = versionsInUse(folder.path(), manifest);
    QFile::remove(lock);

    QSet<QString> names;
    for (const DeclaredDependency &dependency : declaredDependencies(manifest)) {
        require(!dependency.name.isEmpty() && !names.contains(dependency.name), "a name", bytes);
        names.insert(dependency.name);
    }
    for (auto it = versions.cbegin(); it != versions.cend(); ++it) {
        require(names.contains(it.key()), "a version of nothing declared", bytes);
        require(clampedLine(it.key(), 200) == it.key() &&
                    clampedLine(it.value(), 200) == it.value(),
                "no plain word", bytes);
    }
    require(discovery::technologyLabels(manifest.text, manifest.name).size() <= 3, "labels", bytes);
    require(discovery::dependencyCount(manifest.text, manifest.name) >= 0, "a count", bytes);
    for (const toml::Entry &entry : toml::entries(bytes)) {
        toml::string(entry.value);
        toml::strings(entry.value);
        toml::inlineTable(entry.value);
    }
    return 0;
}
