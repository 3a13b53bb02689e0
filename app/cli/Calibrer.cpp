#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/cli/TopicArgument.h"
#include "app/cli/TopicCards.h"
#include "app/console/Keyboard.h"
#include "app/labels/CalibrationText.h"
#include "app/labels/DecisionLabels.h"
#include "base/French.h"
#include "core/Corrections.h"

namespace vorle::cli {

namespace {

/// How far it is, for machines: nothing is asked.
struct CalibrationShown {
    bool calibrated = false;
    bool proposed = false;
    bool underWay = false;
    int answered = 0;
    int total = 0;
    std::optional<Topic> next;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("calibrated", &CalibrationShown::calibrated),
                          json::field("proposed", &CalibrationShown::proposed),
                          json::field("underWay", &CalibrationShown::underWay),
                          json::field("answered", &CalibrationShown::answered),
                          json::field("total", &CalibrationShown::total),
                          json::field("next", &CalibrationShown::next));
    }
};

/// After what the flags ask for; the topics are read alone.
void showState(Context &context, const TopicsToChange &topics, const Clock &clock) {
    Preferences &preferences = *topics.preferences;
    requireReadable(*topics.store);
    DecisionHistory history(*topics.store);
    Calibration calibration(preferences, *topics.store, history, clock);
    if (context.arguments.flags.contains(QStringLiteral("reprendre"))) {
        calibration.beginAgain();
    }
    const Calibration::Progress progress = calibration.progress();
    const TopicPtr next = calibration.next();
    const CalibrationShown shown{preferences.settings().calibrated,
                                 calibration.isProposed(),
                                 calibration.isUnderWay(),
                                 int(progress.answered),
                                 int(progress.total),
                                 next ? std::optional(*next) : std::nullopt};
    context.console.print(json::encode(shown, json::Style::Pretty));
}

std::optional<Outcome> choiceOf(QChar key) {
    switch (key.unicode()) {
    case u'g':
        return Outcome::Kept;
    case u'l':
        return Outcome::Later;
    case u'x':
        return Outcome::Dismissed;
    default:
        return std::nullopt;
    }
}

QString keysText(bool mayTakeBack) {
    QStringList keys{QStringLiteral("g ") + actionLabel(Outcome::Kept),
                     QStringLiteral("l ") + actionLabel(Outcome::Later),
                     QStringLiteral("x ") + actionLabel(Outcome::Dismissed)};
    if (mayTakeBack) {
        keys += French::tr("a Annuler la dernière réponse");
    }
    keys += French::tr("q Arrêter");
    return calibrationQuestion() + QStringLiteral("  ") + keys.join(QStringLiteral(" · "));
}

/// A whole number from 0 to 10; nothing for any other text.
std::optional<int> typedScore(const QString &text) {
    bool number = false;
    const int score = text.toInt(&number);
    return number && score >= 0 && score <= maxScore ? std::optional(score) : std::nullopt;
}

/// One conversation at the terminal. Lives as long as the command.
class Interview {
public:
    Interview(Context &context, Calibration &calibration)
        : m_context(context), m_calibration(calibration) {}

    /// Asks until all was asked or the person stops. False when they stopped.
    Task<bool> run() {
        while (const TopicPtr topic = m_calibration.next()) {
            show(*topic);
            const auto choice = co_await askChoice();
            if (choice && m_calibration.choose(topic->id, *choice)) {
                co_await askScore();
            }
            if (m_stopped) {
                co_return false;
            }
        }
        co_return true;
    }

private:
    void show(const Topic &topic) {
        Console &console = m_context.console;
        console.print(QString());
        console.print(console.faint(calibrationPosition(m_calibration.progress())));
        // The score stays hidden: what the user would have given must not lean on it.
        console.print(topicCard(console, topic, QDate::currentDate(), CardScore::Hidden));
        console.print(QString());
    }

