#include "core/EngineImport.h"

#include "base/Text.h"
#include "base/WebLink.h"
#include "core/ScoreScale.h"

namespace vorle {

namespace {

struct Source {
    QString titre;
    QString url;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("titre", &Source::titre), json::field("url", &Source::url));
    }
};

struct Item {
    QString titre;
    double note = 0;
    std::optional<QString> dependance;
    std::optional<QString> versionActuelle;
    std::optional<QString> versionNouvelle;
    QString nature;
    QString resume;
    QString pourquoi;
    std::optional<QString> ceQueCaChange;
    QString premierPas;
    std::optional<QString> effortRisques;
    std::optional<int> minutes;
    std::optional<QString> datePublication;
    QList<Source> sources;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("titre", &Item::titre), json::field("note", &Item::note),
                          json::field("dependance", &Item::dependance),
                          json::field("version_actuelle", &Item::versionActuelle),
                          json::field("version_nouvelle", &Item::versionNouvelle),
                          json::field("nature", &Item::nature),
                          json::field("resume", &Item::resume),
                          json::field("pourquoi", &Item::pourquoi),
                          json::field("ce_que_ca_change", &Item::ceQueCaChange),
                          json::field("premier_pas", &Item::premierPas),
                          json::field("effort_risques", &Item::effortRisques),
                          json::field("minutes", &Item::minutes),
                          json::field("date_publication", &Item::datePublication),
                          json::field("sources", &Item::sources));
    }
};

struct Output {
    QList<Item> sujets;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("sujets", &Output::sujets));
    }
};

struct Envelope {
    Output output;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("structured_output", &Envelope::output));
    }
};

constexpr qsizetype maxLineCharacters = 300;
constexpr qsizetype textCharacters = 4'000;

QString line(const QString &text) { return clampedLine(text, maxLineCharacters); }

QString lines(const QString &text) { return clampedLines(text, textCharacters); }

/// The agent fills a field it has nothing for with an empty text.
std::optional<QString> unlessEmpty(const std::optional<QString> &text) {
    const QString clamped = lines(text.value_or(QString()));
    return clamped.isEmpty() ? std::nullopt : std::optional(clamped);
}

int minutesOf(const Item &item) {
    constexpr int most = 10'000; // about a week: what is more is no effort anyone meant
    const bool quick = item.nature == u"faille" || item.nature == u"casse";
    return std::clamp(item.minutes.value_or(quick ? 15 : 30), 0, most);
}

Topic topicFrom(const Item &item, const QString &project, const QDateTime &now) {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = line(item.titre);
    topic.score = scoreFromRelevance(item.note);
    topic.project = project;
    topic.minutes = minutesOf(item);
    topic.kind = line(item.nature);
    topic.summary = lines(item.resume);
    topic.why = lines(item.pourquoi);
    topic.firstStep = lines(item.premierPas);
    if (const auto change = unlessEmpty(item.ceQueCaChange)) {
        topic.changes = QList<QString>{*change};
    }
    topic.risks = unlessEmpty(item.effortRisques);
    topic.dependency = unlessEmpty(item.dependance);
    topic.currentVersion = unlessEmpty(item.versionActuelle);
    topic.newVersion = unlessEmpty(item.versionNouvelle);
    topic.publishedOn = unlessEmpty(item.datePublication);
    for (const Source &source : item.sources) {
        if (const auto link = WebLink::from(source.url)) {
            topic.sources.append({line(source.titre), link->text()});
        }
    }
    topic.status = TopicStatus::Inbox;
    topic.foundAt = now;
    topic.origin = Origin::Stack;
    return topic;
}

} // namespace

QList<Topic> importTopics(const QByteArray &data, const QString &project, const QDateTime &now) {
    const auto envelope = json::decode<Envelope>(data);
    QList<Topic> topics;
    for (const Item &item : envelope.output.sujets) {
        topics.append(topicFrom(item, project, now));
    }
    return topics;
}

} // namespace vorle
