#include "search/run/SearchScope.h"

#include "base/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ScopeText, is_written_for_each_kind_of_scope) {
    EXPECT_EQ(
        scopeText(CodeProject{QStringLiteral("Tiravue"), QStringLiteral("a photo app"),
                              QStringLiteral("package.json"), QStringLiteral("{}\n")}),
        u"Project watched: **Tiravue**, a photo app. Its dependency file `package.json` is below. "
        u"Work out which parts matter most, then look for news on those dependencies, their "
        u"tooling, and the project's field.\n\n```\n{}\n\n```");
    EXPECT_TRUE(scopeText(CodeProject{QStringLiteral("T"), std::nullopt, QStringLiteral("m"), {}})
                    .startsWith(u"Project watched: **T**. Its dependency file `m`"));
    EXPECT_EQ(scopeText(PlainProject{QStringLiteral("Potager"), QStringLiteral("un jardin")}),
              u"Project watched: **Potager**, un jardin. It may not be code. Look for what would "
              u"help it move forward: news in its field, tools, methods, examples of similar "
              u"projects.");
    EXPECT_TRUE(scopeText(PlainProject{QStringLiteral("P"), {}})
                    .startsWith(u"Project watched: **P**. It may not be code."));
    const QString empty = scopeText(EmptyTopics{{QStringLiteral("a"), QStringLiteral("b")}});
    EXPECT_TRUE(
        empty.startsWith(u"Topics the person follows that a first search came back empty on."));
    EXPECT_TRUE(empty.endsWith(u"Bring at least two links for every topic below.\n- a\n- b"));
}

// A line of backquotes in a file ends no block.
TEST(ScopeText, a_manifest_is_fenced_by_more_than_it_holds) {
    const auto fence = [](const char16_t *manifest) {
        const QString text = scopeText(CodeProject{
            QStringLiteral("P"), std::nullopt, QStringLiteral("m"), QString::fromUtf16(manifest)});
        const QStringList lines = text.split(u'\n');
        EXPECT_EQ(lines.last(), lines[2]);
        return lines.last();
    };
    EXPECT_EQ(fence(u"a\nb `c` ``d``"), u"```");
    EXPECT_EQ(fence(u"a\n```\n# The task\n"), u"````");
    EXPECT_EQ(fence(u"a ````` b\n```"), u"``````");
    EXPECT_EQ(fence(u"`\u0301`\u200B`"), u"````");
    EXPECT_EQ(fence(u"ˋ｀‵"), u"````");
}

TEST(ScopeText, declared_interests_show_only_the_blocks_that_hold_something) {
    DeclaredInterests interests;
    interests.topics = {topicLine(QStringLiteral("Rust"), 5), topicLine(QStringLiteral("Vélo"), 2)};
    const QString topics = scopeText(interests);
    EXPECT_TRUE(topics.endsWith(u"they chose it.\n- Rust (weight 5)\n- Vélo (weight 2)"));
    interests.tools = {QStringLiteral("Figma"), QStringLiteral("Vim")};
    interests.apps = {QStringLiteral("Xcode")};
    EXPECT_EQ(scopeText(interests),
              topics + QStringLiteral(
                           "\n\nTools they told me they use: Figma, Vim. Look for what is new in "
                           "them: features, versions, ways of using them.\n\nApps on their Mac, "
                           "as context on how they work, not topics to search for their own sake: "
                           "Xcode."));
    interests.topics.clear();
    EXPECT_TRUE(scopeText(interests).startsWith(u"Tools they told me"));
}

TEST(RadiusText, adds_exclusions_then_trusted_sites) {
    EXPECT_EQ(radiusText(radiusSentence(0), {}, {}), radiusSentence(0));
    EXPECT_EQ(radiusSentence(7), radiusSentence(2));
    EXPECT_EQ(radiusSentence(-1), radiusSentence(0));
    EXPECT_NE(radiusSentence(1), radiusSentence(2));
    EXPECT_EQ(radiusText(QStringLiteral("S."), {QStringLiteral("a.com"), QStringLiteral("b.com")},
                         {QStringLiteral("lwn.net"), QStringLiteral("x.org")}),
              u"S. Never use these sites or folders as a source: a.com, b.com. The person trusts "
              u"these sites: look there first (search them with site:), then widen to the rest of "
              u"the web: lwn.net, x.org.");
}

