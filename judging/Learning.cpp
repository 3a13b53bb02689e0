#include "judging/Learning.h"

#include "base/French.h"
#include "core/KindLabel.h"
#include "judging/JudgePrompt.h"
#include "judging/ToolNames.h"

#include <QHash>

#include <cmath>

namespace vorle {

namespace {

constexpr int minStackDecisions = 4;
constexpr int minKindDecisions = 5;
constexpr int longMinutes = 60;
constexpr int minLongItems = 3;
/// One more than for a kind: a project is judged less readily.
constexpr int minProjectDecisions = 6;
constexpr int minCorrections = 4;
constexpr double minMeanGap = 2.0;
constexpr int maxStep = 3;
constexpr auto kinds = rawStrings(ItemKind{}).size();
// What the identifiers begin with, of rules that have several.
constexpr QLatin1StringView kindRule("kind-");
constexpr QLatin1StringView projectRule("project-");
constexpr QLatin1StringView correctionRule("corr-");

// Shares are compared as whole numbers, so that a share that is exactly at its threshold is.

/// Where what a rule counts is gathered, when somebody wants to see it.
using Gathered = QList<TopicPtr> *;

/// Decisions on one subject.
struct Tally {
    Gathered behind = nullptr;
    int decided = 0;
    int kept = 0;
    int dismissed = 0;

    bool oftenDismissed() const { return 5 * dismissed >= 3 * decided; }
    int keptPercent() const { return (200 * kept + decided) / (2 * decided); }
};

/// Whether `one` is kept more often than `other`, by a quarter or more of all decisions.
bool keptFarMore(const Tally &one, const Tally &other) {
    const qint64 gap = qint64(one.kept) * other.decided - qint64(other.kept) * one.decided;
    return 4 * gap >= qint64(one.decided) * other.decided;
}

// The rules' faces.

Reflex stackReflex(int stackPercent, int restPercent) {
    return {QStringLiteral("stack-first"),
            Reflex::Group::Up,
            QStringLiteral("+2"),
            French::tr("Les mises à jour de ta stack passent avant les nouveautés."),
            French::tr("tu en gardes %1 %, contre %2 % pour le reste")
                .arg(stackPercent)
                .arg(restPercent),
            QStringLiteral("Topics that touch what they already use matter more to them than "
                           "general news: score those a little higher.")};
}

Reflex kindReflex(ItemKind kind, int dismissed, int decided) {
    return {kindRule + json::rawText(kind),
            Reflex::Group::Down,
            French::tr("plus exigeant"),
            French::tr("Les sujets de type « %1 » sont souvent écartés.").arg(kindLabel(kind)),
            French::tr("%1 « Pas pour moi » sur %2").arg(dismissed).arg(decided),
            QStringLiteral("They often set aside items of kind « %1 »: score those high only when "
                           "they are really solid.")
                .arg(json::rawText(kind))};
}

Reflex longReflex(int postponed, int decided) {
    return {QStringLiteral("long-later"),
            Reflex::Group::Waits,
            French::tr("premier pas court"),
            French::tr("Les sujets longs attendent un créneau libre."),
            French::tr("%1 sujets d’une heure ou plus remis à plus tard sur %2")
                .arg(postponed)
                .arg(decided),
            QStringLiteral("They put off long items: give a short first step and a realistic "
                           "time.")};
}

Reflex projectReflex(const QString &name, int dismissed, int decided) {
    return {projectRule + name,
            Reflex::Group::Down,
            French::tr("plus exigeant"),
            French::tr("%1 t’intéresse peu en ce moment.").arg(name),
            French::tr("%1 sujets écartés sur %2").arg(dismissed).arg(decided),
            QStringLiteral("They set aside most items about %1 lately: be more demanding for this "
                           "project.")
                .arg(name)};
}

Reflex correctionReflex(ItemKind kind, int corrections, int signedStep) {
    const bool more = signedStep > 0;
    const QString step = (more ? u'+' : QChar(u'\u2212')) + QString::number(std::abs(signedStep));
    const QString label = kindLabel(kind);
    const QString title =
        more ? French::tr("Les sujets %1 valent plus pour toi que je ne le pensais.")
             : French::tr("Les sujets %1 valent moins pour toi que je ne le pensais.");
    return {correctionRule + json::rawText(kind),
            more ? Reflex::Group::Up : Reflex::Group::Down,
            step,
            title.arg(label),
            French::tr("%1 corrections, %2 en moyenne").arg(QString::number(corrections), step),
            QStringLiteral("The person corrected the score of %1 %2 items by %3 points on average: "
                           "score such items %4.")
                .arg(QString::number(corrections), label.toLower(), step,
                     more ? QStringLiteral("higher") : QStringLiteral("lower"))};
}

/// The user's scores against the app's, for one kind of item.
struct Corrections {
    Gathered behind = nullptr;
    int count = 0;
    double gaps = 0; ///< the sum of (theirs minus the app's)

