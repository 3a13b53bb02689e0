#include "search/run/FeedItemLine.h"

#include "agents/PromptText.h"
#include "base/WebLink.h"

namespace vorle {

QString feedItemLine(const FeedItem &item) {
    QString site = oneLine(item.site, 200);
    site.replace(u']', u')');
    QString line = u'[' + site + QStringLiteral("] ") + oneLine(item.title, 300);
    if (!item.summary.isEmpty()) {
        line += QStringLiteral(" — ") + oneLine(item.summary, 400);
    }
    if (item.date) {
        line += QStringLiteral(" (") + item.date->toUTC().date().toString(Qt::ISODate) + u')';
    }
    return line + u' ' + oneLine(item.link, WebLink::longest(WebLink::Giver::Stranger));
}

} // namespace vorle
