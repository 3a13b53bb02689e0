#include "search/discovery/DeclaredVersions.h"

#include "base/Text.h"
#include "search/discovery/Toml.h"
#include "search/discovery/Version.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace vorle {

namespace {

/// Gathers dependencies, the first of each name.
class Dependencies {
public:
    void add(const QString &name, const QString &requirement) {
        if (!name.isEmpty() && !m_names.contains(name)) {
            m_names.insert(name);
            m_found += {name, requirement, lowestVersion(requirement)};
        }
    }

    const QList<DeclaredDependency> &found() const { return m_found; }

private:
    QSet<QString> m_names;
    QList<DeclaredDependency> m_found;
};

/// The lines of a text that are no whole-line comment, continued lines joined.
QStringList codeLines(const QString &text, QStringView comment) {
    QStringList lines;
    QString joined = text;
    joined.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    joined.replace(QStringLiteral("\\\n"), QStringLiteral(" "));
    for (const QStringView line : QStringView(joined).split(u'\n')) {
        const QStringView bare = trimmed(line);
        if (!bare.isEmpty() && !bare.startsWith(comment)) {
            lines += bare.toString();
        }
    }
    return lines;
}

Dependencies ofPackageJson(const QString &text) {
    const QJsonObject root = QJsonDocument::fromJson(text.toUtf8()).object();
    Dependencies found;
    for (const char *member :
         {"dependencies", "devDependencies", "optionalDependencies", "peerDependencies"}) {
        const QJsonObject object = root.value(QLatin1StringView(member)).toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            found.add(it.key(), it.value().toString());
        }
    }
    return found;
}

/// One requirement as Python writes it: "Django[argon2]>=4.2,<5 ; python_version > '3.8'".
void addPython(Dependencies &found, const QString &line) {
    static const QRegularExpression form(QStringLiteral(
        R"(^([A-Za-z0-9][A-Za-z0-9._-]*+)(?=[\s\[(<>=!~;@#]|$)\s*(?:\[[^\]]*\])?\s*\(?([^;@)#]*))"));
    const auto match = form.match(line);
    if (match.hasMatch()) {
        const QString requirement = match.captured(2).section(QStringLiteral(" --"), 0, 0);
        found.add(match.captured(1), requirement.trimmed());
    }
}

Dependencies ofRequirements(const QString &text) {
    Dependencies found;
    for (const QString &line : codeLines(text, u"#")) {
        addPython(found, line); // an option ("-r base.txt") begins with no letter
    }
    return found;
}

/// What an inline table or a plain string gives as a version.
QString tomlRequirement(const QByteArray &value) {
    for (const toml::Entry &entry : toml::inlineTable(value)) {
        if (entry.key == u"version") {
            return toml::string(entry.value);
        }
    }
    return toml::string(value);
}

Dependencies ofPyproject(const QString &text) {
    Dependencies found;
    for (const toml::Entry &entry : toml::entries(text.toUtf8())) {
        const bool standard =
            (entry.table == u"project" &&
             (entry.key == u"dependencies" || entry.key.startsWith(u"optional-dependencies."))) ||
            entry.table == u"project.optional-dependencies" ||
            entry.table == u"dependency-groups" ||
            (entry.table == u"tool.uv" && entry.key == u"dev-dependencies");
        const bool poetry = entry.table == u"tool.poetry.dependencies" ||
                            entry.table == u"tool.poetry.dev-dependencies" ||
                            (entry.table.startsWith(u"tool.poetry.group.") &&
                             entry.table.endsWith(u".dependencies"));
        if (standard) {
            for (const QString &requirement : toml::strings(entry.value)) {
                addPython(found, requirement);
            }
        } else if (poetry && entry.key != u"python") {
            found.add(entry.key, tomlRequirement(entry.value));
        }
    }
    return found;
}

