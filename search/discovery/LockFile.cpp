#include "search/discovery/LockFile.h"

#include "base/Json.h"
#include "base/Text.h"
#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/Toml.h"
#include "search/discovery/Version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <vector>

namespace vorle {

namespace {

constexpr qint64 maxLockBytes = 20'000'000;

/// Whether it can be a name or a version at all. A build's may hold anything, line breaks too, and
/// both are shown and put into prompts.
bool isWholeWord(const QString &text) {
    constexpr qsizetype longest = 200;
    return clampedLine(text, longest) == text;
}

/// What a lock file holds of the dependencies asked for, the lowest version of each.
class Locked {
public:
    explicit Locked(const QList<DeclaredDependency> &declared) : m_declared(declared) {
        for (const DeclaredDependency &dependency : declared) {
            m_names.insert(dependency.name);
        }
    }

    const QList<DeclaredDependency> &declared() const { return m_declared; }

    /// Notes a version of the dependency of that name. What is no version, or was not asked for,
    /// is passed over.
    void add(const QString &name, const QString &version) {
        if (!m_names.contains(name)) {
            return;
        }
        const auto parsed = parseVersion(version);
        const QString known = m_versions.value(name);
        if (parsed && (known.isEmpty() || compareVersions(*parsed, *parseVersion(known)) < 0)) {
            m_versions[name] = version;
        }
    }

    QMap<QString, QString> versions() && { return std::move(m_versions); }

private:
    const QList<DeclaredDependency> &m_declared;
    QSet<QString> m_names;
    QMap<QString, QString> m_versions;
};

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

struct NpmPackage {
    std::optional<QString> version;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("version", &NpmPackage::version));
    }
};

struct NpmLock {
    std::optional<QMap<QString, NpmPackage>> packages;     ///< by folder; since version 2
    std::optional<QMap<QString, NpmPackage>> dependencies; ///< by name

    static constexpr auto jsonFields() {
        return std::tuple(json::field("packages", &NpmLock::packages),
                          json::field("dependencies", &NpmLock::dependencies));
    }
};

void readNpm(const QByteArray &bytes, Locked &locked) {
    const auto lock = json::decode<NpmLock>(bytes);
    const bool byFolder = lock.packages.has_value();
    const auto packages =
        byFolder ? *lock.packages : lock.dependencies.value_or(QMap<QString, NpmPackage>());
    const QString prefix = byFolder ? QStringLiteral("node_modules/") : QString();
    for (const DeclaredDependency &dependency : locked.declared()) {
        locked.add(dependency.name,
                   packages.value(prefix + dependency.name).version.value_or(QString()));
    }
}

/// Calls `visit(indent, line)` for each line that is no comment and not empty, without its
/// indentation.
template <class Visit>
void eachLine(const QByteArray &bytes, Visit visit) {
    std::string_view rest(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        line.remove_prefix(indent);
        if (!line.empty() && line.front() != '#') {
            visit(indent, line);
        }
    }
}

std::string_view unquoted(std::string_view text) {
    const bool quoted = text.size() >= 2 && (text.front() == '\'' || text.front() == '"') &&
                        text.back() == text.front();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

/// A line "key: value" of YAML, both without quotes.
std::pair<std::string_view, std::string_view> keyAndValue(std::string_view line) {
    std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos) {
        colon = line.ends_with(':') ? line.size() - 1 : line.size();
    }
    std::string_view value = line.substr(std::min(colon + 1, line.size()));
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    return {unquoted(line.substr(0, colon)), unquoted(value)};
}

/// pnpm names the direct dependencies' versions at the top, or under importers for each package
/// of a workspace, where "." is the folder of the lock file itself. A version may be followed by
/// those of its peers.
void readPnpm(const QByteArray &bytes, Locked &locked) {
    struct Level {
        std::size_t indent;
        std::string_view key;
    };
    std::vector<Level> path;
    eachLine(bytes, [&](std::size_t indent, std::string_view line) {
        while (!path.empty() && path.back().indent >= indent) {
            path.pop_back();
        }
        const auto [key, value] = keyAndValue(line);
        path.push_back({indent, key});
        const bool ofImporter = path.size() > 2 && path[0].key == "importers" && path[1].key == ".";
        const std::size_t section = ofImporter ? 2 : 0;
        const std::size_t depth = path.size() - section;
        const bool direct = path[section].key == "dependencies" ||
                            path[section].key == "devDependencies" ||
                            path[section].key == "optionalDependencies";
        if (direct && !value.empty() && (depth == 2 || (depth == 3 && key == "version"))) {
            locked.add(fromUtf8(path[section + 1].key),
                       fromUtf8(value.substr(0, value.find_first_of("(_"))));
        }
    });
}

