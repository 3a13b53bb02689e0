#include "app/models/TopicActions.h"
#include "app/models/CardParts.h"
#include "tests/app/models/Watched.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Map = KeyboardMap;

/// The window's actions over the four lists, without a window.
class TopicActionsTest : public testing::Test {
protected:
    TopicActionsTest() {
        const auto hear = [this](const QString &kind) {
            return [this, kind](const QString &words) { heard += kind + words; };
        };
        QObject::connect(&actions, &TopicActions::said, hear(QString()));
        QObject::connect(&actions, &TopicActions::decidedUnderPage, hear(QStringLiteral("under ")));
        QObject::connect(&actions, &TopicActions::firstStepAsked, hear(QStringLiteral("step ")));
        QObject::connect(&actions, &TopicActions::readingAsked, hear(QStringLiteral("read ")));
        QObject::connect(&actions, &TopicActions::ghostLeft, [this] { ++ghosts; });
    }
    QString add(const char *title, int score, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = test::sampleTopic(QString::fromUtf8(title), status);
        topic.score = score;
        return shelf.add(topic);
    }
    TopicSelection &inbox() { return *actions.of(Section::Inbox); }
    /// What was said since, and how many lines were left.
    QString words() { return std::exchange(heard, {}).join(u'|'); }
    int lines() { return std::exchange(ghosts, 0); }

    test::Shelf shelf;
    QTemporaryDir folder;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    test::Watch watch{shelf, preferences};
    Decisions decisions{shelf.store};
    Map keyboard{AgentKind::Claude, KeySpelling::Glyphs};
    TopicActions actions{watch.sections, decisions, keyboard};
    QStringList heard;
    int ghosts = 0;
};

} // namespace
} // namespace vorle
