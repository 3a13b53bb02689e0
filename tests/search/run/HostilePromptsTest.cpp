// What strangers write in names, manifests, feeds and links, put into the prompts of a run and read
// back by a gullible reader (tests/support/HostileTexts): nothing leaves its place.

#include "base/WebLink.h"
#include "search/run/FeedItemLine.h"
#include "search/run/Pipeline.h"
#include "tests/support/HostileTexts.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::blockIds;
using test::hostileTexts;
using test::shapeOf;

class HostilePrompts : public testing::Test {
protected:
    static QString linkWith(const QString &text) {
        return QStringLiteral("https://example.org/") + text;
    }

    /// Everything that a scope's question is made of, `text` in all of it.
    QString asked(SearchScope scope, const QString &text) const {
        PlannedScope planned;
        planned.scope = std::move(scope);
        planned.request.today = QDate(2026, 11, 21);
        planned.request.since = QDate(2026, 11, 14);
        planned.request.radius = radiusText(radiusSentence(1), {text}, {text});
        planned.request.knownLinks = {linkWith(text), QStringLiteral("https://example.org/a")};
        return m_pipeline.question(planned, AgentKind::Codex).prompt;
    }

    QString screened(const QString &text) const {
        SitesRequest request;
        request.today = QDate(2026, 11, 21);
        request.projects = {text};
        request.interests = {text};
        request.tools = {text};
        request.exclusions = {text};
        request.knownLinks = {linkWith(text), QStringLiteral("https://example.org/a")};
        const FeedItem item{text, text, linkWith(text), std::nullopt, text};
        return m_pipeline.screening(request, {feedItemLine(item)}, AgentKind::Codex).prompt;
    }

    QString dug(const QString &text) const {
        const QList<DigItem> items{
            {QStringLiteral("c1"), text, linkWith(text), text},
            {QStringLiteral("c2"), text, QStringLiteral("https://example.org/b"), text}};
        return m_pipeline.digging(items, {QDate(2026, 11, 21), {text}, AgentKind::Codex}).prompt;
    }

    static SearchScope project(const QString &text, const QString &manifest) {
        return CodeProject{text, text, QStringLiteral("requirements.txt"), manifest};
    }

    EngineAgent m_agent{AgentEnvironment::ofThisProcess(), {}};
    Asker m_asker{m_agent, Resources(QStringLiteral(VORLE_RESOURCES))};
    Pipeline m_pipeline{m_asker};
};

TEST_F(HostilePrompts, keep_their_shape_whatever_names_feeds_and_links_hold) {
    const QString calm = QStringLiteral("goule");
    const auto scopes = [&](const QString &text) {
        return QList<SearchScope>{project(text, QStringLiteral("django")), PlainProject{text, text},
                                  DeclaredInterests{{topicLine(text, 3)}, {text}, {text}},
                                  EmptyTopics{{text}}};
    };
    std::vector<std::string> shapes;
    for (const SearchScope &scope : scopes(calm)) {
        shapes.push_back(shapeOf(asked(scope, calm)));
    }
    const std::string screenedShape = shapeOf(screened(calm));
    const std::string dugShape = shapeOf(dug(calm));
    for (const QString &text : hostileTexts()) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        const QList<SearchScope> hostile = scopes(text);
        for (qsizetype i = 0; i < hostile.size(); ++i) {
            const QString prompt = asked(hostile[i], text);
            ASSERT_EQ(shapeOf(prompt), shapes[static_cast<std::size_t>(i)]);
            ASSERT_EQ(blockIds(prompt), QStringList());
        }
        ASSERT_EQ(shapeOf(screened(text)), screenedShape);
        ASSERT_EQ(blockIds(screened(text)), QStringList());
        ASSERT_EQ(shapeOf(dug(text)), dugShape);
        ASSERT_EQ(blockIds(dug(text)), (QStringList{QStringLiteral("c1"), QStringLiteral("c2")}));
    }
}

TEST_F(HostilePrompts, keep_a_manifest_inside_its_block) {
    const QString name = QStringLiteral("Potager");
    const std::string calm = shapeOf(asked(project(name, QStringLiteral("django\n")), name));
    ASSERT_NE(calm.find("block"), std::string::npos);
    for (const QString &text : hostileTexts()) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        ASSERT_EQ(shapeOf(asked(project(name, text), name)), calm);
        const QString flood = QStringLiteral("```\n").repeated(9) + text;
        ASSERT_EQ(shapeOf(asked(project(name, flood), name)), calm);
    }
}

// What the agent, a feed or a page gives as a link is one that any prompt may hold, or none.
TEST_F(HostilePrompts, a_link_is_one_line_of_plain_signs_or_none) {
    int taken = 0;
    for (const QString &text : hostileTexts()) {
        for (const QString &given :
             {linkWith(text), text,
              QStringLiteral("https://example.org/?q=") + text.section(u'\n', 1, 1),
              QStringLiteral("https://") + text}) {
            const auto link = WebLink::from(given);
            taken += link ? 1 : 0;
            for (const QChar c : link ? link->text() : QString()) {
                ASSERT_TRUE(c > u' ' && c < u'\u007F' && c != u'"' && c != u'`' && c != u'<')
                    << given.toStdString();
            }
        }
    }
    EXPECT_GT(taken, 0) << "none was a link at all";
}

} // namespace
} // namespace vorle