    /// By how much such items should move: nothing while it is not clear.
    int signedStep() const {
        const double mean = count == 0 ? 0 : gaps / count;
        // Scores need not be whole: a mean of 2 may come out a hair under it.
        if (count < minCorrections || std::abs(mean) < minMeanGap - 1e-9) {
            return 0;
        }
        const int step = std::min(static_cast<int>(std::lround(std::abs(mean))), maxStep);
        return mean > 0 ? step : -step;
    }
};

/// Long items, and those of them that were put off.
struct LongItems {
    Gathered behind = nullptr;
    int decided = 0;
    int postponed = 0;
};

void gather(Gathered behind, const TopicPtr &topic) {
    if (behind != nullptr) {
        behind->append(topic);
    }
}

/// `json::fromRaw` without its conversion to UTF-8, for a list of ten thousand.
std::optional<ItemKind> kindNamed(QStringView name) {
    constexpr auto words = rawStrings(ItemKind{});
    const auto found = std::ranges::find_if(words, [&](std::string_view word) {
        const QLatin1StringView latin(word.data(), qsizetype(word.size()));
        return name.size() == latin.size() && name == latin;
    });
    return found == words.end() ? std::nullopt
                                : std::optional(static_cast<ItemKind>(found - words.begin()));
}

std::optional<ItemKind> kindOf(const Topic &topic) {
    return topic.kind ? kindNamed(*topic.kind) : std::nullopt;
}

/// Everything the rules count, gathered in one pass over the topics.
class Cases {
public:
    explicit Cases(const Settings &settings)
        : m_since(settings.reflexesSince
                      ? std::optional(settings.reflexesSince->toMSecsSinceEpoch())
                      : std::nullopt)
        , m_tools(settings.addedTools)
        , m_projectNames(settings.projects.keys()) {
        for (const QString &name : m_projectNames) {
            m_projects.insert(name, {});
        }
    }

    /// Has what the reflex of that identifier counts gathered there. False for one of no rule.
    bool gatherFor(const QString &reflexId, QList<TopicPtr> &behind) {
        const auto subject = [&](QLatin1StringView start) {
            return reflexId.startsWith(start) ? std::optional(reflexId.sliced(start.size()))
                                              : std::nullopt;
        };
        if (reflexId == u"stack-first") {
            m_stack.behind = &behind;
        } else if (reflexId == u"long-later") {
            m_long.behind = &behind;
        } else if (const auto kind = kindNamed(subject(kindRule).value_or(QString()))) {
            m_kinds[index(*kind)].behind = &behind;
        } else if (const auto corrected = kindNamed(subject(correctionRule).value_or(QString()))) {
            m_corrections[index(*corrected)].behind = &behind;
        } else if (const auto project = subject(projectRule);
                   project && m_projects.contains(*project)) {
            m_projects[*project].behind = &behind;
        } else {
            return false;
        }
        return true;
    }

    void take(const TopicPtr &taken) {
        const Topic &topic = *taken;
        const auto kind = kindOf(topic);
        if (topic.correction && kind && counts(topic.correction->at)) {
            takeCorrection(taken, m_corrections[index(*kind)]);
        }
        // A link given and taken back says nothing of what they like: they never saw it judged.
        if (isUnjudgedCapture(topic) || topic.status == TopicStatus::Pending ||
            topic.status == TopicStatus::Inbox ||
            !counts(topic.triagedAt ? topic.triagedAt : topic.doneAt)) {
            return;
        }
        ++m_decisions;
        count(touchesStack(topic) ? m_stack : m_rest, taken);
        if (kind) {
            count(m_kinds[index(*kind)], taken);
        }
        if (topic.minutes >= longMinutes) {
            ++m_long.decided;
            m_long.postponed += topic.postponedCount > 0 ? 1 : 0;
            gather(m_long.behind, taken);
        }
        if (topic.project && !m_projects.isEmpty()) {
            if (const auto project = m_projects.find(*topic.project); project != m_projects.end()) {
                count(*project, taken);
            }
        }
    }

