#include "app/demo/agent/Grader.h"

#include "app/demo/agent/PageFacts.h"
#include "base/Text.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace vorle::demo {

namespace {

int clamped(double grade) { return std::clamp(static_cast<int>(std::lround(grade)), 0, 10); }

/// From -0.5 to 0.5, always the same for one title, so that grades are not all alike.
double nuance(const QString &title) {
    unsigned sum = 0;
    for (const QChar c : title) {
        sum = sum * 31 + c.unicode();
    }
    return (sum % 11) / 10.0 - 0.5;
}

ItemKind kindOf(const BlockRead &block, const PageFacts &facts) {
    if (facts.flaw) {
        return ItemKind::Security;
    }
    const auto guessed = json::fromRaw<ItemKind>(block.kind).value_or(ItemKind::Article);
    const bool release = !facts.changes.isEmpty() && !facts.versions.isEmpty();
    return guessed == ItemKind::Article && release ? ItemKind::Announcement : guessed;
}

int minutesFor(ItemKind kind, const BlockRead &block, const PageFacts &facts) {
    static const QRegularExpression length(QStringLiteral(R"((\d{1,3}) minutes)"));
    switch (kind) {
    case ItemKind::Video: {
        const int told = length.match(block.content).captured(1).toInt();
        return told > 0 ? (told + 4) / 5 * 5 : 30;
    }
    case ItemKind::Discussion:
        return 10;
    case ItemKind::Security:
        return 20;
    case ItemKind::Tool:
    case ItemKind::Package:
        return 45;
    case ItemKind::Announcement:
        return facts.breaking ? 120 : facts.changes.isEmpty() ? 10 : 30;
    default:
        return block.content.size() > 1'000 ? 15 : 10;
    }
}

double relevanceOf(const BlockRead &block, ItemKind kind, const PageFacts &facts) {
    if (facts.unread || facts.steering) {
        return 0;
    }
    double grade = 2;
    switch (facts.tie.kind) {
    case Tie::Kind::Interest:
        grade = 3.5 + 0.7 * facts.tie.weight;
        break;
    case Tie::Kind::Project:
        grade = kind == ItemKind::Security ? 9 : facts.breaking ? 7.5 : 6;
        break;
    case Tie::Kind::Tool:
        grade = 5;
        break;
    case Tie::Kind::None:
        break;
    }
    grade += facts.figures > 15 ? 0.5 : facts.figures < 4 ? -1 : 0;
    grade += block.note.isEmpty() ? 0 : 1.5;
    grade -= kind == ItemKind::Discussion ? 1 : 0;
    grade -= kind == ItemKind::Product ? 1 : 0;
    grade -= facts.hype ? 3 : 0;
    grade += facts.deadline.isEmpty() ? 0 : 0.5;
    grade = std::clamp(grade + nuance(block.title), 0.0, block.level == u"meta" ? 6.0 : 10.0);
    return std::round(grade * 2) / 2;
}

Judgment::Criteria criteriaOf(const BlockRead &block, ItemKind kind, const PageFacts &facts,
                              double relevance) {
    Judgment::Criteria criteria;
    criteria.effortMinutes = facts.unread ? 5 : minutesFor(kind, block, facts);
    if (facts.unread || facts.steering) {
        return criteria;
    }
    const bool official =
        kind == ItemKind::Security || kind == ItemKind::Announcement || kind == ItemKind::Package;
    criteria.impact = clamped(relevance + (facts.flaw ? 1 : facts.breaking ? 0.5 : -1));
    criteria.actionability = clamped(facts.step.isEmpty() ? 4 : 7 + nuance(block.id) * 2);
    criteria.novelty = clamped((kind == ItemKind::Discussion ? 4 : 6) + nuance(block.link) * 3);
    criteria.reliability =
        clamped((official ? 8 : 5.5) + std::min(facts.figures, 20) / 10.0 - (facts.hype ? 4 : 0));
    if (block.level == u"meta") {
        criteria.reliability = std::min(criteria.reliability, 4);
    }
    return criteria;
}

Judgment::Urgency urgencyOf(const PageFacts &facts) {
    Judgment::Urgency urgency;
    if (facts.unread || facts.steering || facts.tie.kind == Tie::Kind::None) {
        return urgency;
    }
    if (facts.flaw && facts.exploited) {
        urgency.level = Judgment::Urgency::Level::Now;
        urgency.reason = QStringLiteral("La faille est déjà exploitée.");
    } else if (!facts.deadline.isEmpty()) {
        urgency.level = Judgment::Urgency::Level::Before;
        urgency.date = facts.deadline;
        urgency.reason = facts.deadlineReason;
    }
    return urgency;
}

QString firstOf(const QStringList &versions) {
    return versions.first(std::min<qsizetype>(3, versions.size())).join(QStringLiteral(", "));
}

/// A sentence that fits on a card: what stands before its colon when it is too long.
QString shortStep(const QString &step) {
    const QString head = step.section(QStringLiteral(" : "), 0, 0);
    return characterCount(step) <= 140 ? step
           : head != step              ? firstSentences(head + u'.', 140)
                                       : firstSentences(step, 140);
}

/// What such a page is good for, to end a sentence.
QString use(ItemKind kind) {
    switch (kind) {
    case ItemKind::Article:
        return QStringLiteral("des mesures et un récit à comparer à ce que tu fais");
    case ItemKind::Video:
        return QStringLiteral("une démonstration à reprendre telle quelle");
    case ItemKind::Tool:
        return QStringLiteral("un outil à essayer sur ta machine avant d’en décider");
    case ItemKind::Package:
        return QStringLiteral("de quoi remplacer du code que tu entretiens");
    case ItemKind::Product:
        return QStringLiteral("une nouveauté à essayer sans se presser");
    case ItemKind::Discussion:
        return QStringLiteral("des retours de praticiens, à lire d’une traite");
    case ItemKind::Announcement:
        return QStringLiteral("de quoi décider quand et comment changer");
    case ItemKind::Security:
        return QStringLiteral("un risque à écarter avant le reste");
    }
    return {};
}

QString whyOf(ItemKind kind, const PageFacts &facts) {
    const Tie &tie = facts.tie;
    if (facts.steering) {
        return QStringLiteral("La page s’adresse aux IA pour obtenir une bonne note : rien n’y est "
                              "fiable.");
    }
    if (facts.unread) {
        return tie.name.isEmpty()
                   ? QStringLiteral("Le titre ne dit pas ce que tu pourrais en faire.")
                   : QStringLiteral("Le titre semble toucher « %1 », sans certitude.")
                         .arg(tie.name);
    }
    if (facts.flaw && tie.kind == Tie::Kind::Project && !facts.versions.isEmpty()) {
        return QStringLiteral("Si %1 utilise une des versions citées (%2), c’est un risque à "
                              "écarter avant le reste.")
            .arg(tie.name, firstOf(facts.versions));
    }
    switch (tie.kind) {
    case Tie::Kind::Interest:
        return QStringLiteral("Tu suis « %1 », poids %2 sur 5 : %3.")
            .arg(tie.name, QString::number(tie.weight), use(kind));
    case Tie::Kind::Project:
        return (tie.label.isEmpty() ? QStringLiteral("Cela touche ton projet %1 : %3.")
                                    : QStringLiteral("%1 s’appuie sur %2 : %3."))
            .replace(QStringLiteral("%1"), tie.name)
            .replace(QStringLiteral("%2"), tie.label)
            .replace(QStringLiteral("%3"), use(kind));
    case Tie::Kind::Tool:
        return QStringLiteral("Tu utilises %1 : %2.").arg(tie.name, use(kind));
    case Tie::Kind::None:
        break;
    }
    return QStringLiteral("Rien dans ton territoire ne s’y rattache directement.");
}

/// A page in another language cannot be quoted: what can be counted in it is told instead.
QString foreignSummary(const BlockRead &block, const PageFacts &facts) {
    QString text = QStringLiteral("Page en anglais : %1.").arg(block.title);
    if (!facts.versions.isEmpty()) {
        text += QStringLiteral(" Versions citées : %1.").arg(firstOf(facts.versions));
    }
    text +=
        facts.breaking ? QStringLiteral(" Elle annonce des changements incompatibles.") : QString();
    return text + (facts.figures > 10 ? QStringLiteral(" Elle s’appuie sur des mesures chiffrées.")
                                      : QString());
}

void writeTexts(const BlockRead &block, ItemKind kind, const PageFacts &facts, Judgment &out) {
    out.why = whyOf(kind, facts);
    const QString shortTitle = firstCharacters(block.title, 90).toString();
    if (facts.unread) {
        out.tldr = shortTitle;
        out.summary = QStringLiteral("Je n’ai rien pu lire sur ce sujet : à creuser.");
        out.firstStep =
            QStringLiteral("Ouvrir le lien et décider s’il vaut une recherche de plus.");
        return;
    }
    const QString lead = facts.lead.isEmpty() ? block.content.simplified() : facts.lead;
    out.summary = facts.french ? firstSentences(lead, 350) : foreignSummary(block, facts);
    const QString gist = firstSentences(lead, 90);
    out.tldr = facts.french && !gist.endsWith(u'…') && gist.size() >= 40 ? gist : shortTitle;
    if (facts.steering) {
        out.firstStep = QStringLiteral("Écarte ce sujet.");
        return;
    }
    out.changes = facts.changes;
    out.firstStep =
        !facts.step.isEmpty()    ? shortStep(facts.step)
        : block.level == u"meta" ? QStringLiteral("Ouvre la page et vérifie la date "
                                                  "et la version annoncées.")
        : !facts.heading.isEmpty()
            ? QStringLiteral("Lis la partie « %1 » et note ce qui te concerne.").arg(facts.heading)
            : QStringLiteral("Lis la page et note une chose à essayer.");
}

} // namespace

GradeAnswer grade(const QHash<QString, QString> &values) {
    const ProfileRead profile = readProfile(values.value(QStringLiteral("@PROFILE")));
    const QDate today = promptDate(values.value(QStringLiteral("@TODAY")));
    GradeAnswer answer;
    for (const BlockRead &block : readBlocks(values.value(QStringLiteral("@CANDIDATES")))) {
        const PageFacts facts = readFacts(block, profile, today);
        Judgment judgment;
        judgment.id = block.id;
        judgment.kind = kindOf(block, facts);
        judgment.relevance = relevanceOf(block, judgment.kind, facts);
        judgment.criteria = criteriaOf(block, judgment.kind, facts, judgment.relevance);
        judgment.urgency = urgencyOf(facts);
        writeTexts(block, judgment.kind, facts, judgment);
        answer.judgments += judgment;
    }
    return answer;
}

} // namespace vorle::demo
