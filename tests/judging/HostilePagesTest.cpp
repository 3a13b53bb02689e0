// What strangers write against the judge, one sample a trick (tests/samples/hostile-pages) and
// hundreds put together, read back from the assembled prompt by a reader of its own that is as
// gullible as can be (tests/support/HostileTexts).

#include "judging/Judge.h"
#include "tests/support/HostileTexts.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::gullible;
using test::hostileTexts;
using test::looksLikeHeading;

struct Prompt {
    QStringList outside;  ///< the lines that stand between no fences
    QStringList contents; ///< what stands between fences
    QStringList faults;
};

Prompt readBack(const QString &text) {
    Prompt prompt;
    QStringList content;
    bool inside = false;
    for (const QString &line : gullible(text).split(u'\n')) {
        if (line.trimmed() == u"\"\"\"") {
            if (inside) {
                prompt.contents += content.join(u'\n');
                content.clear();
            }
            inside = !inside;
        } else if (inside) {
            content += line;
            if (looksLikeHeading(line)) {
                prompt.faults += QStringLiteral("heading in a content: ") + line;
            }
        } else {
            prompt.outside += line;
        }
        if (line.trimmed() != u"\"\"\"" && line.contains(QStringLiteral("\"\"\""))) {
            prompt.faults += QStringLiteral("fence in a line: ") + line;
        }
    }
    if (inside) {
        prompt.faults += QStringLiteral("a content without end");
    }
    return prompt;
}

/// A line without what varies: "Title: T" as "Title", "- T" as "-". What is no link has no line.
QStringList skeleton(const QStringList &lines) {
    QStringList heads;
    for (const QString &line : lines) {
        heads +=
            line.startsWith(u"- ") ? QStringLiteral("-") : line.section(QStringLiteral(": "), 0, 0);
    }
    heads.removeAll(QStringLiteral("Link"));
    return heads;
}

