#include "app/demo/DemoPageWriter.h"

#include <QFile>
#include <QStringList>

namespace vorle {

namespace {

QString escaped(const QString &text) {
    // As much of the web does: a numeric entity for the typographic apostrophe.
    return text.toHtmlEscaped().replace(u'’', QStringLiteral("&#8217;"));
}

/// Paragraphs, headings and lists as HTML, one element a line.
QString blocks(const QString &text) {
    QString html;
    bool inList = false;
    const auto closeList = [&] {
        if (std::exchange(inList, false)) {
            html += QStringLiteral("</ul>\n");
        }
    };
    for (const QString &line : text.split(u'\n')) {
        if (line.startsWith(QStringLiteral("- "))) {
            html += inList ? QString() : QStringLiteral("<ul>\n");
            inList = true;
            html += QStringLiteral("<li>") + escaped(line.sliced(2)) + QStringLiteral("</li>\n");
            continue;
        }
        closeList();
        if (line.startsWith(QStringLiteral("## "))) {
            html +=
                QStringLiteral("\n<h2>") + escaped(line.sliced(3)) + QStringLiteral("</h2>\n\n");
        } else if (!line.isEmpty()) {
            html += QStringLiteral("<p>") + escaped(line) + QStringLiteral("</p>\n\n");
        }
    }
    closeList();
    return html;
}

QString meta(const QString &attribute, const QString &key, const QString &value) {
    return QStringLiteral("<meta %1=\"%2\" content=\"%3\">\n").arg(attribute, key, escaped(value));
}

QString head(const DemoPage &page) {
    QString html = QStringLiteral("<meta charset=\"utf-8\">\n<title>%1 | %2</title>\n")
                       .arg(escaped(page.title), QStringLiteral("Le Relevé"));
    html += meta(QStringLiteral("property"), QStringLiteral("og:title"), page.title);
    if (!page.picture.isEmpty()) {
        html += meta(QStringLiteral("property"), QStringLiteral("og:image"),
                     demoPictureFolder() + page.picture + QStringLiteral(".png"));
    }
    if (page.shape == DemoPage::Shape::Main) {
        html += QStringLiteral("<meta content=\"%1\" name=\"description\">\n")
                    .arg(escaped(page.description));
    } else if (!page.description.isEmpty()) {
        html +=
            meta(QStringLiteral("property"), QStringLiteral("og:description"), page.description);
    }
    return html;
}

QString body(const DemoPage &page) {
    static const QString noise =
        QStringLiteral("<header><p>Le Relevé, notes de praticiens</p></header>\n"
                       "<nav><a href=\"/\">Accueil</a> <a href=\"/tout\">Tout voir</a></nav>\n");
    static const QString tail =
        QStringLiteral("<footer>Page de démonstration, servie par cette machine.</footer>\n"
                       "<script>document.title += '';</script>\n");
    const QString content =
        QStringLiteral("<h1>%1</h1>\n\n").arg(escaped(page.title)) + blocks(page.text);
    switch (page.shape) {
    case DemoPage::Shape::Article:
        return noise + QStringLiteral("<article class=\"note\">\n") + content +
               QStringLiteral("</article>\n<aside>À lire aussi : d’autres notes.</aside>\n") + tail;
    case DemoPage::Shape::Main:
        return noise + QStringLiteral("<main>\n") + content + QStringLiteral("</main>\n") + tail;
    case DemoPage::Shape::Og:
        return QStringLiteral("<div id=\"app\"></div>\n<script src=\"/app.js\"></script>\n");
    default:
        return QStringLiteral("<style>.c{margin:1rem}</style>\n<div class=\"c\">\n") + content +
               QStringLiteral("</div>\n<form><input name=\"q\"></form>\n") + tail;
    }
}

} // namespace

std::optional<DemoBody> pictureAnswer(const QString &path) {
    if (!path.startsWith(demoPictureFolder())) {
        return std::nullopt;
    }
    const QString name = path.sliced(demoPictureFolder().size());
    QFile picture(QStringLiteral(":/vorle/demo/pictures/") + name);
    if (name.contains(u'/') || !name.endsWith(QStringLiteral(".png")) ||
        !picture.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return DemoBody{"image/png", picture.readAll()};
}

DemoBody writePage(const DemoPage &page) {
    switch (page.shape) {
    case DemoPage::Shape::Dead:
        return {};
    case DemoPage::Shape::Plain:
        return {"text/plain; charset=utf-8", page.text.toUtf8()};
    case DemoPage::Shape::Markdown:
        return {"text/markdown; charset=utf-8", page.text.toUtf8()};
    default:
        break;
    }
    const QString html = QStringLiteral("<!doctype html>\n<html lang=\"%1\">\n<head>\n%2</head>\n"
                                        "<body>\n%3</body>\n</html>\n");
    return {"text/html; charset=utf-8", html.arg(page.language, head(page), body(page)).toUtf8()};
}

} // namespace vorle