/// Yarn names a package by every range that led to it: `"react@^18.0.0", react@^18.2.0:`, or
/// `"react@npm:^18.0.0, react@npm:^18.2.0":` since version 2.
void readYarn(const QByteArray &bytes, Locked &locked) {
    QMap<QString, QString> names; // by what the headers may call them
    for (const DeclaredDependency &dependency : locked.declared()) {
        const QString start = dependency.name + u'@';
        names[start + dependency.requirement] = dependency.name;
        names[start + QStringLiteral("npm:") + dependency.requirement] = dependency.name;
    }
    QStringList current;
    eachLine(bytes, [&](std::size_t indent, std::string_view line) {
        if (indent == 0) {
            current.clear();
            QString header = fromUtf8(line).remove(u'"');
            header.chop(1); // the colon
            const QStringList descriptors = header.split(QStringLiteral(", "));
            for (const QString &descriptor : descriptors) {
                if (const QString name = names.value(descriptor); !name.isEmpty()) {
                    current += name;
                }
            }
        } else if (indent == 2 && !current.isEmpty() && line.starts_with("version")) {
            line.remove_prefix(std::min<std::size_t>(7, line.size()));
            line.remove_prefix(std::min(line.find_first_not_of(": "), line.size()));
            for (const QString &name : std::as_const(current)) {
                locked.add(name, fromUtf8(unquoted(line)));
            }
        }
    });
}

/// How Python's registry compares names: lower case, one "-" for any run of "-", "_" and ".".
QString pythonName(const QString &name) {
    QString plain;
    for (const QChar c : name) {
        const bool dash = c == u'-' || c == u'_' || c == u'.';
        if (!dash || !plain.endsWith(u'-')) {
            plain += dash ? QChar(u'-') : c.toLower();
        }
    }
    return plain;
}

void readPython(const QByteArray &bytes, Locked &locked) {
    QMap<QString, QString> names;
    for (const DeclaredDependency &dependency : locked.declared()) {
        names[pythonName(dependency.name)] = dependency.name;
    }
    int block = 0;
    QString name;
    for (const toml::Entry &entry : toml::entries(bytes)) {
        if (entry.table != u"package") {
            continue;
        }
        if (entry.block != block) {
            block = entry.block;
            name.clear();
        }
        if (entry.key == u"name") {
            name = names.value(pythonName(toml::string(entry.value)));
        } else if (entry.key == u"version" && !name.isEmpty()) {
            locked.add(name, toml::string(entry.value));
        }
    }
}

struct SwiftPin {
    struct State {
        std::optional<QString> version;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("version", &State::version));
        }
    };
    std::optional<QString> location;      ///< since version 2
    std::optional<QString> repositoryURL; ///< version 1
    std::optional<State> state;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("location", &SwiftPin::location),
                          json::field("repositoryURL", &SwiftPin::repositoryURL),
                          json::field("state", &SwiftPin::state));
    }
};

struct SwiftPins {
    std::optional<QList<SwiftPin>> pins;

    static constexpr auto jsonFields() { return std::tuple(json::field("pins", &SwiftPins::pins)); }
};

struct SwiftLock {
    std::optional<QList<SwiftPin>> pins;
    std::optional<SwiftPins> object; ///< version 1

    static constexpr auto jsonFields() {
        return std::tuple(json::field("pins", &SwiftLock::pins),
                          json::field("object", &SwiftLock::object));
    }
};

void readSwift(const QByteArray &bytes, Locked &locked) {
    const auto lock = json::decode<SwiftLock>(bytes);
    QMap<QString, QString> names;
    for (const DeclaredDependency &dependency : locked.declared()) {
        names[dependency.name.toLower()] = dependency.name;
    }
    const auto inner = lock.object ? lock.object->pins : std::nullopt;
    const auto pins = (lock.pins ? lock.pins : inner).value_or(QList<SwiftPin>());
    for (const SwiftPin &pin : pins) {
        const QString address = pin.location.value_or(pin.repositoryURL.value_or(QString()));
        QString name = address.section(u'/', -1, -1, QString::SectionSkipEmpty);
        if (name.endsWith(u".git")) {
            name.chop(4);
        }
        if (pin.state) {
            locked.add(names.value(name.toLower()), pin.state->version.value_or(QString()));
        }
    }
}