    Learned learned() const {
        Learned learned{m_decisions, {}};
        if (m_decisions < decisionsToLearn) {
            return learned;
        }
        QList<Reflex> &reflexes = learned.reflexes;
        if (m_stack.decided >= minStackDecisions && m_rest.decided > 0 &&
            keptFarMore(m_stack, m_rest)) {
            reflexes += stackReflex(m_stack.keptPercent(), m_rest.keptPercent());
        }
        for (std::size_t i = 0; i < kinds; ++i) {
            const Tally &kind = m_kinds[i];
            if (kind.decided >= minKindDecisions && kind.oftenDismissed()) {
                reflexes += kindReflex(static_cast<ItemKind>(i), kind.dismissed, kind.decided);
            }
        }
        if (m_long.decided >= minLongItems && 2 * m_long.postponed >= m_long.decided) {
            reflexes += longReflex(m_long.postponed, m_long.decided);
        }
        for (const QString &name : m_projectNames) {
            const Tally project = m_projects.value(name);
            if (project.decided >= minProjectDecisions && project.oftenDismissed()) {
                reflexes += projectReflex(name, project.dismissed, project.decided);
            }
        }
        for (std::size_t i = 0; i < kinds; ++i) {
            if (const int step = m_corrections[i].signedStep(); step != 0) {
                reflexes +=
                    correctionReflex(static_cast<ItemKind>(i), m_corrections[i].count, step);
            }
        }
        return learned;
    }

private:
    static std::size_t index(ItemKind kind) { return static_cast<std::size_t>(kind); }

    bool counts(const std::optional<QDateTime> &moment) const {
        return !m_since || (moment && moment->toMSecsSinceEpoch() > *m_since);
    }

    bool touchesStack(const Topic &topic) const {
        return topic.dependency || (topic.project && (topic.currentVersion || topic.newVersion)) ||
               m_tools.namedIn(topic.title);
    }

    static void count(Tally &tally, const TopicPtr &decided) {
        const Topic &topic = *decided;
        gather(tally.behind, decided);
        ++tally.decided;
        tally.kept +=
            topic.status == TopicStatus::Program || topic.status == TopicStatus::Done ? 1 : 0;
        tally.dismissed += topic.status == TopicStatus::Dismissed ? 1 : 0;
    }

    static void takeCorrection(const TopicPtr &corrected, Corrections &corrections) {
        const Topic &topic = *corrected;
        if (topic.readLevel != ReadLevel::None) {
            gather(corrections.behind, corrected);
            ++corrections.count;
            corrections.gaps += std::clamp(topic.correction->score, 0.0, 10.0) - topic.score;
        }
    }

    std::optional<qint64> m_since; ///< milliseconds: a moment is compared with thousands
    ToolNames m_tools;
    QStringList m_projectNames; ///< in the order of the alphabet
    int m_decisions = 0;
    Tally m_stack;
    Tally m_rest;
    std::array<Tally, kinds> m_kinds;
    LongItems m_long;
    QHash<QString, Tally> m_projects;
    std::array<Corrections, kinds> m_corrections;
};

} // namespace

Learned learn(const QList<TopicPtr> &topics, const Settings &settings) {
    Cases cases(settings);
    for (const TopicPtr &topic : topics) {
        cases.take(topic);
    }
    return cases.learned();
}

QList<DecisionBehind> decisionsBehind(const QString &reflexId, const QList<TopicPtr> &topics,
                                      const Settings &settings) {
    QList<TopicPtr> gathered;
    Cases cases(settings);
    if (!cases.gatherFor(reflexId, gathered)) {
        return {};
    }
    for (const TopicPtr &topic : topics) {
        cases.take(topic);
    }
    const bool corrected = reflexId.startsWith(correctionRule);
    QList<DecisionBehind> behind;
    for (const TopicPtr &topic : std::as_const(gathered)) {
        behind += {topic, corrected          ? std::optional(topic->correction->at)
                          : topic->triagedAt ? topic->triagedAt
                                             : topic->doneAt};
    }
    std::ranges::stable_sort(behind, std::ranges::greater(), &DecisionBehind::at);
    return behind;
}

QList<Reflex> reflexesLeftOn(QList<Reflex> reflexes, const Settings &settings) {
    reflexes.removeIf(
        [&](const Reflex &reflex) { return settings.disabledReflexes.contains(reflex.id); });
    return reflexes;
}

QList<Reflex> sampleReflexes() {
    return {stackReflex(72, 38), kindReflex(ItemKind::Video, 6, 8), longReflex(4, 5)};
}

} // namespace vorle
