#include "app/demo/DemoCatalogue.h"

#include "base/FrenchLocale.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <array>
#include <utility>

namespace vorle {

namespace {

/// `text` with each "{-4}" as the date 4 days before `today`, in the page's language.
QString withDates(const QString &text, const QDate &today, const QString &language) {
    static const QRegularExpression pattern(QStringLiteral(R"(\{([+-]\d{1,4})\})"));
    QString out;
    qsizetype end = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        const QDate date = today.addDays(match.capturedView(1).toInt());
        out += QStringView(text).sliced(end, match.capturedStart() - end);
        if (language == u"en") {
            out += QLocale(QLocale::English).toString(date, QStringLiteral("MMMM d, yyyy"));
        } else {
            out +=
                frenchDayNumber(date) + frenchLocale().toString(date, QStringLiteral(" MMMM yyyy"));
        }
        end = match.capturedEnd();
    }
    out += QStringView(text).sliced(end);
    return out;
}

DemoPage::Shape shapeOf(const QString &word) {
    static constexpr std::array<std::pair<QStringView, DemoPage::Shape>, 7> shapes{{
        {u"article", DemoPage::Shape::Article},
        {u"main", DemoPage::Shape::Main},
        {u"body", DemoPage::Shape::Body},
        {u"og", DemoPage::Shape::Og},
        {u"plain", DemoPage::Shape::Plain},
        {u"markdown", DemoPage::Shape::Markdown},
        {u"dead", DemoPage::Shape::Dead},
    }};
    for (const auto &[name, shape] : shapes) {
        if (word == name) {
            return shape;
        }
    }
    qFatal("a demonstration page has an unknown shape: %s", qPrintable(word));
}

/// A page's file: "key: value" lines, an empty line, the text.
DemoPage readPage(const QString &file, const QDate &today) {
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly)) {
        qFatal("a demonstration page cannot be read: %s", qPrintable(file));
    }
    const QString whole = QString::fromUtf8(source.readAll());
    const qsizetype blank = whole.indexOf(QStringLiteral("\n\n"));
    DemoPage page;
    page.language = QStringLiteral("fr");
    for (const QString &line : whole.first(std::max<qsizetype>(blank, 0)).split(u'\n')) {
        const qsizetype colon = line.indexOf(QStringLiteral(": "));
        const QString key = line.first(std::max<qsizetype>(colon, 0));
        const QString value = line.sliced(colon < 0 ? 0 : colon + 2);
        if (key == u"path") {
            page.path = value;
        } else if (key == u"title") {
            page.title = value;
        } else if (key == u"headline") {
            page.headline = value;
        } else if (key == u"description") {
            page.description = value;
        } else if (key == u"kind") {
            page.kind = value;
        } else if (key == u"about") {
            page.about = value.split(QStringLiteral(", "));
        } else if (key == u"picture") {
            page.picture = value;
        } else if (key == u"copy") {
            page.copy = value;
        } else if (key == u"blogged") {
            page.blogged = value.toInt();
        } else if (key == u"shape") {
            page.shape = shapeOf(value);
        } else if (key == u"lang") {
            page.language = value;
        }
    }
    if (page.headline.isEmpty()) {
        page.headline = page.title;
    }
    page.text = withDates(whole.sliced(blank + 2), today, page.language).trimmed();
    return page;
}

QList<DemoPage> readFolder(const QString &folder, const QDate &today) {
    QList<DemoPage> pages;
    for (const QString &name : QDir(folder).entryList(QDir::Files, QDir::Name)) {
        pages += readPage(folder + u'/' + name, today);
        if (pages.last().path.isEmpty()) {
            pages.last().path = name.first(name.lastIndexOf(u'.'));
        }
    }
    return pages;
}

const QString madePrefix = QStringLiteral("/sujets/");

DemoPage made(const DemoPage &form, const QString &subject) {
    DemoPage page = form;
    // Blanks become "_": a link with "%20" is often mangled on its way.
    const QString slug = QString(subject).replace(u' ', u'_');
    page.path = madePrefix + QString::fromLatin1(QUrl::toPercentEncoding(slug)) + u'/' + form.path;
    page.about = {subject};
    for (QString *text : {&page.title, &page.headline, &page.description, &page.text}) {
        text->replace(QStringLiteral("{subject}"), subject);
    }
    for (QString *title : {&page.title, &page.headline}) {
        *title = title->first(1).toUpper() + title->sliced(1);
    }
    return page;
}

} // namespace

QString foldedWords(const QString &text) {
    QString out;
    bool gap = false;
    for (const QChar c : text.normalized(QString::NormalizationForm_D).toLower()) {
        if (c.isLetterOrNumber()) {
            if (gap && !out.isEmpty()) {
                out += u' ';
            }
            out += c;
            gap = false;
        } else if (!c.isMark()) {
            gap = true;
        }
    }
    return out;
}

bool holdsWords(const QString &text, const QString &words) {
    return !words.isEmpty() && QString(u' ' + text + u' ').contains(QString(u' ' + words + u' '));
}

DemoCatalogue::DemoCatalogue(const QDate &today, const QString &root)
    : m_today(today)
    , m_pages(readFolder(root + QStringLiteral("/pages"), today))
    , m_forms(readFolder(root + QStringLiteral("/forms"), today)) {}

std::optional<DemoPage> DemoCatalogue::at(const QString &path) const {
    for (const DemoPage &page : m_pages) {
        if (page.path == path) {
            return page;
        }
    }
    const QStringList parts = path.split(u'/');
    if (!path.startsWith(madePrefix) || parts.size() != 4 || parts[2].isEmpty()) {
        return std::nullopt;
    }
    for (const DemoPage &form : m_forms) {
        if (form.path == parts[3]) {
            const QString slug = QUrl::fromPercentEncoding(parts[2].toUtf8());
            return made(form, QString(slug).replace(u'_', u' '));
        }
    }
    return std::nullopt;
}

std::optional<DemoPage> DemoCatalogue::pageOf(const QString &link, const QString &site) const {
    return link.startsWith(site + u'/') ? at(link.sliced(site.size())) : std::nullopt;
}

QList<DemoPage> DemoCatalogue::named(const QString &name) const {
    QList<DemoPage> found;
    std::copy_if(
        m_pages.begin(), m_pages.end(), std::back_inserter(found),
        [&](const DemoPage &page) { return page.about.contains(name, Qt::CaseInsensitive); });
    return found;
}

QList<DemoPage> DemoCatalogue::about(const QString &text) const {
    const QString words = foldedWords(text);
    QList<DemoPage> found;
    std::copy_if(
        m_pages.begin(), m_pages.end(), std::back_inserter(found), [&](const DemoPage &page) {
            return std::any_of(page.about.begin(), page.about.end(), [&](const QString &subject) {
                return holdsWords(words, foldedWords(subject));
            });
        });
    return found;
}

QList<DemoPage> DemoCatalogue::madeFor(const QString &subject) const {
    QList<DemoPage> pages;
    for (const DemoPage &form : m_forms) {
        pages += made(form, subject);
    }
    return pages;
}

} // namespace vorle
