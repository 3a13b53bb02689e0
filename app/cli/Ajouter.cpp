#include "app/cli/Handlers.h"
#include "app/cli/ReadNow.h"
#include "app/cli/Requirements.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/OnDisk.h"
#include "core/Corrections.h"
#include "core/Preferences.h"
#include "desktop/CaptureAddress.h"
#include "desktop/InboxFolder.h"
#include "desktop/LinkFile.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace vorle::cli {

namespace {

/// The path of the file that was meant, empty where a link was.
QString fileMeant(const QString &word) {
    const QUrl address(word);
    if (address.scheme() == u"file") {
        return address.toLocalFile();
    }
    const bool isLink = word.startsWith(u"http:", Qt::CaseInsensitive) ||
                        word.startsWith(u"https:", Qt::CaseInsensitive);
    return !isLink && QFileInfo(word).isFile() ? QFileInfo(word).absoluteFilePath() : QString();
}

/// The project of that name as the territory spells it; nothing where none was named.
std::optional<QString> projectNamed(const Arguments &arguments, const Preferences &preferences) {
    const auto option = arguments.options.constFind(QStringLiteral("projet"));
    if (option == arguments.options.cend()) {
        return std::nullopt;
    }
    const QStringList names = preferences.settings().projects.keys();
    for (const QString &name : names) {
        if (name.compare(option->trimmed(), Qt::CaseInsensitive) == 0) {
            return name;
        }
    }
    throw Failure(names.isEmpty()
                      ? French::tr("Tu ne suis aucun projet\u00A0: vorle projet ajouter DOSSIER")
                      : French::tr("Projet inconnu\u00A0: « %1 ». Choix\u00A0: « %2 ».")
                            .arg(*option, names.join(French::tr(" », « "))),
                  ExitStatus::Usage);
}

/// Leaves a link in the drop folder, as other programs do.
Task<> deposit(Context &context, QString folder, SharedItem item) {
    const auto problem = co_await onDisk([folder, item]() -> std::exception_ptr {
        try {
            InboxFolder(folder).drop(item);
            return nullptr;
        } catch (const std::system_error &) {
            return std::current_exception();
        }
    });
    if (!problem) {
        throw Failure(French::tr("Le disque ne répond pas."));
    }
    if (*problem) {
        std::rethrow_exception(*problem);
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(item, json::Style::Pretty));
    } else {
        context.console.print(
            context.console.bold(French::tr("Déposé\u00A0: vorle le prend dès qu’il est ouvert")) +
            QStringLiteral("  ") + context.console.plain(item.url));
    }
}

SharedItem itemOf(const Arguments &arguments, const std::optional<QString> &project,
                  const Clock &clock) {
    const auto given = [&](const char *name) -> std::optional<QString> {
        const auto option = arguments.options.constFind(QString::fromLatin1(name));
        return option == arguments.options.cend() ? std::nullopt : std::optional(*option);
    };
    return {.title = given("titre"),
            .url = arguments.positional.first(),
            .note = given("note"),
            .project = project,
            .pageText = {},
            .sharedAt = clock.now()};
}

/// Shows the topic as it is now, behind what became of it.
void show(Context &context, const Topic &topic, const QString &said) {
    Console &console = context.console;
    if (context.arguments.json()) {
        console.print(json::encode(topic, json::Style::Pretty));
    } else {
        console.print(console.bold(said) + QStringLiteral("  ") + console.plain(topic.title) +
                      QStringLiteral("  ") + console.faint(identityText(topic.id).left(8)));
    }
}

/// Waits for the judge, who would not come otherwise: nobody else is there.
Task<> readHere(Context &context, TopicStore &store, LinkCapture &capture, QUuid id) {
    QString why;
    try {
        co_await readNow(context, capture, id);
    } catch (const Failure &failure) {
        why = failure.text();
    }
    co_await onceSaved(context, store);
    const TopicPtr topic = store.topic(id);
    if (!topic || topic->status == TopicStatus::Pending) {
        context.console.say(French::tr("Ajouté, mais il attend d’être lu. %1").arg(why).trimmed());
    }
    if (topic) {
        const auto score = judgedScore(*topic);
        show(context, *topic,
             topic->status == TopicStatus::Pending ? French::tr("En attente")
             : score ? French::tr("Lu et noté %1 sur 10 · À trier").arg(*score)
                     : French::tr("Illisible, à creuser · À trier"));
    }
}

} // namespace

Task<ExitStatus> ajouter(Context &context, LinkDoors doors, const Clock &clock) {
    const Arguments &arguments = context.arguments;
    const QString word = arguments.positional.first();
    SharedItem item = itemOf(arguments, projectNamed(arguments, *doors.topics.preferences), clock);
    if (CaptureAddress::isOurs(word)) {
        throw Failure(French::tr("Une adresse vorle: se confirme à l’écran\u00A0: vorle capturer "
                                 "ADRESSE"),
                      ExitStatus::Usage);
    }
    // A name means a file where the terminal stands: the app stands elsewhere.
    const QString file = context.host == Host::OwnProcess ? fileMeant(word) : QString();
    if (!file.isEmpty()) {
        const auto link = co_await onDisk([file] { return LinkFile::at(file); });
        if (!link || !*link) {
            throw Failure(French::tr("Je ne trouve aucun lien dans ce fichier\u00A0: %1")
                              .arg(QDir::toNativeSeparators(file)));
        }
        item.url = (*link)->url;
        item.title = item.title ? item.title : std::optional((*link)->title);
        co_await deposit(context, doors.inbox(), item);
        co_return ExitStatus::Done;
    }
    if (arguments.flags.contains(QStringLiteral("deposer"))) {
        const auto link = WebLink::typed(word);
        if (!link || !WebLink::from(link->text())) {
            throw Failure(French::tr("Ce n’est pas l’adresse d’une page web."));
        }
        item.url = link->text();
        co_await deposit(context, doors.inbox(), item);
        co_return ExitStatus::Done;
    }
    if (const auto forwarded = co_await holdTopics(context, doors.topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *doors.topics.store;
    LinkCapture &capture = *doors.capture;
    const auto taken = capture.take({.url = word,
                                     .title = item.title.value_or(QString()),
                                     .note = item.note.value_or(QString()),
                                     .project = item.project});
    if (const auto *refusal = std::get_if<LinkCapture::Refusal>(&taken)) {
        const TopicPtr held = refusal->held ? store.topic(*refusal->held) : nullptr;
        if (held && isBeingRead(*held) && context.host == Host::OwnProcess) {
            context.console.say(refusal->text);
            co_await readHere(context, store, capture, held->id);
            co_return ExitStatus::Done;
        }
        if (held && refusal->tookUp) {
            requireSaved(store);
            show(context, *held, refusal->text);
            co_return ExitStatus::Done;
        }
        throw Failure(held ? QStringLiteral("%1 %2").arg(refusal->text, held->title)
                           : refusal->text);
    }
    const QUuid id = std::get<QUuid>(taken);
    if (context.host == Host::OwnProcess) {
        co_await readHere(context, store, capture, id);
        co_return ExitStatus::Done;
    }
    co_await onceSaved(context, store);
    show(context, *store.topic(id), French::tr("Ajouté à « À trier »\u00A0: je lis la page"));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
