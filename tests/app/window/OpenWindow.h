#pragma once

#include "app/window/MainWindow.h"
#include "app/window/ShellParts.h"
#include "app/wiring/Application.h"
#include "desktop/ClaudeLauncher.h"
#include "desktop/HotKey.h"
#include "desktop/Notifier.h"
#include "platform/fakes/FakeFilePicker.h"
#include "platform/fakes/FakeFileReveal.h"
#include "platform/fakes/FakeGlobalHotKey.h"
#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakeLoginItem.h"
#include "platform/fakes/FakeMailComposer.h"
#include "platform/fakes/FakeMotionSetting.h"
#include "platform/fakes/FakeNotifications.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/fakes/FakeTerminals.h"
#include "platform/fakes/FakeUpdateEngine.h"
#include "platform/qt/QtKeyWatch.h"
#include "tests/core/Samples.h"
#include "tests/support/AppInProcess.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace vorle::test {

/// The real window on a temporary store, driven by keys.
class OpenWindow : public testing::Test {
protected:
    OpenWindow() {
        m_app.variables.set("VORLE_REDUCED_MOTION", QStringLiteral("1"));
        m_app.program.agent.signOut();
        m_app->preferences().change(&Settings::onboarded, true); // else that is what opens
    }

    ~OpenWindow() override { letPicturesGo(); }

    TopicStore &store() { return m_app->store(); }

    /// Three topics to sort, the first one first, and one of each other section.
    void fill() {
        QList<Topic> topics;
        for (const int score : {9, 8, 7}) {
            Topic topic = sampleTopic(QStringLiteral("Sujet %1").arg(score));
            topic.score = score;
            topic.tldr = QStringLiteral("Essentiel");
            topic.why = QStringLiteral("Raison %1").arg(score);
            topic.firstStep = QStringLiteral("Lis la page.");
            topic.criteria = Judgment::Criteria{8, 7, 6, 5, 20};
            topic.readLevel = ReadLevel::Full;
            topics += topic;
        }
        topics += sampleTopic(QStringLiteral("Gardé"), TopicStatus::Program);
        topics += sampleTopic(QStringLiteral("Remis"), TopicStatus::Reserve);
        topics += sampleTopic(QStringLiteral("Terminé"), TopicStatus::Done);
        store().add(topics);
    }

