// The settings' panel, by hand and by key, and what changes them from elsewhere.

#include "tests/app/window/OpenWindow.h"

namespace vorle {
namespace {

class SettingsPanelTest : public test::OpenWindow {
protected:
    void openSettings() {
        open();
        press(Qt::Key_Comma, Qt::ControlModifier);
    }
    /// The label that is chosen in the row of that name.
    QString chosen(const char *name) {
        const auto rows = shown([&](const QQuickItem &item) {
            return item.property("chosen").isValid() && item.property("labels").isValid() &&
                   item.property("name").toString() == QString::fromUtf8(name);
        });
        if (rows.isEmpty()) {
            return QStringLiteral("no such row");
        }
        return rows.first()->property("labels").toStringList().value(
            rows.first()->property("chosen").toInt());
    }
    QPoint middleOf(const char *words) {
        const auto items = shown([&](const QQuickItem &item) {
            return item.property("text").toString() == QString::fromUtf8(words);
        });
        return items.isEmpty() ? QPoint()
                               : items.last()->mapToScene({items.last()->width() / 2, 4}).toPoint();
    }
    void clickAt(const QPoint &place) {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    const Settings &settings() const { return m_app->preferences().settings(); }
};

TEST_F(SettingsPanelTest, each_choice_is_taken_at_once_shown_and_on_the_disk) {
    openSettings();
    EXPECT_EQ(chosen("Apparence"), QStringLiteral("Automatique"));
    EXPECT_EQ(chosen("Temps de veille par semaine"), QStringLiteral("3 h"));
    EXPECT_FALSE(settings().agent) << "shown by what is ready, chosen by nobody";
    EXPECT_EQ(chosen("IA"), QStringLiteral("Claude Code"));
    const std::pair<const char *, const char *> picks[] = {
        {"Apparence", "Sombre"},
        {"Couleur", "Lagune"},
        {"IA", "Codex"},
        {"Notifications", "Jamais"},
        {"Temps de veille par semaine", "5 h"},
    };
    for (const auto &[row, label] : picks) {
        clickAt(middleOf(label));
        EXPECT_EQ(chosen(row), QString::fromUtf8(label));
    }
    EXPECT_EQ(settings().weeklyMinutes, 300);
    EXPECT_EQ(settings().agent, QStringLiteral("codex"));
    ASSERT_TRUE(m_app->preferences().flush());
    const QByteArray kept = m_app.program.read("config/vorle/settings.json");
    for (const char *value : {"\"Sombre\"", "\"Lagune\"", "\"codex\"", "\"Jamais\"", "300"}) {
        EXPECT_TRUE(kept.contains(value)) << value << " in " << kept.constData();
    }
}

TEST_F(SettingsPanelTest, a_click_inside_stays_inside_and_one_beside_closes) {
    openSettings();
    clickAt(middleOf("Couleur")); // a name: nothing to choose
    EXPECT_EQ(chosen("Couleur"), QStringLiteral("Braise"));
    clickAt({4, 4});
    EXPECT_EQ(chosen("Couleur"), QStringLiteral("no such row"));
}

TEST_F(SettingsPanelTest, what_changes_elsewhere_is_seen_in_the_open_panel) {
    openSettings();
    m_app->preferences().watch();
    EXPECT_EQ(m_app.program.run("reglages weeklyMinutes 120").status, 0);
    test::spinUntil([&] { return chosen("Temps de veille par semaine") == QStringLiteral("2 h"); });
    m_app->preferences().change(&Settings::weeklyMinutes, 90);
    QCoreApplication::processEvents();
    EXPECT_EQ(chosen("Temps de veille par semaine"), QString()) << "none of those on offer";
    clickAt(middleOf("1 h"));
    EXPECT_EQ(settings().weeklyMinutes, 60);
}

} // namespace
} // namespace vorle
