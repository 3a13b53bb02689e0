#include "base/Text.h"

#include <QRandomGenerator>
#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(Text, cuts_count_what_a_reader_sees) {
    const QString family =
        QStringLiteral("👩‍👩‍👧‍👦");  // one character, eleven code units
    const QString accent = QStringLiteral("e\u0301"); // one character, two code units
    EXPECT_EQ(characterCount(family + accent + QStringLiteral("\r\nx")), 4);
    EXPECT_EQ(firstCharacters(QStringLiteral("ab") + family + accent, 3).toString(),
              QStringLiteral("ab") + family);
    EXPECT_EQ(firstCharacters(QStringLiteral("abc") + accent, 3), u"abc");
    EXPECT_EQ(firstCharacters(QStringLiteral("abce\u0301"), 4), QStringLiteral("abce\u0301"));
    EXPECT_EQ(firstCharacters(QStringLiteral("abc"), 5), u"abc");
    EXPECT_EQ(firstCharacters(u"abc", 0), u"");
    EXPECT_EQ(lastCharacters(QStringLiteral("x") + accent + QStringLiteral("z"), 2).toString(),
              accent + QStringLiteral("z"));
    EXPECT_EQ(lastCharacters(u"ab", 9), u"ab");
    // A cluster longer than any window still is one character.
    const QString tower = QStringLiteral("a") + QString(5'000, QChar(0x0301));
    EXPECT_EQ(firstCharacters(tower + QStringLiteral("bc"), 2), tower + QStringLiteral("b"));
    EXPECT_EQ(firstCharacters(tower, 1), tower);
}

TEST(Text, characters_are_the_platforms_own) {
    const QList<QString> pieces{
        QStringLiteral("a"),       QStringLiteral("é"),      QStringLiteral("’"),
        QStringLiteral("Ж"),       QStringLiteral("漢"),     QStringLiteral("か"),
        QStringLiteral("…"),       QStringLiteral("€"),      QStringLiteral("\u0301"),
        QStringLiteral("\r"),      QStringLiteral("\n"),     QStringLiteral("👩"),
        QStringLiteral("\u200D"),  QStringLiteral("🇫"),      QStringLiteral("한"),
        QStringLiteral("\u1100"),  QStringLiteral("\u3099"), QStringLiteral("©"),
        QStringLiteral("\u0600"),  QString(QChar(0xD83D)),   QString(40, u'a'),
        QString(40, QChar(0x0301))};
    QRandomGenerator random(7);
    for (int i = 0; i < 3'000; ++i) {
        QString text;
        for (int length = random.bounded(40); length > 0; --length) {
            text += pieces[random.bounded(static_cast<int>(pieces.size()))];
        }
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        qsizetype count = 0;
        for (; finder.toNextBoundary() != -1; ++count) {
            ASSERT_EQ(firstCharacters(text, count + 1).size(), finder.position())
                << qPrintable(text);
        }
        ASSERT_EQ(characterCount(text), count) << qPrintable(text);
    }
    // Whatever two code units the shortcut takes for two characters are two.
    for (char16_t c = 1; c < 0xD800; ++c) {
        for (const char16_t other : {u'a', u'©', u'漢', u'ぁ', u'ж', u'—', c}) {
            for (const QString &pair :
                 {QString(QChar(c)) + QChar(other), QString(QChar(other)) + QChar(c)}) {
                QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, pair);
                ASSERT_EQ(firstCharacters(pair, 1).size(), finder.toNextBoundary()) << int(c);
            }
        }
    }
}

TEST(Text, entities_are_decoded_in_one_pass) {
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"&amp;lt;", u"&lt;"},
        {u"a &lt;b&gt; &quot;c&quot; &#39;&#x27;&apos;", u"a <b> \"c\" '''"},
        {u"&rsquo;&lsquo;&hellip;&mdash;&ndash;&nbsp;.", u"’‘…—– ."},
        {u"&#233;&#xE9;&#x1F600;", u"éé😀"},
        {u"&#xD800;&#0;&#x110000;&#99999999999999999999;", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {u"&unknown; &amp &# &#; &#x; &#xZ; &#12", u"&unknown; &amp &# &#; &#x; &#xZ; &#12"},
        {u"&", u"&"},
    };
    for (const auto &[in, out] : cases) {
        EXPECT_EQ(decodeEntities(QString::fromUtf16(in)), QString::fromUtf16(out));
    }
}

