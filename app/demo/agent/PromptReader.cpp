#include "app/demo/agent/PromptReader.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>

namespace vorle::demo {

namespace {

QRegularExpression linesPattern(const char *text) {
    return QRegularExpression(QString::fromUtf8(text),
                              QRegularExpression::MultilineOption |
                                  QRegularExpression::UseUnicodePropertiesOption);
}

QString group(const char *expression, const QString &text) {
    return linesPattern(expression).match(text).captured(1);
}

/// "- topic (weight 4)"
ScopeRead::Interest interestFrom(const QString &line) {
    static const QRegularExpression weighted = linesPattern(R"(^(.*) \(weight (\d)\)$)");
    const auto match = weighted.match(line);
    return match.hasMatch() ? ScopeRead::Interest{match.captured(1), match.captured(2).toInt()}
                            : ScopeRead::Interest{line, 3};
}

/// "name: description [label, label]"
ProfileRead::Project projectFrom(const QString &line) {
    static const QRegularExpression project = linesPattern(R"(^(.*?)(?:: (.*?))?(?: \[(.*)\])?$)");
    const auto match = project.match(line);
    return {match.captured(1), match.captured(2),
            match.captured(3).split(QStringLiteral(", "), Qt::SkipEmptyParts)};
}

/// The lines that begin with "- " right after the line that begins with `heading`.
QStringList bulletsAfter(const QString &heading, const QString &text) {
    QStringList bullets;
    bool inside = false;
    for (const QString &line : text.split(u'\n')) {
        if (!inside) {
            inside = line.startsWith(heading);
        } else if (line.startsWith(QStringLiteral("- "))) {
            bullets += line.sliced(2);
        } else {
            break;
        }
    }
    return bullets;
}

/// The names a dependency file holds: the keys of a package.json, else one name a line.
QStringList dependenciesOf(const QString &manifest) {
    const QJsonObject package = QJsonDocument::fromJson(manifest.toUtf8()).object();
    if (!package.isEmpty()) {
        return package.value(u"dependencies").toObject().keys() +
               package.value(u"devDependencies").toObject().keys();
    }
    static const QRegularExpression name =
        linesPattern(R"re(^\s*"?([A-Za-z][\w.-]*)"?\s*(?:[=<>~!;\[,@]|$))re");
    QStringList names;
    for (auto matches = name.globalMatch(manifest); matches.hasNext();) {
        names += matches.next().captured(1);
    }
    return names;
}

} // namespace

std::optional<QHash<QString, QString>> placeholderValues(const QString &instruction,
                                                         const QString &prompt) {
    static const QRegularExpression placeholder = linesPattern("@[A-Z]+");
    QHash<QString, QString> values;
    QString pending; // the placeholder whose value is being measured
    qsizetype read = 0;
    qsizetype at = 0;
    const auto close = [&](const QString &literal, bool last) {
        const qsizetype end = last ? prompt.size() - literal.size() : prompt.indexOf(literal, at);
        if (end < at || (pending.isEmpty() && end != at) ||
            QStringView(prompt).sliced(end, literal.size()) != literal) {
            return false;
        }
        if (!pending.isEmpty()) {
            values.insert(pending, prompt.sliced(at, end - at));
        }
        at = end + literal.size();
        return true;
    };
    for (auto matches = placeholder.globalMatch(instruction); matches.hasNext();) {
        const auto match = matches.next();
        if (!close(instruction.sliced(read, match.capturedStart() - read), false)) {
            return std::nullopt;
        }
        pending = match.captured();
        read = match.capturedEnd();
    }
    return close(instruction.sliced(read), true) ? std::optional(values) : std::nullopt;
}

QDate promptDate(const QString &text) {
    return QLocale(QLocale::English).toDate(text, QStringLiteral("MMMM d, yyyy"));
}

ScopeRead readScope(const QString &scope) {
    ScopeRead read;
    static const QRegularExpression project = linesPattern(
        R"(\AProject watched: \*\*(.*?)\*\*(?:, (.*?))?\. (?:Its dependency file|It may not be code))");
    const auto match = project.match(scope);
    read.project = match.captured(1);
    read.description = match.captured(2);
    const qsizetype fence = scope.indexOf(QStringLiteral("\n```\n"));
    const qsizetype end = scope.lastIndexOf(QStringLiteral("\n```"));
    if (fence >= 0 && end > fence) {
        read.dependencies = dependenciesOf(scope.sliced(fence + 5, end - fence - 5));
    }
    if (!read.project.isEmpty()) {
        return read;
    }
    for (const QString &line : bulletsAfter(QStringLiteral("Topics the person follows"), scope)) {
        read.interests += interestFrom(line);
    }
    read.second = scope.startsWith(
        QStringLiteral("Topics the person follows that a first search came back empty on."));
    const QString tools = group(R"(^Tools they told me they use: (.*?)\. Look for)", scope);
    read.tools = tools.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    return read;
}

QList<BlockRead> readBlocks(const QString &candidates) {
    QList<BlockRead> blocks;
    enum class Region { Head, Fence, Content } region = Region::Head;
    for (const QString &line : candidates.split(u'\n')) {
        const auto value = [&](const char *key) {
            const QString prefix = QString::fromLatin1(key);
            return line.startsWith(prefix) ? std::optional(line.sliced(prefix.size()))
                                           : std::nullopt;
        };
        const bool quotes = line == QStringLiteral("\"\"\"");
        if (region == Region::Content) {
            if (quotes) {
                region = Region::Head;
            } else {
                blocks.last().content += line + u'\n';
            }
        } else if (region == Region::Fence) {
            region = quotes ? Region::Content : Region::Head;
        } else if (const auto id = value("### id: ")) {
            blocks += BlockRead{*id, {}, {}, {}, {}, {}, {}};
        } else if (!blocks.isEmpty()) {
            BlockRead &block = blocks.last();
            if (const auto title = value("Title: ")) {
                block.title = *title;
            } else if (const auto link = value("Link: ")) {
                block.link = *link;
            } else if (const auto dead = value("Link (could not be read): ")) {
                block.link = *dead;
            } else if (const auto kind = value("Kind (guessed): ")) {
                block.kind = *kind;
            } else if (const auto level = value("Read level: ")) {
                block.level = *level;
            } else if (const auto note = value("Their note when saving it: ")) {
                block.note = *note;
            } else if (line == u"Content:") {
                region = Region::Fence;
            }
        }
    }
    return blocks;
}

ProfileRead readProfile(const QString &profile) {
    ProfileRead read;
    for (const QString &line : bulletsAfter(QStringLiteral("Projects they work on:"), profile)) {
        read.projects += projectFrom(line);
    }
    for (const QString &line : bulletsAfter(QStringLiteral("Topics they follow"), profile)) {
        read.interests += interestFrom(line);
    }
    read.tools = bulletsAfter(QStringLiteral("Tools they use:"), profile);
    return read;
}

ProfileRead readSitesProfile(const QHash<QString, QString> &values) {
    const auto listed = [&](const char *placeholder, const char *separator, const char *none) {
        const QString text = values.value(QString::fromLatin1(placeholder));
        return text == QLatin1String(none)
                   ? QStringList()
                   : text.split(QString::fromLatin1(separator), Qt::SkipEmptyParts);
    };
    ProfileRead read;
    for (const QString &project : listed("@PROJECTS", "; ", "nothing declared")) {
        read.projects += projectFrom(project);
    }
    for (const QString &interest : listed("@INTERESTS", ", ", "none declared")) {
        read.interests += interestFrom(interest);
    }
    read.tools = listed("@TOOLS", ", ", "none declared");
    return read;
}

QList<ItemRead> readItems(const QString &items) {
    static const QRegularExpression line =
        linesPattern(R"(^\[[^\]]*\] (.*?)(?: — (.*?))?(?: \(\d{4}-\d\d-\d\d\))? (https?://\S+)$)");
    QList<ItemRead> read;
    for (auto matches = line.globalMatch(items); matches.hasNext();) {
        const auto match = matches.next();
        read += ItemRead{match.captured(1), match.captured(2), match.captured(3)};
    }
    return read;
}

TopicRead readTopic(const QHash<QString, QString> &values) {
    TopicRead read;
    const QString topic = values.value(QStringLiteral("@TOPIC"));
    read.project =
        group(R"(^Their project \*\*(.*?)\*\*)", values.value(QStringLiteral("@PROJECT")));
    read.title = group("^Title: (.*)$", topic);
    read.dependency = group("^Dependency: ([^,\n]*)", topic);
    static const QRegularExpression source = linesPattern(R"(^- (?:(.*): )?(https?://\S+)$)");
    for (auto matches = source.globalMatch(values.value(QStringLiteral("@SOURCES")));
         matches.hasNext();) {
        const auto match = matches.next();
        read.sources += TopicSourceRead{match.captured(1), match.captured(2)};
    }
    const QString fence = QStringLiteral("\"\"\"");
    const QString text = values.value(QStringLiteral("@TEXT")).trimmed();
    if (text.startsWith(fence) && text.endsWith(fence) && text.size() > 2 * fence.size()) {
        read.text = text.sliced(fence.size(), text.size() - 2 * fence.size()).trimmed();
    }
    return read;
}

} // namespace vorle::demo
