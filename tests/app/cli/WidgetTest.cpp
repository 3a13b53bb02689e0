// The snapshot for bars, from the command that writes it to the one that shows it.

#include "storage/StoreLock.h"
#include "tests/core/Samples.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Program.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <algorithm>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;

TEST(WidgetCommand, a_bar_shows_what_the_last_command_left) {
    Program vorle;
    const Program::Outcome nothing = vorle.run("widget");
    EXPECT_EQ(nothing.status, 1);
    EXPECT_THAT(nothing.err, HasSubstr("Rien à montrer encore"));
    QList<Topic> topics{test::sampleTopic(QStringLiteral("un")),
                        test::sampleTopic(QStringLiteral("deux"))};
    vorle.save(topics);
    const QString id = topics.first().id.toString(QUuid::WithoutBraces);
    EXPECT_EQ(vorle.run({QStringLiteral("trier"), id, QStringLiteral("garder")}).status, 0);
    const QJsonObject now = vorle.run("widget").object();
    EXPECT_EQ(now[QStringLiteral("toSortCount")].toInt(), 1);
    EXPECT_EQ(now[QStringLiteral("programCount")].toInt(), 1);
    EXPECT_FALSE(now[QStringLiteral("searching")].toBool(true));
    EXPECT_EQ(vorle.run("widget --format polybar").out, "1 à trier · 1 au programme\n");
    const QJsonObject line = vorle.run("widget --format waybar").object();
    EXPECT_EQ(line[QStringLiteral("text")].toString(), QStringLiteral("1"));
    EXPECT_EQ(line[QStringLiteral("class")].toString(), QStringLiteral("waiting"));
    EXPECT_TRUE(line[QStringLiteral("tooltip")].toString().contains(QStringLiteral("7  deux")));
    EXPECT_EQ(vorle.run("widget --format tmux").status, 2);
    // A run that was killed says for ever that it goes on.
    QByteArray left = vorle.read("data/vorle/widget.json");
    vorle.write("data/vorle/widget.json",
                left.replace("\"searching\":false", "\"searching\":true"));
    EXPECT_EQ(vorle.run("widget --format polybar").out, "1 à trier · 1 au programme\n");
    EXPECT_FALSE(vorle.run("widget").object()[QStringLiteral("searching")].toBool(true));
    {
        StoreLock running(vorle.topicsFile());
        ASSERT_TRUE(running.tryLock());
        EXPECT_TRUE(vorle.run("widget").object()[QStringLiteral("searching")].toBool());
        EXPECT_TRUE(running.isHeld());
    }
    vorle.write("data/vorle/widget.json", "{\"toSort\":");
    EXPECT_THAT(vorle.run("widget").err, HasSubstr("illisible"));
}

TEST(WidgetCommand, a_strangers_title_is_no_markup_and_no_line_of_its_own) {
    Program vorle;
    Topic kept = test::sampleTopic(QStringLiteral("à garder"));
    QList<Topic> topics{kept};
    for (const QString &hostile : test::hostileTexts().first(200)) {
        Topic topic = test::sampleTopic(QStringLiteral("<span>%{A:id:}&") + hostile);
        topic.score = 9;
        topics += topic;
    }
    for (qsizetype i = 1; i < topics.size(); i += 5) { // as many as a tooltip shows
        vorle.save(QList<Topic>{kept} + topics.sliced(i, 5));
        const QString id = kept.id.toString(QUuid::WithoutBraces);
        vorle.run({QStringLiteral("trier"), id, QStringLiteral("garder")});
        const Program::Outcome shown = vorle.run("widget --format waybar");
        EXPECT_EQ(std::ranges::count(shown.out, '\n'), 1);
        const QString tooltip = shown.object()[QStringLiteral("tooltip")].toString();
        EXPECT_EQ(tooltip.count(u'\n'), 7) << tooltip.toStdString();
        QXmlStreamReader reader(QStringLiteral("<t>") + tooltip + QStringLiteral("</t>"));
        QString read;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement) {
                EXPECT_EQ(reader.name(), u"t");
            }
            read += reader.text();
        }
        EXPECT_FALSE(reader.hasError()) << tooltip.toStdString();
        EXPECT_TRUE(read.contains(QStringLiteral("<span>%{A:id:}&goule")));
        EXPECT_THAT(vorle.run("widget --format polybar").out, testing::Not(HasSubstr("%")));
    }
}

} // namespace
} // namespace vorle
