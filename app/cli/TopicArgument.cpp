#include "app/cli/TopicArgument.h"

#include "app/cli/CommandForwarding.h"
#include "app/cli/Requirements.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/Text.h"
#include "core/NumberText.h"

#include <algorithm>
#include <utility>

namespace vorle::cli {

namespace {

constexpr qsizetype identityDigits = 32;
constexpr qsizetype maxNamed = 5;
constexpr qsizetype titleCharacters = 60;

/// The digits of an identity, or of its beginning; nothing for any other text.
std::optional<QString> identityPrefix(const QString &text) {
    QString digits;
    for (const QChar c : trimmed(text)) {
        const QChar upper = c.toUpper();
        if ((upper >= u'0' && upper <= u'9') || (upper >= u'A' && upper <= u'F')) {
            digits += upper;
        } else if (c != u'-' && c != u'{' && c != u'}') {
            return std::nullopt;
        }
    }
    return digits.isEmpty() || digits.size() > identityDigits ? std::nullopt
                                                              : std::optional(digits);
}

QString digitsOf(const QUuid &id) { return id.toString(QUuid::Id128).toUpper(); }

/// The topics to choose from, a few of them.
QString choices(const QList<TopicPtr> &topics) {
    QStringList lines;
    for (const TopicPtr &topic : topics.first(std::min(maxNamed, topics.size()))) {
        const QString title = firstCharacters(topic->title, titleCharacters).toString();
        lines += QStringLiteral("  %1  %2%3")
                     .arg(identityText(topic->id), title,
                          title.size() < topic->title.size() ? QStringLiteral("…") : QString());
    }
    if (topics.size() > maxNamed) {
        lines += QStringLiteral("  …");
    }
    return lines.join(u'\n');
}

} // namespace

Task<std::optional<ExitStatus>> holdTopics(Context &context, TopicsToChange topics) {
    std::optional<ExitStatus> forwarded;
    bool waited = false;
    const auto isForwarded = [&]() -> Task<bool> {
        // The app may also have opened since the last time.
        forwarded = co_await forwardCommand(context, topics.file());
        if (!forwarded && !std::exchange(waited, true)) {
            context.console.say(French::tr(
                "Une autre commande vorle travaille sur tes sujets : j’attends qu’elle finisse."));
        }
        co_return forwarded.has_value();
    };
    const bool isHeld = co_await topics.lock->taken(isForwarded, context.cancel);
    if (isHeld && waited) {
        topics.preferences->reload();
    }
    co_return forwarded;
}

TopicPtr topicByPrefix(const TopicStore &store, const QString &text) {
    requireReadable(store);
    const auto prefix = identityPrefix(text);
    if (!prefix) {
        throw Failure(French::tr("« %1 » n’est pas l’identifiant d’un sujet. « vorle sujets » "
                                 "les montre ; le début suffit.")
                          .arg(text),
                      ExitStatus::Usage);
    }
    QList<TopicPtr> found = store.topics();
    found.removeIf([&](const TopicPtr &topic) { return !digitsOf(topic->id).startsWith(*prefix); });
    if (found.isEmpty()) {
        throw Failure(
            French::tr("Aucun sujet n’a un identifiant qui commence par « %1 ».").arg(text));
    }
    if (found.size() > 1) {
        throw Failure(French::tr("« %1 » désigne %2 sujets, ajoute quelques caractères :\n%3")
                          .arg(text, numberText(found.size()), choices(found)));
    }
    return found.first();
}

} // namespace vorle::cli