    void open() {
        m_launcher = std::make_unique<ClaudeLauncher>(ClaudeLauncher::Parts{
            m_app->agent().locator(), m_app->preferences(), m_terminals, m_pasteboard, m_links});
        m_notifier = std::make_unique<Notifier>(
            Notifier::Parts{m_notifications, m_app->preferences(), m_app->clock(), {}});
        m_hotKey = std::make_unique<HotKey>(m_app->preferences(), m_globalHotKey);
        Shell::Parts parts =
            shellParts(*m_app, {m_links, m_pasteboard, *m_launcher, m_files, m_reveal, *m_notifier,
                                m_login, *m_hotKey, m_keys, m_mail, m_updater, m_front});
        parts.terminals = m_terminals.names();
        m_shell = std::make_unique<Shell>(parts);
        m_main = std::make_unique<MainWindow>(std::make_unique<ScreenEngine>(), *m_shell,
                                              Typefaces{}, store().file());
        m_main->observe(m_motion);
        m_main->raise();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_main->window()));
    }
    /// As when the app ends; it can be opened again.
    void close() {
        letPicturesGo();
        m_main.reset();
        m_shell.reset();
        m_hotKey.reset();
        m_notifier.reset();
        m_launcher.reset();
    }
    /// Before the window goes, with one frame more: the software renderer of Qt 6.4 never frees the
    /// textures of pictures that go together with their window.
    void letPicturesGo() {
        bool any = false;
        QList<QQuickItem *> items;
        if (m_main) {
            items += window().contentItem();
        }
        while (!items.isEmpty()) {
            QQuickItem *item = items.takeLast();
            items += item->childItems();
            if (item->inherits("QQuickImage") && !item->property("source").toUrl().isEmpty()) {
                any = item->setProperty("source", QUrl());
            }
        }
        if (any) {
            window().grabWindow();
        }
    }
    QQuickWindow &window() { return m_main->window(); }
    Shell &shell() { return *m_shell; }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&window(), key, modifiers);
        QCoreApplication::processEvents();
    }
    void type(const QString &text) {
        for (const QChar letter : text) {
            QTest::keyClick(&window(), letter.toLatin1());
        }
        QCoreApplication::processEvents();
    }
    TopicStatus statusOf(const QString &title) {
        for (const TopicPtr &topic : store().topics()) {
            if (topic->title == title) {
                return topic->status;
            }
        }
        ADD_FAILURE() << "no topic " << title.toStdString();
        return TopicStatus::Pending;
    }
    /// The title of the open card.
    QString chosen() {
        const QString id = window().property("chosenId").toString();
        const TopicPtr topic = store().topic(QUuid::fromString(id));
        return topic ? topic->title : QString();
    }
    /// The texts that can be seen, one after the other.
    QStringList shownTexts() { return shownTexts(window()); }
    static QStringList shownTexts(const QQuickWindow &in) {
        QStringList texts;
        const auto collect = [&](const auto &self, const QQuickItem &item) -> void {
            if (!item.isVisible() || item.opacity() == 0) {
                return;
            }
            if (const QString text = item.property("text").toString(); !text.isEmpty()) {
                texts += text;
            }
            for (const QQuickItem *child : item.childItems()) {
                self(self, *child);
            }
        };
        collect(collect, *in.contentItem());
        return texts;
    }

    /// What the parts that can be seen and pass `wanted` are.
    QList<QQuickItem *> shown(const std::function<bool(const QQuickItem &)> &wanted) {
        QList<QQuickItem *> found;
        const auto look = [&](const auto &self, QQuickItem &item) -> void {
            if (!item.isVisible() || item.opacity() == 0) {
                return;
            }
            if (wanted(item)) {
                found += &item;
            }
            for (QQuickItem *child : item.childItems()) {
                self(self, *child);
            }
        };
        look(look, *window().contentItem());
        return found;
    }
    /// The middle of the last button of that text; nowhere without one.
    QPoint buttonAt(const QString &text) {
        const auto buttons = shown([&](const QQuickItem &item) {
            return item.inherits("vorle::Press") && item.property("text").toString() == text;
        });
        if (buttons.isEmpty()) {
            return {-1, -1};
        }
        const QQuickItem &button = *buttons.last();
        return button.mapToScene({button.width() / 2, button.height() / 2}).toPoint();
    }
    void click(const QString &button) {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, buttonAt(button));
        QCoreApplication::processEvents();
    }

    bool enlarged() { return shell().actions()->selection()->isEnlarged(); }

    AppInProcess m_app;
    FakeTerminals m_terminals;
    FakePasteboard m_pasteboard;
    FakeLinkOpener m_links;
    FakeFilePicker m_files;
    FakeFileReveal m_reveal;
    FakeMotionSetting m_motion;
    FakeNotifications m_notifications;
    FakeLoginItem m_login;
    FakeGlobalHotKey m_globalHotKey;
    FrontBrowser *m_front = nullptr; ///< to be set before it opens
    std::unique_ptr<HotKey> m_hotKey;
    QtKeyWatch m_keys;
    FakeMailComposer m_mail;
    FakeUpdateEngine m_updates;
    SystemClock m_clock;
    Updater m_updater{{.engine = m_updates,
                       .clock = m_clock,
                       .version = QStringLiteral("1.4.2"),
                       .countdown = std::chrono::hours(1)}};
    std::unique_ptr<ClaudeLauncher> m_launcher;
    std::unique_ptr<Notifier> m_notifier;
    std::unique_ptr<Shell> m_shell;
    std::unique_ptr<MainWindow> m_main;
};

} // namespace vorle::test
