#include "app/demo/DemoBlog.h"

#include <QLocale>

#include <algorithm>

namespace vorle {

namespace {

QString feedPath() { return demoBlogPath() + QStringLiteral("flux.xml"); }

QList<DemoPage> announced(const DemoCatalogue &catalogue) {
    QList<DemoPage> pages;
    std::copy_if(catalogue.pages().begin(), catalogue.pages().end(), std::back_inserter(pages),
                 [](const DemoPage &page) { return page.blogged > 0; });
    std::stable_sort(pages.begin(), pages.end(),
                     [](const DemoPage &a, const DemoPage &b) { return a.blogged < b.blogged; });
    return pages;
}

QByteArray home(const QList<DemoPage> &pages) {
    QString list;
    for (const DemoPage &page : pages) {
        list += QStringLiteral("<li><a href=\"%1\">%2</a></li>\n")
                    .arg(page.path, page.headline.toHtmlEscaped());
    }
    return QStringLiteral("<!doctype html>\n<html lang=\"fr\">\n<head>\n<meta charset=\"utf-8\">\n"
                          "<title>Carnet du web</title>\n"
                          "<link rel=\"stylesheet\" href=\"/style.css\">\n"
                          "<link rel=\"alternate\" type=\"application/rss+xml\" "
                          "title=\"Les billets\" href=\"%1\">\n</head>\n"
                          "<body>\n<main>\n<h1>Carnet du web</h1>\n<ul>\n%2</ul>\n</main>\n</body>"
                          "\n</html>\n")
        .arg(feedPath(), list)
        .toUtf8();
}

/// One item; every other one carries its texts as HTML in CDATA, as many feeds do.
QString item(const DemoPage &page, const QString &site, const QDate &today, bool inCdata) {
    const QString html = QStringLiteral("<p>%1</p>").arg(page.description.toHtmlEscaped());
    const auto text = [&](const QString &plain, const QString &marked) {
        return inCdata ? QStringLiteral("<![CDATA[") + marked + QStringLiteral("]]>")
                       : plain.toHtmlEscaped();
    };
    // English names whatever the system's language, and the day before 10 with a single digit.
    const QString date = QLocale::c().toString(today.addDays(-page.blogged),
                                               QStringLiteral("ddd, d MMM yyyy '07:40:00 +0000'"));
    return QStringLiteral("<item>\n<title>%1</title>\n<link>%2</link>\n"
                          "<guid isPermaLink=\"false\">billet-%3</guid>\n<pubDate>%4</pubDate>\n"
                          "<description>%5</description>\n</item>\n")
        .arg(text(page.headline, page.headline), site + page.path, page.path.section(u'/', -1),
             date, text(page.description, html));
}

QByteArray feed(const QList<DemoPage> &pages, const QString &site, const QDate &today) {
    QString items;
    for (qsizetype i = 0; i < pages.size(); ++i) {
        items += item(pages[i], site, today, i % 2 == 1);
    }
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rss version=\"2.0\">\n"
                          "<channel>\n<title>Carnet du web</title>\n<link>%1</link>\n"
                          "<description>Notes et liens, une à deux fois par semaine.</description>"
                          "\n<language>fr</language>\n%2</channel>\n</rss>\n")
        .arg(site + demoBlogPath(), items)
        .toUtf8();
}

} // namespace

std::optional<DemoBody> blogAnswer(const DemoCatalogue &catalogue, const QString &path,
                                   const QString &site) {
    if (path == demoBlogPath()) {
        return DemoBody{"text/html; charset=utf-8", home(announced(catalogue))};
    }
    if (path == feedPath()) {
        return DemoBody{"application/rss+xml; charset=utf-8",
                        feed(announced(catalogue), site, catalogue.today())};
    }
    return std::nullopt;
}

} // namespace vorle