TEST(Text, byte_limits_never_cut_a_code_point) {
    const QString text = QStringLiteral("aé€😀");
    EXPECT_EQ(utf8Size(text), text.toUtf8().size());
    for (qsizetype limit = 0; limit <= 11; ++limit) {
        const QStringView prefix = utf8Prefix(text, limit);
        EXPECT_LE(prefix.toUtf8().size(), limit);
        EXPECT_EQ(prefix.toUtf8(), text.toUtf8().first(prefix.toUtf8().size()));
    }
    EXPECT_EQ(utf8Prefix(text, 9).size(), 3);
    const QString lone = QString(QChar(0xDC00)) + QStringLiteral("a");
    EXPECT_GE(utf8Size(lone), lone.toUtf8().size());
}

TEST(Text, what_hides_or_turns_words_round_is_left_out) {
    const auto shown = [](const char16_t *text) { return withoutHidden(QString::fromUtf16(text)); };
    EXPECT_EQ(shown(u"Été\u202Eegats\u202C, no\u00ADtes"), u"Étéegats, notes");
    EXPECT_EQ(shown(u"\U000E0041\u2066a\u2069\uFEFF"), u"a");
    // What scripts and emoji need stays: joiners behind what takes them, the drawn number sign.
    for (const char16_t *kept :
         {u"👩\u200D💻 caf\u0301", u"👩🏽\u200D❤\uFE0F\u200D👨", u"می\u200Cخواهم", u"क्\u200Dष",
          u"\u0600۱۲", u"été : « oui » 10\u202F000"}) {
        EXPECT_EQ(shown(kept), kept);
    }
    EXPECT_EQ(shown(u"pass\u200Cword é\u200Dté \u200D."), u"password été .");
    EXPECT_EQ(shown(u"می\u200C\u200C\u200Dخ"), u"می\u200Cخ");
}

TEST(Text, a_strangers_text_is_held_to_what_can_be_shown) {
    const auto line = [](const char16_t *text) {
        return clampedLine(QString::fromUtf16(text), 12);
    };
    EXPECT_EQ(line(u" a\r\n\tb\u2028c\u001B\u0085 \u202Ed\u0007 "), u"a b c d");
    EXPECT_EQ(line(u"10\u202F000\u00A0€  ?"), u"10\u202F000\u00A0€ ?");
    EXPECT_EQ(line(u"abcdefghijkl plus loin"), u"abcdefghijkl");
    EXPECT_EQ(line(u"\n \u200B\n"), u"");
    const auto lines = [](const char16_t *text) {
        return clampedLines(QString::fromUtf16(text), 30);
    };
    EXPECT_EQ(lines(u"\n \r\n  if x:\r\n\tpass\n\n"), u"  if x:\n\tpass");
    EXPECT_EQ(lines(u"a\rb\u2029c\u0007d"), u"a\nb\ncd");
    const QString piled = u'a' + QString(100'000, QChar(0x301));
    EXPECT_LE(clampedLines(piled, 100).size(), 800) << "characters may be of any size";
}

TEST(Text, blanks_are_unicodes) {
    for (const char16_t c : {u' ', u'\n', u'\t', u'\r', u'\v', u'\f', u'\u00A0', u'\u2003',
                             u'\u2028', u'\u202F', u'\u3000'}) {
        EXPECT_TRUE(isBlank(c)) << int(c);
    }
    for (const char16_t c : {u'a', u'\u200B', u'\uFEFF', u'\u0000'}) {
        EXPECT_FALSE(isBlank(c)) << int(c);
    }
    EXPECT_EQ(trimmed(u"\u00A0 a b\u3000\n"), u"a b");
    EXPECT_EQ(trimmed(u" \n"), u"");
}

} // namespace
} // namespace vorle
