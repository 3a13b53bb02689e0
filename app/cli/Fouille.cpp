#include "app/cli/Command.h"
#include "app/cli/TopicCards.h"

#include <QLocale>

#include <cmath>

namespace vorle::cli {

namespace {

/// The report's keys, with the topics.
struct FouilleAnswer {
    QDateTime date;
    int added = 0;
    double costUSD = 0;
    double seconds = 0;
    QList<QString> uncovered;
    QList<Topic> topics;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("date", &FouilleAnswer::date),
                          json::field("added", &FouilleAnswer::added),
                          json::field("costUSD", &FouilleAnswer::costUSD),
                          json::field("seconds", &FouilleAnswer::seconds),
                          json::field("uncovered", &FouilleAnswer::uncovered),
                          json::field("topics", &FouilleAnswer::topics));
    }
};

/// Waits for the right to change the topics, then hands out what a run that died left behind.
Task<> openStore(Context &context) {
    StoreLock &lock = context.app.lock();
    if (!lock.tryLock()) {
        context.console.say(QStringLiteral(
            "Une autre commande vorle travaille sur tes sujets : j’attends qu’elle finisse."));
        co_await lock.acquire(context.cancel);
        context.app.preferences().reload();
    }
    TopicStore &store = context.app.store();
    if (store.setAside()) {
        context.console.say(
            QStringLiteral("Tes sujets étaient illisibles. Je repars d’une liste vide, et je garde "
                           "l’ancien fichier ici : %1")
                .arg(*store.setAside()));
    }
    if (const qsizetype released = store.releaseAllPending(); released > 0) {
        context.console.say(
            released == 1
                ? QStringLiteral("1 sujet d’une fouille interrompue rejoint « À trier ».")
                : QStringLiteral("%1 sujets d’une fouille interrompue rejoignent « À trier ».")
                      .arg(released));
    }
}

void showProgress(Console &console, const RunProgress &progress) {
    // Each scope counts as much as reading and judging what it brought.
    const int total = progress.scopes + 2 * progress.candidates;
    const int done = progress.scopesDone + progress.read + progress.judged;
    const QString details = QStringLiteral("%1 liens, %2 lus, %3 jugés")
                                .arg(progress.candidates)
                                .arg(progress.read)
                                .arg(progress.judged);
    console.progress(progress.status, done, total, details);
}

QString countedTopics(int count) {
    return count == 1 ? QStringLiteral("1 sujet") : QStringLiteral("%1 sujets").arg(count);
}

QString durationText(double seconds) {
    const int whole = static_cast<int>(std::lround(seconds));
    return whole < 60 ? QStringLiteral("%1 s").arg(whole)
                      : QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
}

QString summaryLine(const RunReport &report) {
    QString line = report.cancelled
                       ? QStringLiteral("Fouille arrêtée : %1 déjà jugés, gardés dans « À trier »")
                             .arg(countedTopics(report.last.added))
                       : QStringLiteral("%1 à trier").arg(countedTopics(report.last.added));
    if (report.cancelled && report.last.added == 0) {
        line = QStringLiteral("Fouille arrêtée : rien n’était encore jugé");
    }
    line += QStringLiteral(" · ") + durationText(report.last.seconds);
    if (report.last.costUSD > 0) {
        line += QStringLiteral(" · ") +
                QLocale(QLocale::French, QLocale::France).toString(report.last.costUSD, 'f', 2) +
                QStringLiteral(" $");
    }
    return line;
}

void tellTroubles(Console &console, const RunReport &report) {
    for (const ScopeReport &scope : report.scopes) {
        if (!scope.error.isEmpty()) {
            console.say(QStringLiteral("%1 : %2").arg(scope.name, scope.error));
        }
    }
    for (const QString &warning : report.warnings) {
        console.say(warning);
    }
    if (!report.last.uncovered.isEmpty() && !report.cancelled) {
        console.say(QStringLiteral("Rien trouvé pour : %1")
                        .arg(report.last.uncovered.join(QStringLiteral(", "))));
    }
    if (!report.saved) {
        console.say(QStringLiteral("Les sujets n’ont pas pu être enregistrés."));
    }
}

} // namespace

Task<ExitStatus> fouille(Context &context) {
    co_await openStore(context);
    SearchEngine &engine = context.app.engine();
    const auto link = QObject::connect(
        &engine, &SearchEngine::progressed, &engine,
        [&](const RunProgress &progress) { showProgress(context.console, progress); });
    std::optional<RunReport> ended;
    std::exception_ptr failure;
    try {
        ended = co_await engine.run(context.cancel);
    } catch (...) {
        failure = std::current_exception();
    }
    QObject::disconnect(link);
    context.console.endProgress();
    if (failure) {
        std::rethrow_exception(failure);
    }
    const RunReport &report = *ended;
    QList<TopicPtr> topics;
    for (const QUuid &id : report.topics) {
        if (const TopicPtr topic = context.app.store().topic(id)) {
            topics += topic;
        }
    }
    if (context.arguments.json()) {
        FouilleAnswer answer{report.last.date,    report.last.added,     report.last.costUSD,
                             report.last.seconds, report.last.uncovered, {}};
        for (const TopicPtr &topic : topics) {
            answer.topics += *topic;
        }
        context.console.print(json::encode(answer, json::Style::Pretty));
    } else if (!topics.isEmpty()) {
        context.console.print(topicCards(context.console, topics, QDate::currentDate()) + u'\n');
    }
    tellTroubles(context.console, report);
    context.console.say(summaryLine(report));
    co_return report.cancelled || !report.saved ? ExitStatus::Failed : ExitStatus::Done;
}

} // namespace vorle::cli
