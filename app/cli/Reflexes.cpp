// What the user's decisions taught, and what they think of it.

#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/cli/TopicCards.h"
#include "app/territory/ReflexSwitch.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "judging/Learning.h"

namespace vorle::cli {

namespace {

constexpr int ruleMargin = 4;

struct ReflexShown {
    QString id;
    Reflex::Group group = Reflex::Group::Up;
    QString effect;
    QString title;
    QString evidence;
    QString instruction;
    bool enabled = true;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("id", &ReflexShown::id), json::field("group", &ReflexShown::group),
            json::field("effect", &ReflexShown::effect), json::field("title", &ReflexShown::title),
            json::field("evidence", &ReflexShown::evidence),
            json::field("instruction", &ReflexShown::instruction),
            json::field("enabled", &ReflexShown::enabled));
    }
};

/// What the command works with; the preferences are opened after the topics.
struct Sources {
    OnDemand<TopicStore> topics;
    OnDemand<Preferences> preferences;
    const Clock &clock;
};

Learned learnedNow(const Sources &sources) {
    const TopicStore &store = *sources.topics;
    requireReadable(store);
    return learn(store.topics(), sources.preferences->settings());
}

bool isEnabled(const Preferences &preferences, const Reflex &reflex) {
    return isReflexOn(preferences.settings(), reflex.id);
}

/// The rule with its effect, its figures, and the identifier that switches it.
QString block(const Console &console, const Reflex &reflex, bool enabled) {
    const QString title = console.wrapped(reflex.title, ruleMargin).trimmed();
    const QString figures = console.wrapped(reflex.evidence, ruleMargin);
    const QString id = console.faint(QString(ruleMargin, u' ') + reflex.id);
    const QStringList lines =
        enabled ? QStringList{QStringLiteral("  ● ") + console.bold(title) + QStringLiteral("  ") +
                                  console.accent(reflex.effect),
                              figures, id}
                : QStringList{console.faint(QStringLiteral("  ○ ") + title + French::tr("  coupé")),
                              console.faint(figures), id};
    return lines.join(u'\n');
}

QString grouped(const Console &console, const Preferences &preferences,
                const QList<Reflex> &reflexes) {
    QStringList blocks;
    for (const Reflex::Group group : Reflex::groups) {
        QStringList rules;
        for (const Reflex &reflex : reflexes) {
            if (reflex.group == group) {
                rules += block(console, reflex, isEnabled(preferences, reflex));
            }
        }
        if (!rules.isEmpty()) {
            blocks += console.bold(reflexGroupTitle(group)) + u'\n' + rules.join(u'\n');
        }
    }
    return blocks.join(QStringLiteral("\n\n"));
}

void tellNothingLearned(Console &console, const Learned &learned) {
    console.say(console.wrapped(nothingLearnedText(learned), 0));
    if (learned.decisions < decisionsToLearn) {
        for (const Reflex &sample : sampleReflexes()) {
            console.say(
                console.wrapped(QStringLiteral("– %1 (%2)").arg(sample.title, sample.evidence), 2));
        }
    }
}

void list(Context &context, const Sources &sources) {
    const Learned learned = learnedNow(sources);
    const Preferences &preferences = *sources.preferences;
    if (context.arguments.json()) {
        QList<ReflexShown> shown;
        for (const Reflex &reflex : learned.reflexes) {
            shown += {reflex.id,
                      reflex.group,
                      reflex.effect,
                      reflex.title,
                      reflex.evidence,
                      reflex.instruction,
                      isEnabled(preferences, reflex)};
        }
        context.console.print(json::encode(shown, json::Style::Pretty));
        return;
    }
    if (learned.reflexes.isEmpty()) {
        tellNothingLearned(context.console, learned);
        return;
    }
    context.console.print(grouped(context.console, preferences, learned.reflexes));
    const bool allOn = std::ranges::all_of(
        learned.reflexes, [&](const Reflex &reflex) { return isEnabled(preferences, reflex); });
    if (!allOn) {
        context.console.print(u'\n' + context.console.faint(switchedOffText()));
    }
}

/// @throws Failure when no rule of that identifier was learned
void requireLearned(const Sources &sources, const QString &id) {
    const QList<Reflex> reflexes = learnedNow(sources).reflexes;
    const bool known =
        std::ranges::any_of(reflexes, [&](const Reflex &reflex) { return reflex.id == id; });
    if (!known) {
        throw Failure(French::tr("Aucun réflexe appris ne s’appelle « %1 ».").arg(id));
    }
}

void switchOff(const Sources &sources, const QString &id) {
    requireLearned(sources, id);
    setReflexOn(*sources.preferences, id, false);
}

void switchOn(const Sources &sources, const QString &id) {
    if (isReflexOn(sources.preferences->settings(), id)) {
        throw Failure(French::tr("Aucun réflexe coupé ne s’appelle « %1 ».").arg(id));
    }
    setReflexOn(*sources.preferences, id, true);
}

void showDecisions(const Context &context, const Sources &sources, const QString &id) {
    requireLearned(sources, id);
    QList<TopicPtr> decisions;
    for (const DecisionBehind &each :
         decisionsBehind(id, sources.topics->topics(), sources.preferences->settings())) {
        decisions += each.topic;
    }
    if (!context.arguments.json()) {
        context.console.print(topicLines(context.console, decisions));
        return;
    }
    QList<Topic> records;
    for (const TopicPtr &topic : decisions) {
        records += *topic;
    }
    context.console.print(json::encode(records, json::Style::Pretty));
}

/// Nothing here can be undone, so it takes one more word.
void startAgain(Context &context, const Sources &sources) {
    if (!context.arguments.flags.contains(QStringLiteral("oui"))) {
        const QString warning = startAgainText(learnedNow(sources).reflexes.size());
        throw Failure(context.console.wrapped(warning, 0) +
                      French::tr("\nPour confirmer : vorle reflexes repartir --oui"));
    }
    startLearningAgain(*sources.preferences, sources.clock.now());
}

} // namespace

Task<ExitStatus> reflexes(Context &context, OnDemand<TopicStore> topics,
                          OnDemand<Preferences> preferences, const Clock &clock) {
    const Sources sources{topics, preferences, clock};
    const QStringList &words = context.arguments.positional;
    const QString action = words.value(0);
    if (action == u"montrer" && words.size() == 2) {
        showDecisions(context, sources, words[1]);
        co_return ExitStatus::Done;
    }
    if (action == u"couper" && words.size() == 2) {
        switchOff(sources, words[1]);
    } else if (action == u"remettre" && words.size() == 2) {
        switchOn(sources, words[1]);
    } else if (action == u"repartir" && words.size() == 1) {
        startAgain(context, sources);
    } else if (!words.isEmpty()) {
        throw Failure(French::tr("Usage : vorle reflexes [montrer ID | couper ID | remettre ID "
                                 "| repartir --oui]"),
                      ExitStatus::Usage);
    }
    list(context, sources);
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
