#include "search/discovery/Discovery.h"

#include "base/French.h"
#include "base/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

#include <array>

namespace vorle::discovery {

namespace {

constexpr qint64 maxManifestBytes = 2'000'000;

constexpr std::array<QStringView, 8> manifestNames{
    u"package.json",
    u"pyproject.toml",
    u"requirements.txt",
    u"Package.swift",
    u"gradle/libs.versions.toml",
    u"libs.versions.toml",
    u"app/build.gradle.kts",
    u"build.gradle.kts",
};

struct LabelRule {
    QStringView needle; ///< looked for in the lower-cased manifest
    QStringView label;
};

// The quotation marks of three needles are meant: they match a key of a package.json, not any
// occurrence of a common word.
constexpr std::array<LabelRule, 16> labelRules{{
    {u"kotlin", u"Kotlin"},
    {u"compose", u"Compose"},
    {u"firebase", u"Firebase"},
    {u"\"expo\"", u"Expo"},
    {u"react-native", u"React Native"},
    {u"\"next\"", u"Next.js"},
    {u"\"react\"", u"React"},
    {u"typescript", u"TypeScript"},
    {u"swiftui", u"SwiftUI"},
    {u"bpy", u"Blender"},
    {u"blender", u"Blender"},
    {u"mcp", u"MCP"},
    {u"django", u"Django"},
    {u"fastapi", u"FastAPI"},
    {u"supabase", u"Supabase"},
    {u"remotion", u"Remotion"},
}};

QString baseName(const QString &fileName) {
    return fileName.sliced(fileName.lastIndexOf(u'/') + 1);
}

int countVersionCatalogue(const QString &text) {
    int count = 0;
    bool counting = false;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        if (line.startsWith(u'[')) {
            counting = line.startsWith(u"[libraries]") || line.startsWith(u"[plugins]");
        } else if (counting && line.contains(u'=')) {
            ++count;
        }
    }
    return count;
}

int countPackageJson(const QString &text) {
    const QJsonObject root = QJsonDocument::fromJson(text.toUtf8()).object();
    return static_cast<int>(root.value(u"dependencies").toObject().size() +
                            root.value(u"devDependencies").toObject().size());
}

int countLines(const QString &text) {
    int count = 0;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        const QStringView bare = trimmed(line);
        if (!bare.isEmpty() && !bare.startsWith(u'#')) {
            ++count;
        }
    }
    return count;
}

/// The file as text: a byte-order mark dropped, nothing when it is no UTF-8 or holds NUL bytes.
std::optional<QString> readText(const QString &path) {
    QFile file(path);
    // A pipe or a device under that name must not hold the program up.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.read(maxManifestBytes + 1);
    if (bytes.size() > maxManifestBytes || bytes.contains('\0')) {
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

bool isMalformed(const Manifest &manifest) {
    return baseName(manifest.name) == u"package.json" &&
           !QJsonDocument::fromJson(manifest.text.toUtf8()).isObject();
}

} // namespace

QStringList technologyLabels(const QString &manifestText, const QString &fileName) {
    const QString lower = manifestText.toLower();
    QStringList labels;
    if (fileName == u"pyproject.toml" || fileName == u"requirements.txt") {
        labels += QStringLiteral("Python");
    } else if (fileName == u"Package.swift") {
        labels += QStringLiteral("Swift");
    }
    for (const auto &[needle, label] : labelRules) {
        if (lower.contains(needle)) {
            labels += label.toString();
        }
    }
    labels.removeDuplicates();
    return labels.first(std::min<qsizetype>(3, labels.size()));
}

int dependencyCount(const QString &manifestText, const QString &fileName) {
    if (fileName.endsWith(u"libs.versions.toml")) {
        return countVersionCatalogue(manifestText);
    }
    if (fileName == u"package.json") {
        return countPackageJson(manifestText);
    }
    return countLines(manifestText);
}

QString manifestIn(const QString &folder) {
    const QDir directory(folder);
    const auto found = std::find_if(manifestNames.begin(), manifestNames.end(), [&](auto name) {
        return QFileInfo::exists(directory.filePath(name.toString()));
    });
    return found == manifestNames.end() ? QString() : found->toString();
}

Project readProject(const QString &folder) {
    Project project;
    project.folder = folder;
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        project.problem = Project::Problem::NoFolder;
        return project;
    }
    const QString name = manifestIn(folder);
    if (name.isEmpty()) {
        project.problem = Project::Problem::NoManifest;
        return project;
    }
    auto text = readText(QDir(folder).filePath(name));
    if (!text) {
        project.problem = Project::Problem::UnreadableManifest;
        return project;
    }
    project.manifest = Manifest{name, *std::move(text)};
    if (isMalformed(*project.manifest)) {
        project.problem = Project::Problem::MalformedManifest;
        return project;
    }
    project.labels = technologyLabels(project.manifest->text, name);
    project.dependencies = dependencyCount(project.manifest->text, name);
    return project;
}

QString problemText(const Project &project) {
    switch (project.problem) {
    case Project::Problem::None:
        break;
    case Project::Problem::NoFolder:
        return French::tr("Le dossier « %1 » est introuvable.").arg(project.folder);
    case Project::Problem::NoAnswer:
        return French::tr("Le dossier « %1 » ne répond pas.").arg(project.folder);
    case Project::Problem::NoManifest:
        return French::tr("Aucun fichier de dépendances reconnu dans « %1 ».").arg(project.folder);
    case Project::Problem::UnreadableManifest:
        return French::tr("Le fichier de dépendances de « %1 » est illisible.").arg(project.folder);
    case Project::Problem::MalformedManifest:
        return French::tr("Le fichier %1 de « %2 » est mal formé.")
            .arg(project.manifest ? project.manifest->name : QString(), project.folder);
    }
    return {};
}

} // namespace vorle::discovery
