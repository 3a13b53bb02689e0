#include "app/transfer/TopicNote.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/transfer/MarkdownText.h"
#include "base/French.h"
#include "base/WebLink.h"
#include "briefs/BriefWriter.h"
#include "core/Corrections.h"

#include <QStringList>

namespace vorle {

namespace {

using markdown::plainLine;
using markdown::plainText;
using markdown::quoted;

/// The facts, a line each. Their names are keys, which other programs search by: they are not
/// translated and do not change.
class FrontMatter {
public:
    explicit FrontMatter(const QTimeZone &zone) : m_zone(zone) {}

    void words(const char *key, const QString &value) {
        if (!value.isEmpty()) {
            line(key, quoted(value));
        }
    }
    void words(const char *key, const std::optional<QString> &value) {
        words(key, value.value_or(QString()));
    }
    void number(const char *key, std::optional<int> value) {
        if (value) {
            line(key, QString::number(*value));
        }
    }
    void day(const char *key, const std::optional<QDateTime> &moment) {
        if (moment && moment->isValid()) {
            line(key, moment->toTimeZone(m_zone).date().toString(Qt::ISODate));
        }
    }
    void line(const char *key, const QString &value) {
        m_lines += QString::fromLatin1(key) + QStringLiteral(": ") + value;
    }
    QString text() const {
        return QStringLiteral("---\n") + m_lines.join(u'\n') + QStringLiteral("\n---");
    }

private:
    QTimeZone m_zone;
    QStringList m_lines;
};

QString addressOf(const Topic &topic) {
    const TopicSource *source = topic.mainSource();
    const auto link =
        WebLink::from(source != nullptr ? source->url : topic.capturedURL.value_or(QString()),
                      WebLink::Giver::User);
    return link ? link->text() : QString();
}

QString factsOf(const Topic &topic, const QTimeZone &zone) {
    FrontMatter facts(zone);
    const StandingScore score = standingScore(topic);
    facts.words("titre", shownWords(topic.title));
    facts.words("id", identityText(topic.id));
    facts.words("url", addressOf(topic));
    facts.words("rubrique", statusLabel(topic.status));
    facts.number("note", score.score);
    facts.number("note_de_vorle", score.former);
    facts.words("type", kindLabel(topic.kind));
    facts.words("projet", topic.project);
    facts.words("domaine", topic.interest);
    facts.words("dependance", topic.dependency);
    facts.words("version_en_place", topic.currentVersion);
    facts.words("version_nouvelle", topic.newVersion);
    facts.words("lecture", readLevelLabel(topic.readLevel));
    facts.number("minutes", topic.minutes > 0 ? std::optional(topic.minutes) : std::nullopt);
    facts.words("publie", topic.publishedOn);
    facts.day("trouve", topic.foundAt);
    facts.day("trie", topic.triagedAt);
    facts.day("fait", topic.doneAt);
    if (topic.worth) {
        facts.words("avis", worthLabel(*topic.worth));
    }
    facts.number("reports",
                 topic.postponedCount > 0 ? std::optional(topic.postponedCount) : std::nullopt);
    facts.line(
        "tags",
        QStringLiteral("[vorle, vorle/%1]").arg(markdown::fileStem(statusLabel(topic.status))));
    return facts.text();
}

QString itemOf(const QString &words) { return QStringLiteral("- ") + words; }

QString partOf(const Brief::Part &part) {
    QStringList blocks;
    if (!part.title.isEmpty()) {
        blocks += QStringLiteral("#### ") + plainLine(part.title);
    }
    if (!part.body.isEmpty()) {
        blocks +=
            part.title == codePartTitle() ? markdown::codeBlock(part.body) : plainText(part.body);
    }
    return blocks.join(QStringLiteral("\n\n"));
}

QString sourceItem(const QString &title, const QString &address, const QString &adds = {}) {
    QString words = markdown::link(title.isEmpty() ? French::tr("Source") : title, address);
    if (!adds.isEmpty()) {
        words += French::tr("\u00A0: ") + plainLine(adds);
    }
    return itemOf(words);
}

/// The blocks of a note, put under their headings.
class Page {
public:
    void block(const QString &text) {
        if (!text.isEmpty()) {
            m_blocks += text;
        }
    }
    /// Nothing where there is nothing under it.
    void section(const char *marks, const QString &title, const QStringList &blocks) {
        QStringList filled = blocks;
        filled.removeAll(QString());
        if (!filled.isEmpty()) {
            m_blocks += QString::fromLatin1(marks) + u' ' + title;
            m_blocks += filled;
        }
    }
    QString text() const { return m_blocks.join(QStringLiteral("\n\n")); }

private:
    QStringList m_blocks;
};

template <class List, class Wording>
QStringList listOf(const List &all, Wording &&wording) {
    QStringList lines;
    for (const auto &each : all) {
        lines += wording(each);
    }
    return lines.isEmpty() ? lines : QStringList{lines.join(u'\n')};
}

void addBrief(Page &page, const Topic &topic) {
    const Brief &brief = *topic.brief;
    const auto partsOf = [](const QList<Brief::Part> &parts) {
        QStringList blocks;
        for (const Brief::Part &part : parts) {
            blocks += partOf(part);
        }
        return blocks;
    };
    const QString project = topic.project.value_or(QString());
    page.block(QStringLiteral("## ") + French::tr("Fiche de lecture"));
    page.section("###", French::tr("L’essentiel"), partsOf(brief.essentials));
    page.section("###", French::tr("Les détails"), partsOf(brief.details));
    page.section("###",
                 French::tr("Pour ") + (project.isEmpty() ? French::tr("toi") : plainLine(project)),
                 {plainText(brief.project.value_or(QString()))});
    page.section(
        "###", French::tr("Ce qui reste flou"),
        listOf(brief.unclear, [](const QString &point) { return itemOf(plainLine(point)); }));
    page.section("###", French::tr("Les sources, et ce que chacune apporte"),
                 listOf(brief.sources, [](const Brief::Source &source) {
                     return sourceItem(source.title, source.url, source.adds);
                 }));
}

} // namespace

QByteArray topicNote(const Topic &topic, const QTimeZone &zone) {
    Page page;
    page.block(factsOf(topic, zone));
    page.block(QStringLiteral("# ") + plainLine(topic.title));
    const QString gist = topic.tldr.value_or(QString());
    page.block(plainText(topic.summary));
    if (gist != topic.summary) {
        page.block(plainText(gist));
    }
    page.section("##", French::tr("Ma note"), {plainText(topic.note.value_or(QString()))});
    page.section("##", French::tr("Pourquoi toi"), {plainText(topic.why)});
    page.section("##", French::tr("Premier pas"), {plainText(topic.firstStep)});
    page.section("##", French::tr("Ce qui change"),
                 listOf(topic.changes.value_or(QStringList()),
                        [](const QString &change) { return itemOf(plainLine(change)); }));
    page.section("##", French::tr("Risques"), {plainText(topic.risks.value_or(QString()))});
    if (topic.correction) {
        QStringList reasons;
        for (const QString &reason : topic.correction->tags) {
            reasons += correctionReasonText(reason);
        }
        page.section(
            "##", French::tr("Pourquoi j’ai changé sa note"),
            {plainLine(reasons.join(QStringLiteral(", "))), plainText(topic.correction->text)});
    }
    if (topic.brief) {
        addBrief(page, topic);
    }
    page.section("##", French::tr("Sources"), listOf(topic.sources, [](const TopicSource &source) {
                     return sourceItem(source.displayName(), source.url);
                 }));
    return (page.text() + u'\n').toUtf8();
}

} // namespace vorle
