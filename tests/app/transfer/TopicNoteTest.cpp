#include "app/transfer/TopicNote.h"
#include "app/transfer/MarkdownText.h"
#include "briefs/BriefWriter.h"
#include "tests/core/Samples.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Text.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::text;
using testing::HasSubstr;
using testing::Not;

/// A note as a reader of Markdown that is not ours takes it, the front matter apart.
struct ReadNote {
    explicit ReadNote(const QByteArray &note) {
        const qsizetype end = note.indexOf("\n---\n", 4);
        EXPECT_TRUE(note.startsWith("---\n") && end > 0) << note.toStdString();
        front = note.first(end).split('\n');
        document.setMarkdown(QString::fromUtf8(note.sliced(end + 5)));
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            if (block.blockFormat().headingLevel() > 0) {
                headings += block.text();
            }
            for (auto at = block.begin(); !at.atEnd(); ++at) {
                const QTextCharFormat format = at.fragment().charFormat();
                pictures += format.isImageFormat() ? 1 : 0;
                if (format.isAnchor()) {
                    links += format.anchorHref();
                }
                marked += !format.isAnchor() && block.blockFormat().headingLevel() == 0 &&
                                  (format.fontWeight() > QFont::Normal || format.fontItalic() ||
                                   format.fontStrikeOut() || format.fontFixedPitch())
                              ? 1
                              : 0;
            }
        }
    }

    QByteArrayList front;
    QTextDocument document;
    QStringList headings;
    QStringList links;
    int pictures = 0;
    int marked = 0; // passages in bold, italic, struck out or code
};

TEST(TopicNote, tells_all_there_is_to_a_topic) {
    Topic topic = sampleTopic(text("Une faille de zlib « 1.3 »"), TopicStatus::Done);
    topic.id = QUuid(QStringLiteral("1f2e3d4c-0000-4000-8000-000000000000"));
    topic.kind = QStringLiteral("faille");
    topic.project = QStringLiteral("Tiravue");
    topic.note = text("à montrer\nà Zoé");
    topic.changes = QStringList{QStringLiteral("un"), QStringLiteral("deux")};
    topic.correction = Correction{9, {QStringLiteral("security")}, text("vu"), topic.foundAt};
    topic.doneAt = QDateTime(QDate(2026, 11, 1), QTime(23, 30), Qt::UTC); // the next day in Paris
    topic.worth = Worth::Gem;
    topic.brief = Brief{{{QStringLiteral("Clé"), QStringLiteral("Corps.")}},
                        {{codePartTitle(), QStringLiteral("if (a < b) {\n    ``` \n}")}},
                        QStringLiteral("Mets à jour."),
                        {QStringLiteral("Quand ?")},
                        {{QStringLiteral("Avis"), QStringLiteral("https://example.org/avis"),
                          QStringLiteral("la date")}}};
    const QByteArray note = topicNote(topic, QTimeZone("Europe/Paris"));
    const ReadNote read(note);
    for (const char *line :
         {"id: \"1F2E3D4C-0000-4000-8000-000000000000\"", "rubrique: \"Bibliothèque\"", "note: 9",
          "note_de_vorle: 7", "avis: \"Pépite\"", "fait: 2026-11-02", "trouve: 2026-11-01",
          "projet: \"Tiravue\"", "tags: [vorle, vorle/bibliotheque]"}) {
        EXPECT_TRUE(read.front.contains(line)) << line << '\n' << note.toStdString();
    }
    const QString words = read.document.toPlainText();
    for (const char *said : {"Résumé de", "à montrer", "Zoé", "deux", "Corps.", "if (a < b) {",
                             "    ``` ", "Mets à jour.", "Quand", "la date"}) {
        EXPECT_TRUE(words.contains(text(said))) << said << '\n' << note.toStdString();
    }
    EXPECT_TRUE(read.links.contains(QStringLiteral("https://example.org/avis")));
    EXPECT_EQ(note, topicNote(topic, QTimeZone("Europe/Paris")));
    EXPECT_TRUE(note.endsWith(")\n") && !note.contains("\n\n\n")) << note.toStdString();
}

TEST(TopicNote, is_no_markup_whatever_strangers_wrote) {
    Topic plain = sampleTopic(QStringLiteral("x"));
    plain.sources.clear();
    const QStringList headings = ReadNote(topicNote(plain)).headings;
    QStringList words{
        QStringLiteral("![p](http://127.0.0.1/p.png)"),
        QStringLiteral("<img src='http://127.0.0.1/p.png'>"),
        QStringLiteral("[[note]] %%caché%% ==vu== $x$ #etiquette ^bloc"),
        QStringLiteral("# titre\n---\n===\n- a\n+ b\n1. c\n2) d\n> e\n    code\n\tcode"),
        QStringLiteral("**gras** _italique_ __x__ ~~barre~~ `code` | a | b |"),
        QStringLiteral("&lt;b&gt; &#60;b> \\*x\\* [a]: http://127.0.0.1"),
        QStringLiteral("---\nid: \"autre\"\n---"),
        QStringLiteral("```\nfin\n```\n~~~\nfin")};
    words += test::hostileTexts();
    for (const QString &each : std::as_const(words)) {
        Topic topic = plain;
        topic.title = each;
        topic.summary = each;
        topic.sources = {{each, QStringLiteral("javascript:alert(1)")}};
        topic.changes = QStringList{each};
        topic.project = each;
        const QByteArray note = topicNote(topic);
        const ReadNote read(note);
        EXPECT_EQ(read.pictures, 0) << note.toStdString();
        EXPECT_EQ(read.marked, 0) << note.toStdString();
        EXPECT_EQ(read.headings.size(), headings.size() + 2) << note.toStdString();
        for (const QString &link : read.links) { // a reader may make one of a bare address
            EXPECT_TRUE(link.startsWith(u"http://127.0.0.1")) << note.toStdString();
        }
        EXPECT_EQ(std::count_if(read.front.begin(), read.front.end(),
                                [](const QByteArray &line) { return line.startsWith("id:"); }),
                  1)
            << note.toStdString();
    }
    // Ordinary words stay readable as they are.
    EXPECT_EQ(markdown::plainText(QStringLiteral("C# 13, a_b et 50 %, x = 1")),
              QStringLiteral("C# 13, a_b et 50\u00A0%, x = 1"));
}

TEST(TopicNote, is_named_by_its_title) {
    const auto named = [](const char *title) {
        return markdown::fileStem(text(title)).toStdString();
    };
    EXPECT_EQ(named("Où va l’été ? C++20 & Qt"), "ou-va-l-ete-c-20-qt");
    EXPECT_EQ(named("../../etc/passwd"), "etc-passwd");
    EXPECT_EQ(named("日本語"), "sujet");
    EXPECT_EQ(named("ﬁn Ⅷ"), "fin-viii");
    EXPECT_EQ(named("mot long ").size(), 8U);
    EXPECT_EQ(markdown::fileStem(QString(300, u'a')).size(), 60);
    EXPECT_EQ(markdown::fileStem(QStringLiteral("mot ").repeated(40)).right(4),
              QStringLiteral("-mot"));
}

} // namespace
} // namespace vorle
