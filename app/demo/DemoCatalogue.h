#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// One page of the demonstration's small web.
struct DemoPage {
    /// How the page is sent, so that every way of reading one is met.
    enum class Shape {
        Article,  ///< HTML, the text in an article element, noise around it
        Main,     ///< HTML, the text in a main element
        Body,     ///< HTML without either
        Og,       ///< HTML that holds a title and a description and draws the rest by script
        Plain,    ///< text/plain
        Markdown, ///< text/markdown
        Dead      ///< the connection closes without an answer
    };

    QString path;        ///< begins with "/", percent-encoded
    QString title;       ///< in the page's language
    QString headline;    ///< in French, what its finder calls it
    QString description; ///< empty: none
    QString kind;        ///< raw string of an ItemKind
    QStringList about;   ///< the dependencies, tools and subjects it answers; empty: not searched
    QString picture;     ///< which of the demonstration's drawings it names as its own; or empty
    QString copy;        ///< of a dead page, the path of one that tells the same news; or empty
    int blogged = 0;     ///< days since the blog announced it, 0: it did not
    Shape shape = Shape::Article;
    QString language; ///< "fr" or "en"
    QString text;     ///< paragraphs, "## " headings and "- " lists, blank lines between
};

/// The pages of the demonstration: those of its resources, their dates counted from today, and
/// pages made on the spot for any other subject. The site serves them, the demonstration agent
/// finds them. Immutable.
class DemoCatalogue {
public:
    explicit DemoCatalogue(const QDate &today,
                           const QString &root = QStringLiteral(":/vorle/demo"));

    const QDate &today() const { return m_today; }
    const QList<DemoPage> &pages() const { return m_pages; }
    /// The page at a percent-encoded path, or nothing.
    std::optional<DemoPage> at(const QString &path) const;
    /// The page at a link, when it leads to `site` (an address without a trailing slash).
    std::optional<DemoPage> pageOf(const QString &link, const QString &site) const;
    /// The pages that answer exactly `name`, as a dependency or a tool is spelled.
    QList<DemoPage> named(const QString &name) const;
    /// The pages one of whose subjects occurs in `text` as whole words, accents and case apart.
    QList<DemoPage> about(const QString &text) const;
    /// Pages made for a subject that none of the written ones is about.
    QList<DemoPage> madeFor(const QString &subject) const;

private:
    QDate m_today;
    QList<DemoPage> m_pages;
    QList<DemoPage> m_forms; ///< their path is the last segment of what is made from them
};

/// `text` in lower case, without accents, each run of other signs as one blank.
QString foldedWords(const QString &text);

/// Whether `words` occurs in `text`, both as foldedWords gives them, at word boundaries.
bool holdsWords(const QString &text, const QString &words);

} // namespace vorle
