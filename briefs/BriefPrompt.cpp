#include "briefs/BriefPrompt.h"

#include "agents/PromptText.h"
#include "base/Text.h"
#include "base/WebLink.h"

#include <QStringList>

namespace vorle {

namespace {

constexpr qsizetype nameCharacters = 100;
constexpr qsizetype descriptionCharacters = 500;
constexpr qsizetype promptTitleCharacters = 300;
constexpr qsizetype judgedCharacters = 1'000;
constexpr qsizetype noteCharacters = 500;
constexpr qsizetype maxPromptSources = 5;
constexpr qsizetype sourceCharacters = 200;
constexpr qsizetype linkBytes = 500;
/// As much as a run keeps of a page; the bytes bound what characters of any size may take of a
/// prompt. French takes some 8,500, Chinese 24,000.
constexpr qsizetype textCharacters = 8'000;
constexpr qsizetype textBytes = 40'000;

/// "Label: value" on a line of its own; nothing for an empty value.
QString line(const QString &label, const QString &value, qsizetype maxCharacters) {
    const QString shown = oneLine(value, maxCharacters);
    return shown.isEmpty() ? QString() : label + shown + u'\n';
}

QString profileText(const Settings &settings) {
    const QString job = oneLine(settings.job.value_or(QString()), nameCharacters);
    return QStringLiteral("Job: ") + (job.isEmpty() ? QStringLiteral("not given") : job);
}

QString projectText(const Settings &settings, const Topic &topic) {
    const QString name = oneLine(topic.project.value_or(QString()), nameCharacters);
    if (name.isEmpty()) {
        return QStringLiteral("a project they work on");
    }
    const QString description =
        oneLine(settings.projectDescriptions.value(*topic.project), descriptionCharacters);
    return QStringLiteral("Their project **") + name + QStringLiteral("**") +
           (description.isEmpty() ? QString() : QStringLiteral(": ") + description);
}

/// "undici, 7.16.0 in use, 7.18.0 out"
QString dependencyText(const Topic &topic) {
    QString text = oneLine(topic.dependency.value_or(QString()), nameCharacters);
    if (text.isEmpty()) {
        return {};
    }
    if (topic.currentVersion) {
        text += QStringLiteral(", %1 in use").arg(oneLine(*topic.currentVersion, nameCharacters));
    }
    if (topic.newVersion) {
        text += QStringLiteral(", %1 out").arg(oneLine(*topic.newVersion, nameCharacters));
    }
    return text;
}

QString topicText(const Topic &topic) {
    const QString none;
    QString text = line(QStringLiteral("Title: "), topic.title, promptTitleCharacters);
    text += line(QStringLiteral("Kind: "), topic.kind.value_or(none), nameCharacters);
    text += line(QStringLiteral("Published: "), topic.publishedOn.value_or(none), nameCharacters);
    text += line(QStringLiteral("Dependency: "), dependencyText(topic), promptTitleCharacters);
    text +=
        line(QStringLiteral("Topic they follow: "), topic.interest.value_or(none), nameCharacters);
    text += line(QStringLiteral("Their note when saving it: "), topic.note.value_or(none),
                 noteCharacters);
    text += line(QStringLiteral("What the judging step said: "), topic.summary, judgedCharacters);
    text += line(QStringLiteral("Why it matters to them: "), topic.why, judgedCharacters);
    return trimmed(text).toString();
}

QString sourcesText(const Topic &topic) {
    QStringList lines;
    for (const TopicSource &source : topic.sources) {
        const auto link = WebLink::from(source.url);
        if (lines.size() < maxPromptSources && link && link->text().size() <= linkBytes) {
            const QString title = oneLine(source.title, sourceCharacters);
            lines += QStringLiteral("- ") +
                     (title.isEmpty() ? QString() : title + QStringLiteral(": ")) + link->text();
        }
    }
    return lines.isEmpty() ? QStringLiteral("(no link is known)") : lines.join(u'\n');
}

QString readText(const Topic &topic) {
    const QString whole = QString::fromUtf8(topic.seenText.value_or(QByteArray()));
    const QString text = escapedForPrompt(
        firstCharacters(utf8Prefix(trimmed(whole), textBytes), textCharacters).toString());
    const QString fence = QStringLiteral("\"\"\"");
    return trimmed(text).isEmpty()
               ? QStringLiteral("(nothing could be read: search the web for it)")
               : fence + u'\n' + promptPrefix(text, textBytes).toString() + u'\n' + fence;
}

} // namespace

QString briefPrompt(const QString &instruction, const QDate &today, const Settings &settings,
                    const Topic &topic) {
    return replacedOnce(instruction, {{QStringLiteral("@TODAY"), promptDate(today)},
                                      {QStringLiteral("@PROFILE"), profileText(settings)},
                                      {QStringLiteral("@PROJECT"), projectText(settings, topic)},
                                      {QStringLiteral("@TOPIC"), topicText(topic)},
                                      {QStringLiteral("@SOURCES"), sourcesText(topic)},
                                      {QStringLiteral("@TEXT"), readText(topic)}});
}

} // namespace vorle
