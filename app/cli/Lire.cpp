#include "app/cli/Handlers.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/WebLink.h"
#include "search/web/PageReader.h"

namespace vorle::cli {

namespace {

struct PageShown {
    QString url;
    std::optional<QString> title;
    std::optional<QString> description;
    QByteArray text;
    ReadLevel level = ReadLevel::None;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("url", &PageShown::url), json::field("title", &PageShown::title),
            json::field("description", &PageShown::description),
            json::field("text", &PageShown::text), json::field("level", &PageShown::level));
    }
};

/// Why nothing could be read of a page; empty when something was.
QString unreadReason(const ReadPage &page) {
    if (page.level != ReadLevel::None) {
        return {};
    }
    switch (page.outcome) {
    case HttpResponse::Outcome::Refused:
        return French::tr("vorle ne va pas à cette adresse, ou elle renvoie sans fin ailleurs");
    case HttpResponse::Outcome::Failed:
        return French::tr("le site est injoignable");
    case HttpResponse::Outcome::TimedOut:
        return French::tr("le site n’a pas répondu à temps");
    case HttpResponse::Outcome::Answered:
        return page.status < 200 || page.status > 299
                   ? French::tr("le site a répondu %1").arg(page.status)
                   : French::tr("la page ne contient aucun texte");
    }
    return {};
}

} // namespace

Task<ExitStatus> lire(Context &context, OnDemand<PageReader> reader) {
    const QString text = context.arguments.positional.first();
    const auto typed = WebLink::typed(text, WebLink::Host::Any);
    if (!typed) {
        throw Failure(French::tr("« %1 » n’est pas une adresse web.").arg(text));
    }
    const QString &link = typed->text();
    const ReadPage page = co_await reader->read(link, context.cancel, Reach::Anywhere);
    if (context.arguments.json()) {
        const PageShown shown{link, page.title, page.description, page.text, page.level};
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else {
        if (page.title) {
            context.console.print(context.console.bold(*page.title));
        }
        if (page.description) {
            context.console.print(context.console.faint(*page.description));
        }
        if (!page.text.isEmpty()) {
            context.console.print(u'\n' + context.console.plain(QString::fromUtf8(page.text)));
        }
    }
    QStringList facts{page.finalUrl, readLevelLabel(page.level)};
    if (const QString reason = unreadReason(page); !reason.isEmpty()) {
        facts += reason;
    }
    context.console.say(facts.join(QStringLiteral(" · ")));
    co_return page.level == ReadLevel::None ? ExitStatus::Failed : ExitStatus::Done;
}

} // namespace vorle::cli
