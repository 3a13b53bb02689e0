// Feeds, looked for and read: what a run sees of a trusted site.

#include "app/cli/Handlers.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/WebLink.h"
#include "core/NumberText.h"
#include "search/feeds/Feeds.h"

namespace vorle::cli {

namespace {

struct ItemShown {
    QString site;
    QString title;
    QString link;
    std::optional<QDateTime> date;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("site", &ItemShown::site), json::field("title", &ItemShown::title),
            json::field("link", &ItemShown::link), json::field("date", &ItemShown::date));
    }
};

struct FeedShown {
    QString feed;
    QList<ItemShown> items;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("feed", &FeedShown::feed),
                          json::field("items", &FeedShown::items));
    }
};

QString itemText(const Console &console, const FeedItem &item, const QDate &today) {
    QString text = console.bold(item.title.isEmpty() ? item.link : item.title);
    if (item.date) {
        text +=
            console.faint(QStringLiteral("  ") + dayLabel(item.date->toLocalTime().date(), today));
    }
    return text + u'\n' + console.faint(item.link) + u'\n';
}

} // namespace

Task<ExitStatus> flux(Context &context, OnDemand<Feeds> feeds, const Clock &clock) {
    const QString typed = context.arguments.positional.first();
    const auto address = WebLink::typed(typed, WebLink::Host::Any);
    if (!address) {
        throw Failure(French::tr("« %1 » n’est pas une adresse web.").arg(typed));
    }
    FeedShown shown{address->text(), {}};
    Reach reach = Reach::Anywhere; // the person typed it
    if (!context.arguments.flags.contains(QStringLiteral("direct"))) {
        const auto feed = co_await feeds->discover(shown.feed, context.cancel, reach);
        if (!feed) {
            throw Failure(
                French::tr("%1 n’annonce aucun flux, ou ne répond pas. Si c’est l’adresse du "
                           "flux lui-même, ajoute --direct.")
                    .arg(shown.feed));
        }
        // The page wrote this one: elsewhere than on its own host, it leads where strangers may.
        reach = QUrl(*feed).host() == address->url().host() ? reach : Reach::PublicOnly;
        shown.feed = *feed;
    }
    const FeedReading reading = co_await feeds->read(shown.feed, typed, context.cancel, reach);
    if (reading.outcome != FeedOutcome::Read) {
        throw Failure((reading.outcome == FeedOutcome::NoFeed
                           ? French::tr("Ce n’est pas un flux RSS ou Atom : %1")
                           : French::tr("Le flux ne répond pas : %1"))
                          .arg(shown.feed));
    }
    const QDate today = clock.now().toLocalTime().date();
    for (const FeedItem &item : reading.items) {
        shown.items += {item.site, item.title, item.link, item.date};
        if (!context.arguments.json()) {
            context.console.print(itemText(context.console, item, today));
        }
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    }
    const qsizetype count = reading.items.size();
    context.console.say(QStringLiteral("%1 · %2").arg(
        shown.feed, count == 0   ? French::tr("aucun article")
                    : count == 1 ? French::tr("1 article")
                                 : French::tr("%1 articles").arg(numberText(count))));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