Dependencies ofPackageSwift(const QString &text) {
    static const QRegularExpression address(QStringLiteral(R"RE(\burl:\s*"([^"]+)")RE"));
    static const QRegularExpression version(
        QStringLiteral(R"RE((?:\b(?:from|exact):|\.exact\()\s*"([^"]+)"|"([^"]+)"\s*\.\.[.<])RE"));
    const QString code = codeLines(text, u"//").join(u'\n');
    Dependencies found;
    const QStringList packages = code.split(QStringLiteral(".package("));
    for (const QString &package : packages.sliced(1)) {
        const auto url = address.match(package);
        if (!url.hasMatch()) {
            continue;
        }
        QString name = url.captured(1).section(u'/', -1, -1, QString::SectionSkipEmpty);
        if (name.endsWith(u".git")) {
            name.chop(4);
        }
        const auto named = version.match(package);
        found.add(name, named.captured(1) + named.captured(2));
    }
    return found;
}

/// The requirement in a version catalogue's entry, its reference resolved.
QString catalogueRequirement(const QList<toml::Entry> &table,
                             const QMap<QString, QString> &versions) {
    for (const toml::Entry &entry : table) {
        if (entry.key == u"version.ref") {
            return versions.value(toml::string(entry.value));
        }
        if (entry.key == u"version") {
            for (const toml::Entry &rich : toml::inlineTable(entry.value)) {
                if (rich.key == u"ref") {
                    return versions.value(toml::string(rich.value));
                }
            }
            const QStringList named = toml::strings(entry.value);
            return named.isEmpty() ? QString() : named.first();
        }
    }
    return {};
}

Dependencies ofCatalogue(const QString &text) {
    const QList<toml::Entry> entries = toml::entries(text.toUtf8());
    QMap<QString, QString> versions;
    for (const toml::Entry &entry : entries) {
        if (entry.table == u"versions") {
            versions[entry.key] = toml::strings(entry.value).value(0);
        }
    }
    Dependencies found;
    for (const toml::Entry &entry : entries) {
        if (entry.table != u"libraries" && entry.table != u"plugins") {
            continue;
        }
        const QList<toml::Entry> table = toml::inlineTable(entry.value);
        QMap<QString, QString> parts;
        for (const toml::Entry &part : table) {
            parts[part.key] = toml::string(part.value);
        }
        QString name = parts.value(QStringLiteral("module"), parts.value(QStringLiteral("id")));
        if (name.isEmpty() && parts.contains(QStringLiteral("group"))) {
            name = parts[QStringLiteral("group")] + u':' + parts[QStringLiteral("name")];
        }
        QString requirement = catalogueRequirement(table, versions);
        if (const QString whole = toml::string(entry.value); !whole.isEmpty()) {
            name = whole.section(u':', 0, -2);
            requirement = whole.section(u':', -1);
        }
        found.add(name, requirement);
    }
    return found;
}

Dependencies ofGradle(const QString &text) {
    static const QRegularExpression form(QStringLiteral(
        R"RE("([\w.\-]+:[\w.\-]+)(?::([^"@:]+))?[^"]*"|\b(id|kotlin)\("([\w.\-]+)"\)\s*version\s*\(?"([^"]+)")RE"));
    const QString code = codeLines(text, u"//").join(u'\n');
    Dependencies found;
    for (auto matches = form.globalMatch(code); matches.hasNext();) {
        const auto match = matches.next();
        if (match.hasCaptured(1)) {
            found.add(match.captured(1), match.captured(2));
        } else if (match.captured(3) == u"id") {
            found.add(match.captured(4), match.captured(5));
        } else { // the short form of that plugin family
            found.add(QStringLiteral("org.jetbrains.kotlin.") + match.captured(4),
                      match.captured(5));
        }
    }
    return found;
}

} // namespace

QList<DeclaredDependency> declaredDependencies(const discovery::Manifest &manifest) {
    const QString name = manifest.name.sliced(manifest.name.lastIndexOf(u'/') + 1);
    const std::pair<QStringView, Dependencies (*)(const QString &)> readers[] = {
        {u"package.json", ofPackageJson},      {u"pyproject.toml", ofPyproject},
        {u"requirements.txt", ofRequirements}, {u"Package.swift", ofPackageSwift},
        {u"libs.versions.toml", ofCatalogue},  {u"build.gradle.kts", ofGradle},
    };
    for (const auto &[known, read] : readers) {
        if (name == known) {
            return read(manifest.text).found();
        }
    }
    return {};
}

QString lowestVersion(const QString &requirement) {
    QString text = requirement;
    if (text.startsWith(u"npm:")) {
        text = text.sliced(text.lastIndexOf(u'@') + 1);
    }
    if (text.contains(u':') || text.contains(u'/')) {
        return {}; // a folder, an address, a workspace
    }
    if (text.startsWith(u'[') || text.startsWith(u'(') || text.startsWith(u']')) {
        text = text.section(u',', 0, 0); // an interval: its lower end
    }
    static const QRegularExpression form(
        QStringLiteral(R"(([<>=!^~]*)\s*([A-Za-z0-9][A-Za-z0-9.+*\-]*))"));
    static const QRegularExpression wildcards(QStringLiteral(R"((?:\.[xX*+])+$)"));
    QString lowest;
    std::optional<Version> lowestParsed;
    for (auto matches = form.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        const QString bound = match.captured(1);
        QString named = match.captured(2).remove(wildcards);
        if (named.startsWith(u'v')) {
            named = named.sliced(1);
        }
        auto version = parseVersion(named);
        if (!version || bound.startsWith(u'<') || bound.startsWith(u'!')) {
            continue;
        }
        if (!lowestParsed || compareVersions(*version, *lowestParsed) < 0) {
            lowest = named;
            lowestParsed = std::move(version);
        }
    }
    return lowest;
}

} // namespace vorle