TEST(JoinedLinks, leave_out_what_is_no_link) {
    EXPECT_EQ(
        joinedLinks({QStringLiteral("https://a/\n### id: c1"), QStringLiteral("https://b/ ; x"),
                     QStringLiteral("x"), QStringLiteral("https://c")},
                    1'000),
        u"https://b/%20;%20x ; https://c");
    // One that the user saved themselves may be longer than a stranger's.
    const QString wrapped = QStringLiteral("https://a/") + QString(3'000, u'x');
    EXPECT_EQ(joinedLinks({wrapped, QStringLiteral("https://c")}, 4'000),
              wrapped + QStringLiteral(" ; https://c"));
}

CandidatesRequest request() {
    CandidatesRequest filled;
    filled.today = QDate(2026, 11, 21);
    filled.since = QDate(2026, 11, 2);
    filled.count = 8;
    filled.radius = QStringLiteral("R");
    return filled;
}

TEST(CandidatesPrompt, replaces_the_placeholders_one_after_the_other_in_their_order) {
    CandidatesRequest filled = request();
    filled.knownLinks = {QStringLiteral("https://a"), QStringLiteral("https://b")};
    // What a value brings in is searched for the placeholders that follow, not for those before.
    const PlainProject project{QStringLiteral("P"), QStringLiteral("@TODAY @COUNT")};
    const QString prompt =
        candidatesPrompt(QStringLiteral("@TODAY|@SINCE|@SCOPE|@COUNT|@RADIUS|@KNOWN|@TODAY"),
                         project, filled, std::nullopt);
    EXPECT_TRUE(prompt.startsWith(u"November 21, 2026|November 2, 2026|Project watched: **P**, "
                                  u"@TODAY 8."));
    EXPECT_TRUE(prompt.endsWith(u"|8|R|https://a ; https://b|November 21, 2026"));
    EXPECT_EQ(candidatesPrompt(QStringLiteral("@KNOWN"), project, request(), std::nullopt),
              u"none");
}

TEST(CandidatesPrompt, under_a_limit_cuts_a_long_manifest_at_a_line_and_lists_the_newest_links) {
    CandidatesRequest filled = request();
    for (int i = 0; i < 5'000; ++i) {
        filled.knownLinks += QStringLiteral("https://example.org/é/%1").arg(i);
    }
    CodeProject project{QStringLiteral("P"), std::nullopt, QStringLiteral("package.json"), {}};
    for (int i = 0; i < 10'000; ++i) {
        project.manifestText += QStringLiteral("\"dependance-é-%1\"\n").arg(i);
    }
    const QString instruction = QStringLiteral("@SCOPE\nKNOWN:@KNOWN");
    const QString limited = candidatesPrompt(instruction, project, filled, 131'071);
    EXPECT_LE(utf8Size(limited), 100'000);
    EXPECT_GT(utf8Size(limited), 99'900);
    EXPECT_TRUE(limited.contains(u"\"\n```\nKNOWN:https://example.org/%C3%A9/0 ; "));
    EXPECT_TRUE(limited.contains(u"/%C3%A9/100 ; "));
    const QString whole = candidatesPrompt(instruction, project, filled, std::nullopt);
    EXPECT_TRUE(whole.contains(u"dependance-é-9999\""));
    for (const auto limit : {std::optional<qsizetype>(), std::optional<qsizetype>(131'071)}) {
        const QString known =
            candidatesPrompt(QStringLiteral("@KNOWN"), PlainProject(), filled, limit);
        EXPECT_LE(utf8Size(known), knownBytes);
        EXPECT_GT(utf8Size(known), knownBytes - 100);
        EXPECT_TRUE(known.startsWith(u"https://example.org/%C3%A9/0 ; ")) << "the newest first";
    }
}

} // namespace
} // namespace vorle
