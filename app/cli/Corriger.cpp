#include "app/cli/Handlers.h"
#include "app/cli/TopicArgument.h"
#include "app/cli/TopicCards.h"
#include "base/French.h"
#include "core/Corrections.h"

namespace vorle::cli {

namespace {

/// The offered reason that is meant by a word of what it reads as, or by the whole.
QString reasonNamed(const QString &word) {
    QStringList offered;
    QStringList meant;
    for (const QString &reason : correctionReasons()) {
        offered += correctionReasonText(reason);
        if (reason == word || offered.last() == word) {
            return reason;
        }
        if (offered.last().contains(word, Qt::CaseInsensitive)) {
            meant += reason;
        }
    }
    if (word.isEmpty() || meant.size() != 1) {
        throw Failure(French::tr("Raison inconnue\u00A0: « %1 ». Choix\u00A0: « %2 ».")
                          .arg(word, offered.join(French::tr(" », « "))),
                      ExitStatus::Usage);
    }
    return meant.first();
}

QStringList reasonsGiven(const Arguments &arguments) {
    QStringList reasons;
    const auto option = arguments.options.constFind(QStringLiteral("raison"));
    if (option != arguments.options.cend()) {
        for (const QString &word : option->split(u',')) {
            reasons += reasonNamed(word.trimmed());
        }
    }
    return reasons;
}

int scoreNamed(const QString &text) {
    bool number = false;
    const int score = text.toInt(&number);
    if (!number || score < 0 || score > maxScore) {
        throw Failure(French::tr("« %1 » n’est pas une note\u00A0: donne un nombre entier de 0 "
                                 "à 10.")
                          .arg(text),
                      ExitStatus::Usage);
    }
    return score;
}

QString correctedText(const Topic &topic) {
    const StandingScore standing = standingScore(topic);
    const QString now = French::tr("Note %1 sur 10").arg(standing.score.value_or(0));
    if (standing.former) {
        return French::tr("%1, j’avais mis %2").arg(now).arg(*standing.former);
    }
    return judgedScore(topic) ? French::tr("%1, comme moi").arg(now) : now;
}

} // namespace

Task<ExitStatus> corriger(Context &context, TopicsToChange topics, const Clock &clock) {
    const Arguments &arguments = context.arguments;
    const bool remove = arguments.flags.contains(QStringLiteral("retirer"));
    if (remove != (arguments.positional.size() == 1)) {
        throw Failure(remove ? French::tr("Avec --retirer, ne donne pas de note.")
                             : French::tr("Il manque la note, de 0 à 10."),
                      ExitStatus::Usage);
    }
    const int score = remove ? 0 : scoreNamed(arguments.positional[1]);
    const QStringList reasons = reasonsGiven(arguments);
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    const TopicPtr topic = topicByPrefix(store, arguments.positional[0]);
    if (remove) {
        if (!topic->correction) {
            context.console.say(French::tr("Tu n’avais pas corrigé sa note."));
        } else {
            store.setCorrection(topic->id, std::nullopt);
        }
        const auto own = judgedScore(*topic);
        co_await showChanged(context, store, topic->id,
                             own ? French::tr("Note %1 sur 10, la mienne").arg(*own)
                                 : French::tr("Pas de note\u00A0: rien n’a pu être lu"));
        co_return ExitStatus::Done;
    }
    store.setCorrection(topic->id, correctionOf(score, reasons,
                                                arguments.options.value(QStringLiteral("texte")),
                                                clock.now()));
    co_await showChanged(context, store, topic->id, correctedText(*store.topic(topic->id)));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
