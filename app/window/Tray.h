#pragma once

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace vorle {

class RunModel;
class TopicListModel;

/// The menu-bar item: how much there is to sort, the next run, and the ways in. Where the system
/// has no place for such items nothing is shown, and all of it is reached from the window. A click
/// asks for the small panel, a double click opens the window, the other button has the menu. Main
/// thread; needs a QApplication; what it is given outlives it.
class Tray final : public QObject {
    Q_OBJECT
public:
    Tray(RunModel &run, TopicListModel &inbox, QObject *parent = nullptr);

    /// Shows the item where there is a place for it by now; whether it is shown.
    bool show();
    /// A short notice beside the item; false where it cannot be shown, as on a Mac.
    bool tell(const QString &title, const QString &text);

    /// The program's picture with that many waiting (none for 0), for the menu bar and the dock.
    static QIcon picture(int waiting);
    /// The same for a Mac’s menu bar, which lays its own colour over it, light or dark: black, and
    /// clear where the face or the number is.
    static QIcon mask(int waiting);

Q_SIGNALS:
    void openAsked();
    /// The item itself was chosen: the small panel is wanted, beside that place on the screen.
    void statusAsked(const QRect &item);
    void addAsked();
    void settingsAsked();
    void feedbackAsked();
    void updateAsked();
    void quitAsked();

private:
    void activated(QSystemTrayIcon::ActivationReason reason);
    void refresh();

    RunModel &m_run;
    TopicListModel &m_inbox;
    QMenu m_menu;
    QAction *m_next;
    QAction *m_search;
    QSystemTrayIcon m_item{this};
};

} // namespace vorle