    /// Nothing when the person stopped, or took the last answer back.
    Task<std::optional<Outcome>> askChoice() {
        m_context.console.say(keysText(m_calibration.canTakeBack()));
        while (true) {
            const auto key = co_await Keyboard::key(m_context.cancel);
            if (!key || *key == u'q') {
                m_stopped = true;
                co_return std::nullopt;
            }
            if (*key == u'a' && m_calibration.takeBack()) {
                m_context.console.say(French::tr("Réponse annulée."));
                co_return std::nullopt;
            }
            if (const auto choice = choiceOf(*key)) {
                m_context.console.say(actionLabel(*choice));
                co_return choice;
            }
        }
    }

    /// Of the topic that was just decided on.
    Task<> askScore() {
        m_context.console.say(calibrationScoreQuestion() + French::tr("  (Entrée pour passer)"));
        std::optional<int> score;
        while (!score && !m_stopped) {
            std::optional<QString> line;
            try {
                line = co_await Keyboard::line(m_context.cancel);
            } catch (const Cancelled &) {
                // The choice was taken and told: it stands, without a score.
            }
            m_stopped = !line;
            if (!line || line->isEmpty()) {
                break;
            }
            score = typedScore(*line);
            if (!score) {
                m_context.console.say(
                    French::tr("Un nombre entier de 0 à 10, ou Entrée pour passer."));
            }
        }
        if (const auto judged = m_calibration.give(score)) {
            m_context.console.say(besideMineText(*score, *judged));
        }
    }

    Context &m_context;
    Calibration &m_calibration;
    bool m_stopped = false;
};

/// Says how it ended and gives the command's status.
ExitStatus finish(Context &context, TopicStore &store, const Calibration &calibration,
                  bool complete) {
    requireSaved(store);
    if (complete) {
        const CalibrationText end = calibrationEnd(calibration.progress().answered);
        context.console.say(end.title + QStringLiteral(". ") + end.text);
    } else {
        context.console.say(French::tr("À plus tard\u00A0: « vorle calibrer » reprend où tu "
                                       "en es."));
    }
    return ExitStatus::Done;
}

} // namespace

Task<ExitStatus> calibrer(Context &context, TopicsToChange topics, const Clock &clock) {
    Preferences &preferences = *topics.preferences;
    const bool again = context.arguments.flags.contains(QStringLiteral("reprendre"));
    if (context.arguments.flags.contains(QStringLiteral("passer"))) {
        if (again) {
            throw Failure(French::tr("Choisis entre --passer et --reprendre."), ExitStatus::Usage);
        }
        Calibration::skip(preferences);
        context.console.say(calibrationSkippedText());
        if (context.arguments.json()) {
            showState(context, topics, clock);
        }
        co_return ExitStatus::Done;
    }
    if (context.arguments.json()) {
        showState(context, topics, clock);
        co_return ExitStatus::Done;
    }
    if (!Keyboard::available()) {
        throw Failure(French::tr("« vorle calibrer » te pose des questions une à une\u00A0: "
                                 "lance la commande dans un terminal."),
                      ExitStatus::Usage);
    }
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    requireReadable(store);
    DecisionHistory history(store);
    Calibration calibration(preferences, store, history, clock);
    if (preferences.settings().calibrated && !again) {
        context.console.say(French::tr("C’est déjà fait. Pour recommencer\u00A0: vorle "
                                       "calibrer --reprendre"));
        co_return ExitStatus::Done;
    }
    if (store.topics(TopicStatus::Inbox).isEmpty()) {
        context.console.say(calibrationNothingText());
        co_return ExitStatus::Done;
    }
    if (again) {
        calibration.beginAgain();
    } else {
        calibration.begin();
    }
    const Calibration::Progress progress = calibration.progress();
    if (const qsizetype left = progress.total - progress.answered;
        calibration.isUnderWay() && left > 0) {
        const CalibrationText invitation = calibrationInvitation(left);
        context.console.print(context.console.bold(invitation.title));
        context.console.print(invitation.text);
    }
    Interview interview(context, calibration);
    const bool complete = co_await interview.run();
    co_return finish(context, store, calibration, complete);
}

} // namespace vorle::cli