/// Lines "group:artifact:version=configurations". A plugin's artifact bears its id twice.
void readGradle(const QByteArray &bytes, Locked &locked) {
    QMap<QString, QString> names;
    for (const DeclaredDependency &dependency : locked.declared()) {
        const QString &name = dependency.name;
        names[name.contains(u':') ? name : name + u':' + name + QStringLiteral(".gradle.plugin")] =
            name;
    }
    eachLine(bytes, [&](std::size_t, std::string_view line) {
        const QString coordinate = fromUtf8(line.substr(0, line.find('=')));
        const QString name = names.value(coordinate.section(u':', 0, 1));
        if (!name.isEmpty()) {
            locked.add(name, coordinate.section(u':', 2));
        }
    });
}

/// The bytes of a lock file; nothing for one that is missing, too large or no regular file.
std::optional<QByteArray> readLock(const QString &path) {
    QFile file(path);
    // A pipe or a device under that name must not hold the program up.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(maxLockBytes + 1);
    return bytes.size() > maxLockBytes ? std::nullopt : std::optional(std::move(bytes));
}

struct LockForm {
    QStringView manifest; ///< the file's own name
    QStringView lock;     ///< relative to the project's folder
    void (*read)(const QByteArray &bytes, Locked &locked);
};

// Of several for one manifest the first that is there counts, but for Gradle's, which go together.
// A project that left npm often keeps its old lock file: npm's comes last.
constexpr LockForm lockForms[] = {
    {u"package.json", u"pnpm-lock.yaml", readPnpm},
    {u"package.json", u"yarn.lock", readYarn},
    {u"package.json", u"package-lock.json", readNpm},
    {u"pyproject.toml", u"uv.lock", readPython},
    {u"pyproject.toml", u"poetry.lock", readPython},
    {u"Package.swift", u"Package.resolved", readSwift},
    {u"libs.versions.toml", u"gradle.lockfile", readGradle},
    {u"libs.versions.toml", u"app/gradle.lockfile", readGradle},
    {u"libs.versions.toml", u"buildscript-gradle.lockfile", readGradle},
    {u"build.gradle.kts", u"gradle.lockfile", readGradle},
    {u"build.gradle.kts", u"buildscript-gradle.lockfile", readGradle},
};

QMap<QString, QString> lockedVersions(const QString &folder, const discovery::Manifest &manifest,
                                      const QList<DeclaredDependency> &declared) {
    const QString name = manifest.name.sliced(manifest.name.lastIndexOf(u'/') + 1);
    // A catalogue stands in "gradle/" for the whole project; a module has its lock file beside it.
    const bool inModule = name == u"build.gradle.kts" && manifest.name != name;
    const QDir directory(inModule ? QFileInfo(QDir(folder).filePath(manifest.name)).path()
                                  : folder);
    Locked locked(declared);
    for (const LockForm &form : lockForms) {
        const auto bytes = name == form.manifest
                               ? readLock(directory.filePath(form.lock.toString()))
                               : std::nullopt;
        if (!bytes) {
            continue;
        }
        try {
            form.read(*bytes, locked);
        } catch (const json::DecodeError &) {
            return {}; // malformed: the manifest alone speaks
        }
        if (form.read != readGradle) {
            break;
        }
    }
    return std::move(locked).versions();
}

} // namespace

QMap<QString, QString> versionsInUse(const QString &folder, const discovery::Manifest &manifest) {
    const QList<DeclaredDependency> declared = declaredDependencies(manifest);
    if (declared.isEmpty()) {
        return {};
    }
    QMap<QString, QString> versions = lockedVersions(folder, manifest, declared);
    for (const DeclaredDependency &dependency : declared) {
        if (!dependency.version.isEmpty() && !versions.contains(dependency.name)) {
            versions[dependency.name] = dependency.version;
        }
    }
    versions.removeIf([](const QMap<QString, QString>::iterator &entry) {
        return !isWholeWord(entry.key()) || !isWholeWord(entry.value());
    });
    return versions;
}

} // namespace vorle
