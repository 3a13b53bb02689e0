#include "search/web/PageText.h"
#include "base/Text.h"
#include "tests/support/LiteralPageText.h"
#include "tests/support/TagSoup.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace vorle {
namespace {

PageText html(const QByteArray &page) { return extractPage(page, "text/html; charset=utf-8"); }

QByteArray text(qsizetype characters) { return QByteArray("a").repeated(characters); }

TEST(PageText, titles_and_descriptions_come_from_the_first_place_that_has_one) {
    struct Case {
        QByteArray page;
        const char16_t *title;
        const char16_t *description;
    };
    const Case cases[] = {
        {"<meta property=\"og:title\" content=\"A &amp; B\"><title>C</title>", u"A & B", u""},
        {"<meta content='A' name='og:title' /><title>C</title>", u"A", u""},
        {"<title lang=fr>\n C\t\tD \n</title>", u"C D", u""},
        {"<TITLE>C</TITLE><META NAME=\"Description\" CONTENT=\"D\">", u"C", u"D"},
        {"<meta property=\"og:title\" content=\"\"><title>C</title>", u"C", u""},
        {"<meta name='twitter:description' content='T'><meta name='description' content='D'>", u"",
         u"D"},
        {"<meta name='description' content='D'><meta property='og:description' content='O'>", u"",
         u"O"},
        {"<meta name=\"description\" content=\"C++20 > C++17\">", u"", u"C++20 > C++17"},
        {"<meta name=\"description\"content=\"no blank between\">", u"", u""},
        {"<meta name=description content=\"no quotes\">", u"", u""},
        {"<meta name=\"descriptions\" content=\"another key\">", u"", u""},
        {"<title>never closed", u"", u""},
        // A value ends at the quote that opened it.
        {"<meta name=\"description\" content=\"L'actualité de l'été\">", u"",
         u"L'actualité de l'été"},
        {"<meta content=\"D'abord\" name='description'><title>C</title>", u"C", u"D'abord"},
        {"<meta content='dit \"oui\"' property='og:title'>", u"dit \"oui\"", u""},
        {"<meta name='description' content='a\" content=\"b\">", u"", u"b"},
        {"<meta content='a > b' x=\"'\" name=\"description\">", u"", u"a > b"},
        {"<meta name='description' content=\"never ' closed>", u"", u""},
    };
    for (const auto &[page, title, description] : cases) {
        const PageText read = html(page);
        EXPECT_EQ(read.title.value_or(QString()), QString::fromUtf16(title)) << page.constData();
        EXPECT_EQ(read.description.value_or(QString()), QString::fromUtf16(description))
            << page.constData();
        EXPECT_EQ(read.level, read.title || read.description ? ReadLevel::Meta : ReadLevel::None);
    }
}

TEST(PageText, the_body_is_the_article_without_its_noise) {
    const QByteArray filler = "<p>" + text(600) + "</p>";
    const std::pair<QByteArray, QByteArray> cases[] = {
        {filler, ""},
        {"out <article class=x>in" + filler + "</article> out", "in "},
        {"out <main>in" + filler + "</main> out", "in "},
        {"<main>main</main><article>art" + filler + "</article>", "art "},
        {"<articles>no</articles><main>in" + filler + "</main>", "in "},
        {"<script>var a = '<article>';</script><NAV>menu</Nav >x</nav>k" + filler, "k "},
        {"<sty<script></script>le>gone</style>k" + filler, "k "},
        {"<script>never closed <b>k</b>" + filler, "never closed k "},
        {"<heading>k</heading>" + filler, "k "},
        {"a<br>b<>c &lt;i&gt; &amp;lt; d" + filler, "a b<>c <i> &lt; d "},
        {"a \t&nbsp;\u00A0 b\n\n \n\nc\r\n&#10;d\ne" + filler, "a b\n\nc\n\nd\ne "},
    };
    for (const auto &[page, beginning] : cases) {
        EXPECT_EQ(html(page).text, beginning + text(600)) << page.left(60).constData();
    }
}

TEST(PageText, six_hundred_characters_make_a_page_read) {
    const QByteArray described = "<meta name='description' content='D'>";
    const QByteArray accents = QByteArray("e\u0301").repeated(599);
    EXPECT_EQ(html(described + text(599)).level, ReadLevel::Meta);
    EXPECT_EQ(html(described + text(599)).text, QByteArray());
    EXPECT_EQ(html(described + text(600)).level, ReadLevel::Full);
    EXPECT_EQ(html(described + accents).level, ReadLevel::Meta);
    EXPECT_EQ(html(accents + "!").level, ReadLevel::Full);
    EXPECT_EQ(html(text(599)).level, ReadLevel::None);

    const auto plain = [](const QByteArray &body, PageExtent extent = PageExtent::Whole) {
        return extractPage(body, "Text/Markdown; charset=utf-8", extent);
    };
    EXPECT_EQ(plain(text(600)).level, ReadLevel::Full);
    EXPECT_EQ(plain("a  <b> &amp;\n\n\nc ").level, ReadLevel::Meta);
    EXPECT_EQ(plain("a  <b> &amp;\n\n\nc ").text, "a <b> &amp;\n\nc");
    EXPECT_EQ(plain(" \n ").level, ReadLevel::None);
    EXPECT_EQ(plain(text(600), PageExtent::Cut).level, ReadLevel::Seen);
    EXPECT_EQ(plain(text(600) + QByteArray(maxPageBytes, ' ')).level, ReadLevel::Seen);
    EXPECT_EQ(extractPage(text(600), "text/html", PageExtent::Cut).level, ReadLevel::Seen);
}

TEST(PageText, at_most_eight_thousand_characters_are_kept_and_none_is_cut) {
    const QByteArray family = "👩‍👩‍👧‍👦";
    for (const QByteArray &unit : {QByteArray("a"), QByteArray("é"), family, QByteArray("e\u0301"),
                                   QByteArray("a <b>b</b>"), QByteArray("&amp;")}) {
        const PageText read = html(unit.repeated(20'000));
        const QString kept = QString::fromUtf8(read.text);
        EXPECT_EQ(characterCount(kept), 8'000) << unit.constData();
        EXPECT_TRUE(QByteArrayView(read.text).isValidUtf8());
        EXPECT_EQ(read, test::literalPageText(QString::fromUtf8(unit.repeated(20'000))));
        EXPECT_EQ(characterCount(
                      QString::fromUtf8(extractPage(unit.repeated(20'000), "text/plain").text)),
                  8'000);
    }
    EXPECT_EQ(html("<title>" + text(1'400'000) + "</title>").title->size(), maxLineCharacters);
    // A character may hold any number of marks: bytes are bounded too.
    const QByteArray marked = "a" + QByteArray("\u0301").repeated(100);
    const PageText piled =
        html("<title>" + marked.repeated(4'000) + "</title><meta content='" +
             marked.repeated(4'000) + "' name='description'>" + marked.repeated(4'000));
    for (const QString &kept : {*piled.title, *piled.description, QString::fromUtf8(piled.text)}) {
        EXPECT_LE(kept.toUtf8().size(), maxBodyCharacters * bytesPerCharacter);
        EXPECT_EQ(kept.size() % 101, 0) << "none is cut";
        EXPECT_GT(kept.size(), 100);
    }
    EXPECT_EQ(piled.level, ReadLevel::Full);
    // A page that begins with a long stretch of nothing is looked at further on.
    const PageText late = html("<p> </p>" + QByteArray("<i> </i>\n").repeated(100'000) + text(700));
    EXPECT_EQ(late.text, text(700));
}

TEST(PageText, the_charset_is_found_where_the_page_says_it) {
    const QString words = QStringLiteral("<title>Été à l’ombre</title>");
    const QByteArray utf8 = words.toUtf8();
    const QByteArray latin = "<title>\xC9t\xE9 \xE0 l\x92ombre</title>";
    const QByteArray utf16(
        "\xFF\xFE" + QByteArray(reinterpret_cast<const char *>(words.utf16()), words.size() * 2));
    const std::pair<QByteArray, QByteArray> cases[] = {
        {utf8, "text/html; charset=UTF-8"},
        {utf8, "text/html"},
        {utf8, ""},
        {utf8, "application/xhtml+xml; charset=\"utf-8\""},
        {utf8, "text/html; charset=no-such-charset"},
        {"\xEF\xBB\xBF" + utf8, "text/html; charset=iso-8859-1"},
        {utf16, "text/html"},
        {latin, "text/html; charset=ISO-8859-1"},
        {latin, "text/html; Charset = 'windows-1252'"},
        {latin, "text/html"},
        {latin, "text/html; charset=utf-8"}, // what it says is not so
        {"<meta charset=iso-8859-1>" + latin, "text/html"},
        {"<meta charset=\"utf-16\">" + utf8, "text/html"},
        // What is UTF-8 is UTF-8.
        {utf8, "text/html; charset=ISO-8859-1"},
        {utf8, "text/html; charset=shift_jis"},
        {utf8, "text/html; charset=utf-16"},
        {"<meta charset=iso-8859-1>" + utf8, "text/html"},
        {"<meta charset=windows-1252>" + utf8 + "\xE2\x80", "text/html"},
    };
    for (const auto &[bytes, type] : cases) {
        EXPECT_EQ(extractPage(bytes, type).title, QStringLiteral("Été à l’ombre"))
            << type.constData() << ' ' << bytes.left(30).constData();
    }
    const QByteArray koi8 = "<meta http-equiv=\"Content-Type\" content=\"text/html; "
                            "charset=koi8-r\"><title>\xED\xC9\xD2</title>";
    EXPECT_EQ(extractPage(koi8, "text/html").title, QStringLiteral("Мир"));
    // One broken byte does not turn a UTF-8 page into gibberish; neither does a cut character.
    EXPECT_EQ(extractPage("<title>\xC3\xA9t\xC3\xA9 \xC3\xA0 \xFF</title>", "").title,
              QStringLiteral("été à \uFFFD"));
    EXPECT_EQ(extractPage("<title>\xC3\xA9</title>\xE2\x82", "", PageExtent::Cut).title,
              QStringLiteral("é"));
}

TEST(PageText, what_is_no_text_reads_as_nothing) {
    const QByteArray page = "<title>T</title>" + text(700);
    for (const char *type : {"image/png", "image/svg+xml", "application/pdf", "application/x-gzip",
                             "Video/MP4; codecs=x", "font/woff2"}) {
        EXPECT_EQ(extractPage(page, type), PageText()) << type;
    }
    for (const char *type : {"", "text/html", "text/plain"}) {
        EXPECT_EQ(extractPage(QByteArray(1, '\0') + page, type), PageText());
        EXPECT_EQ(extractPage("%PDF-1.7\n" + page, type), PageText());
        EXPECT_EQ(extractPage({}, type), PageText());
    }
    const PageText trailing = html(text(2'000) + QByteArray(3, '\0'));
    EXPECT_EQ(trailing.text, text(2'000)) << "a server that sends its buffer's end along";
    // Under whatever name else, it is what its bytes are.
    for (const char *type : {"application/json", "application/octet-stream", "application/x-yaml",
                             "html", "text/html charset=utf-8"}) {
        EXPECT_EQ(extractPage(page, type).level, ReadLevel::Full) << type;
    }
    EXPECT_EQ(extractPage("<b>", "text/plain charset=utf-8").text, "<b>");
}

TEST(PageText, scanners_give_what_the_patterns_give) {
    QRandomGenerator random(20'260'401);
    int levels[4] = {};
    for (int i = 0; i < 6'000; ++i) {
        QByteArray choices(random.bounded(1, 40), '\0');
        for (char &choice : choices) {
            choice = static_cast<char>(random.bounded(256));
        }
        const QByteArray page = test::tagSoup(choices);
        const PageText scanned = html(page);
        ASSERT_EQ(scanned, test::literalPageText(QString::fromUtf8(page)))
            << page.constData() << "\n(" << choices.toHex().constData() << ')';
        ++levels[static_cast<int>(scanned.level)];
    }
    EXPECT_GT(levels[static_cast<int>(ReadLevel::Full)], 1'000);
    EXPECT_GT(levels[static_cast<int>(ReadLevel::Meta)], 50);
}

} // namespace
} // namespace vorle
