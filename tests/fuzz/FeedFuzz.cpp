#include "base/WebLink.h"
#include "search/feeds/FeedDate.h"
#include "search/feeds/FeedParser.h"
#include "search/feeds/Feeds.h"
#include "search/run/FeedItemLine.h"
#include "tests/fuzz/Require.h"

#include <array>

// The size chooses a content type. Whatever the bytes are, they read as bounded items on one line
// with http(s) links, as a date or none, and as a page that announces an http(s) feed or none.
namespace {

using namespace vorle;
using fuzz::require;

bool isOneLine(const QString &text, qsizetype most) {
    return text.size() <= most * 64 && text == text.simplified() && !text.contains(u'\0');
}

bool isWebLink(const QString &link) {
    return link.startsWith(u"http://") || link.startsWith(u"https://");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static constexpr std::array<QByteArrayView, 6> types{
        "application/rss+xml",        "",
        "text/xml; charset=us-ascii", "text/xml; charset=shift_jis",
        "text/xml; charset=utf-16",   "text/xml; charset=iso-8859-1"};
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const QUrl address(QStringLiteral("https://site.example/flux/index.xml"));
    const auto items = parseFeed(bytes, types[size % types.size()], address, QStringLiteral("s"));
    for (const FeedItem &item : items.value_or(QList<FeedItem>())) {
        require(isWebLink(item.link) &&
                    item.link.size() <= WebLink::longest(WebLink::Giver::Stranger),
                "not a link", bytes);
        require(isOneLine(item.title, 300) && isOneLine(item.summary, 400), "not a line", bytes);
        const QString line = feedItemLine(item);
        require(line == line.trimmed() && !line.contains(u'\n') && !line.contains(u"\"\"\"") &&
                    !line.contains(u"```"),
                "not a prompt's line", bytes);
    }
    const auto date = parseFeedDate(bytes);
    require(!date || date->isValid(), "not a date", bytes);
    const auto feed = announcedFeed(bytes, address);
    require(!feed || isWebLink(*feed), "not a feed's address", bytes);
    return 0;
}