class HostilePages : public testing::Test {
protected:
    static QByteArray bytesOf(const QString &path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static QList<std::pair<QString, QByteArray>> samples() {
        const QDir folder(QStringLiteral(VORLE_SAMPLES "/hostile-pages"));
        QList<std::pair<QString, QByteArray>> all;
        for (const QString &name : folder.entryList(QDir::Files)) {
            all += {name, bytesOf(folder.filePath(name))};
        }
        return all;
    }

    static JudgeCandidate candidate(const char *id, const QByteArray &content) {
        JudgeCandidate one;
        one.id = QString::fromLatin1(id);
        one.title = QStringLiteral("Un titre");
        one.url = QStringLiteral("https://example.org/");
        one.note = QStringLiteral("une note");
        one.level = ReadLevel::Full;
        one.content = content;
        return one;
    }

    static TopicPtr example(const QString &title, const QByteArray &text) {
        Topic topic;
        topic.id = QUuid(QStringLiteral("0A0B0C0D-0000-4000-8000-000000000001"));
        topic.title = title;
        topic.status = TopicStatus::Dismissed;
        topic.sources = {{QStringLiteral("s"), QStringLiteral("https://example.org/")}};
        topic.seenText = text;
        return std::make_shared<const Topic>(std::move(topic));
    }

    /// The whole prompt, the text of a page in it.
    QString withPage(const QByteArray &page) const {
        return judgePrompt(
            m_instruction, QDate(2026, 11, 21), {}, {}, {example(QStringLiteral("Un sujet"), page)},
            {candidate("c1", "Premier."), candidate("c2", page), candidate("c3", "Dernier.")});
    }

    /// The whole prompt, `text` wherever a line holds what others wrote.
    QString withLines(const QString &text) const {
        JudgeCandidate one = candidate("c1", "Texte.");
        one.title = text;
        one.url = QStringLiteral("https://example.org/") + text;
        one.note = text;
        JudgeProfile profile;
        profile.job = text;
        profile.projects = {{text, text, {text}, {text, text}}};
        profile.interests = {{text, 3}};
        profile.tools = {text};
        return judgePrompt(m_instruction, QDate(2026, 11, 21), profile, {text},
                           {example(text, "Texte.")}, {one});
    }

    QString m_instruction =
        QString::fromUtf8(bytesOf(QStringLiteral(VORLE_RESOURCES "/judge-prompt.md")));
};

TEST_F(HostilePages, never_leave_their_fence) {
    const Prompt calm = readBack(withPage("goule"));
    ASSERT_EQ(calm.contents, (QStringList{QStringLiteral("goule"), QStringLiteral("Premier."),
                                          QStringLiteral("goule"), QStringLiteral("Dernier.")}));
    const auto pages = samples();
    ASSERT_GE(pages.size(), 20);
    for (const auto &[name, page] : pages) {
        SCOPED_TRACE(name.toStdString());
        const Prompt prompt = readBack(withPage(page));
        EXPECT_EQ(prompt.faults, QStringList());
        EXPECT_EQ(prompt.outside, calm.outside);
        ASSERT_EQ(prompt.contents.size(), 4);
        EXPECT_EQ(prompt.contents[1], u"Premier.");
        EXPECT_TRUE(prompt.contents[2].contains(QStringLiteral("goule")));
        EXPECT_EQ(prompt.contents[3], u"Dernier.");
    }
}

TEST_F(HostilePages, never_leave_their_line) {
    const Prompt calm = readBack(withLines(QStringLiteral("goule")));
    for (const auto &[name, page] : samples()) {
        SCOPED_TRACE(name.toStdString());
        const Prompt prompt = readBack(withLines(QString::fromUtf8(page)));
        EXPECT_EQ(prompt.faults, QStringList());
        EXPECT_EQ(skeleton(prompt.outside), skeleton(calm.outside));
        EXPECT_EQ(prompt.contents, calm.contents);
    }
}

// Every line break times every fence times every heading, as a page and in every line.
TEST_F(HostilePages, put_together_leave_neither_their_fence_nor_their_line) {
    const Prompt calmPage = readBack(withPage("goule"));
    const Prompt calmLines = readBack(withLines(QStringLiteral("goule")));
    const QStringList ids = test::blockIds(withPage("goule"));
    const QStringList texts = hostileTexts();
    ASSERT_GE(texts.size(), 400);
    for (const QString &text : texts) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        const QString whole = withPage(text.toUtf8());
        const Prompt page = readBack(whole);
        ASSERT_EQ(page.faults, QStringList());
        ASSERT_EQ(page.outside, calmPage.outside);
        ASSERT_EQ(page.contents.size(), 4);
        ASSERT_TRUE(page.contents[2].contains(QStringLiteral("goule")));
        ASSERT_EQ(test::blockIds(whole), ids) << "no foreign identifier";
        const Prompt lines = readBack(withLines(text));
        ASSERT_EQ(lines.faults, QStringList());
        ASSERT_EQ(skeleton(lines.outside), skeleton(calmLines.outside));
        ASSERT_EQ(lines.contents, calmLines.contents);
    }
}

// An agent may be given a mark of 3 bytes with every "@": a page full of them must not make a
// prompt too long for the whole batch.
TEST_F(HostilePages, never_make_a_prompt_too_long_to_be_sent) {
    const auto limit = EngineAgent::promptLimit(AgentKind::Claude).value_or(131'071);
    for (const auto &[name, page] : samples()) {
        SCOPED_TRACE(name.toStdString());
        const QString text = QString::fromUtf8(page).repeated(8);
        JudgeCandidate one = candidate("c", page);
        one.title = text;
        one.note = text;
        one.url = QStringLiteral("https://example.org/") + QString(3'980, u'@');
        const QList<JudgeCandidate> batch(nextBatchSize(QList<JudgeCandidate>(8, one)), one);
        JudgeProfile profile;
        profile.projects = QList<JudgeProfile::Project>(4, {text, text, {text}, {text}});
        const QString prompt =
            judgePrompt(m_instruction, QDate(2026, 11, 21), profile, QStringList(20, text),
                        QList<TopicPtr>(12, example(text, page)), batch);
        const qsizetype bytes = prompt.toUtf8().size() + 3 * prompt.count(u'@');
        EXPECT_LE(bytes, limit);
    }
}

} // namespace
} // namespace vorle
