#include "app/demo/agent/BriefAgent.h"

#include "app/demo/agent/PageFacts.h"
#include "app/demo/agent/PromptReader.h"
#include "base/Text.h"

#include <QRegularExpression>

#include <algorithm>

namespace vorle::demo {

namespace {

constexpr qsizetype wordsPerMinute = 200;
const QString changesTitle = QStringLiteral("Ce qui change");

/// A heading of the page and the paragraphs under it; the opening has none.
struct Section {
    QString heading;
    QStringList lines;

    bool saysLimits() const {
        static const QRegularExpression limits(
            QStringLiteral("limite|réserve|reste|manque|attention|précaution"),
            QRegularExpression::CaseInsensitiveOption);
        return limits.match(heading).hasMatch();
    }
};

QList<Section> sectionsOf(const QString &text) {
    static const QRegularExpression marks(QStringLiteral("^(?:\\| )?(?:#+|-) "));
    static const QString ends = QStringLiteral(".!?…:»");
    QList<Section> sections{{}};
    for (const QString &raw : text.split(u'\n')) {
        const QString line = raw.trimmed().remove(marks);
        if (line.isEmpty()) {
            continue;
        }
        if (line.size() <= 60 && !ends.contains(line.back())) {
            sections += Section{line, {}};
        } else {
            sections.last().lines += line;
        }
    }
    return sections;
}

/// The first command quoted by the page.
std::optional<QString> commandIn(const QString &text) {
    static const QRegularExpression command(
        QStringLiteral(R"(«\s*((?:npx|npm|git|pip|cargo|brew|ollama|docker) [^»\n]+?)\s*»)"));
    const auto match = command.match(text);
    return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

QList<Brief::Part> essentialsOf(const TopicRead &topic, const PageFacts &facts,
                                const QList<Section> &sections) {
    const QStringList &opening = sections.first().lines;
    QList<Brief::Part> parts{
        {firstSentences(topic.title, 60),
         firstSentences(facts.lead.isEmpty() ? opening.join(u' ') : facts.lead, 300)}};
    if (!facts.changes.isEmpty()) {
        parts += {changesTitle, facts.changes.join(u'\n')};
    }
    if (!facts.step.isEmpty()) {
        parts += {QStringLiteral("La première chose à faire"), firstSentences(facts.step, 300)};
    }
    return parts;
}

QList<Brief::Part> detailsOf(const PageFacts &facts, const QList<Section> &sections) {
    QList<Brief::Part> parts;
    for (const Section &section : sections) {
        QStringList lines = section.lines;
        lines.removeIf([&](const QString &line) {
            return facts.changes.contains(line) || line == facts.lead;
        });
        const bool told = section.heading == changesTitle && !facts.changes.isEmpty();
        if (!section.saysLimits() && !told && !lines.isEmpty() && parts.size() < 4) {
            parts += {section.heading.isEmpty() ? QStringLiteral("Le contexte") : section.heading,
                      firstSentences(lines.join(u' '), 600)};
        }
    }
    return parts;
}

QStringList unclearOf(const PageFacts &facts, const QList<Section> &sections) {
    QStringList points;
    for (const Section &section : sections) {
        if (section.saysLimits()) {
            points += firstSentences(section.lines.join(u' '), 160);
        }
    }
    if (facts.figures > 3) {
        points += QStringLiteral("Les chiffres viennent d’une seule page : rien ne les confirme "
                                 "encore.");
    }
    return points.first(std::min<qsizetype>(4, points.size()));
}

QString meaningFor(const TopicRead &topic, const PageFacts &facts) {
    const QString subject = topic.dependency.isEmpty() ? topic.title : topic.dependency;
    const QString pace = facts.flaw ? QStringLiteral("C’est à traiter avant le reste")
                         : facts.breaking
                             ? QStringLiteral("Prévois-le à part, sur une branche à toi")
                             : QStringLiteral("Rien ne presse");
    return topic.project.isEmpty()
               ? QStringLiteral("%1. Vérifie d’abord si ton travail touche à « %2 » ; sinon, garde "
                                "la fiche pour le jour où tu t’y mettras.")
                     .arg(pace, subject)
               : QStringLiteral("%1 pour %2. Cherche où le projet s’appuie sur « %3 » ; si tu ne "
                                "l’y trouves pas, ce sujet n’est pas pour lui.")
                     .arg(pace, topic.project, subject);
}

/// The main source, then another page of the site on the same subject.
QList<Brief::Source> sourcesOf(const TopicRead &topic, const TopicSourceRead &main,
                               const DemoCatalogue &catalogue, const QString &site) {
    QList<Brief::Source> sources{
        {main.title, main.link,
         QStringLiteral("Le texte d’où viennent les faits de cette fiche.")}};
    for (const DemoPage &page : catalogue.named(topic.dependency)) {
        const QString link = site + page.path;
        if (sources.size() < 2 && link != main.link && page.shape != DemoPage::Shape::Dead) {
            sources += {page.title, link, firstSentences(page.description, 140)};
        }
    }
    return sources;
}

BriefAnswer nothingRead(const TopicRead &topic) {
    BriefAnswer answer;
    answer.essentials = {{QStringLiteral("Rien n’a pu être lu"),
                          QStringLiteral("D’après son titre, il s’agit de : %1").arg(topic.title)}};
    answer.unclear = {QStringLiteral("Tout ce que la page annonce reste à lire à sa source.")};
    return answer;
}

BriefAnswer steered() {
    BriefAnswer answer;
    answer.essentials = {{QStringLiteral("À ne pas prendre au mot"),
                          QStringLiteral("La page s’adresse aux IA pour orienter ce qu’on dit "
                                         "d’elle : rien n’en est repris ici.")}};
    answer.unclear = {QStringLiteral("Ce que la page annonce vraiment, faute d’une autre source.")};
    return answer;
}

} // namespace

BriefAnswer writeBrief(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                       const QString &site) {
    TopicRead topic = readTopic(values);
    TopicSourceRead main = topic.sources.value(0);
    if (topic.text.isEmpty()) {
        const auto dead = catalogue.pageOf(main.link, site);
        const auto copy = dead ? catalogue.at(dead->copy) : std::nullopt;
        if (!copy) {
            return nothingRead(topic);
        }
        main = {copy->title, site + copy->path};
        topic.text = copy->text;
    }
    BlockRead block;
    block.title = topic.title;
    block.content = topic.text;
    const PageFacts facts =
        readFacts(block, {}, promptDate(values.value(QStringLiteral("@TODAY"))));
    if (facts.steering) {
        return steered();
    }
    const QList<Section> sections = sectionsOf(topic.text);
    BriefAnswer answer;
    answer.essentials = essentialsOf(topic, facts, sections);
    answer.details = detailsOf(facts, sections);
    answer.code = commandIn(topic.text);
    answer.forProject = meaningFor(topic, facts);
    answer.unclear = unclearOf(facts, sections);
    answer.sources = sourcesOf(topic, main, catalogue, site);
    const qsizetype words = topic.text.split(u' ').size();
    answer.minutes = static_cast<int>(std::clamp<qsizetype>(words / wordsPerMinute + 1, 1, 10));
    return answer;
}

} // namespace vorle::demo
