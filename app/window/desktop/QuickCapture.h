#pragma once

#include "app/cli/Command.h"
#include "base/Async.h"
#include "core/Preferences.h"
#include "desktop/BrowserTab.h"
#include "search/capture/LinkCapture.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The quick capture: the page that is proposed, the projects it may be tied to, and what becomes
/// of it. What another program hands over is proposed like any page, and added by the person alone.
/// Main thread; what it is given outlives it.
class QuickCapture final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The page that is proposed; an empty address: none, one is to be typed.
    Q_PROPERTY(QString pageTitle READ pageTitle NOTIFY pageChanged FINAL)
    Q_PROPERTY(QString pageAddress READ pageAddress NOTIFY pageChanged FINAL)
    /// "Safari · boutique.example.org/pellicule"
    Q_PROPERTY(QString pageLine READ pageLine NOTIFY pageChanged FINAL)
    /// Another program handed the page over.
    Q_PROPERTY(bool handed READ isHanded NOTIFY pageChanged FINAL)
    /// What one can do to have a page proposed; "" when there is nothing to say.
    Q_PROPERTY(QString hint READ hint NOTIFY pageChanged FINAL)
    /// Where proposals come from on this system.
    Q_PROPERTY(QString proposalText READ proposalText CONSTANT FINAL)
    /// The watched projects.
    Q_PROPERTY(QStringList projects READ projects NOTIFY projectsChanged FINAL)
    /// Why it could not be added, in French; "" when nothing is to be said.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)
    /// It was added, and can still be taken back.
    Q_PROPERTY(bool added READ isAdded NOTIFY addedChanged FINAL)

public:
    struct Parts {
        const Preferences &preferences;
        TopicStore &store;
        LinkCapture &capture;
        BrowserTab tab;
    };
    explicit QuickCapture(Parts parts, QObject *parent = nullptr);
    ~QuickCapture() override;

    QString pageTitle() const;
    QString pageAddress() const { return m_page.address; }
    QString pageLine() const;
    bool isHanded() const { return m_giver == WebLink::Giver::Stranger; }
    QString hint() const { return m_hint; }
    QString proposalText() const;
    QStringList projects() const;
    QString problem() const { return m_problem; }
    bool isAdded() const { return !m_added.isNull(); }

    /// Opens it on what is in front of the person, unless the settings say not to. Opened already,
    /// it stays as it is and comes to the front.
    void open() { openOver(frontApp()); }
    /// The same where a window of ours is the one in front by now: it was that application before.
    void openOver(const QString &frontApp);
    QString frontApp() const { return m_parts.tab.frontApp(); }
    /// Opens it on that link, or with what is told instead. False where it is open and what it
    /// holds there, typed or proposed, was not added yet: then it says that another link waits.
    bool open(const cli::LinkToCapture &link);

    /// What the panel holds: told by it, and asked by what opens it.
    Q_INVOKABLE void setShown(bool shown);
    bool isShown() const { return m_shown; }
    /// Looks once more at the pasteboard, where a link would be taken from there: one, or another,
    /// may have been copied since.
    Q_INVOKABLE void lookAgain();
    /// The proposed page is not the one that is meant.
    Q_INVOKABLE void dropPage();
    /// Somebody types an address: none is proposed in its place any more.
    Q_INVOKABLE void typed();
    /// Adds the proposed page, or the typed address where none is. `project` is a place in
    /// `projects`, -1 for none. False when it cannot be taken: `problem` says why.
    Q_INVOKABLE bool add(const QString &typed, const QString &note, int project);
    /// Takes back what was added last.
    Q_INVOKABLE void takeBack();

Q_SIGNALS:
    void pageChanged();
    void projectsChanged();
    void problemChanged();
    void addedChanged();
    /// The panel is to be shown, empty but for what is proposed; or to come to the front.
    void opened();
    void raised();

private:
    void begin();
    void propose(const BrowserTab::Proposal &proposal);
    static Task<> ask(QPointer<QuickCapture> self, BrowserTab tab, QString frontApp, int opening);
    void setProblem(const QString &problem);

    Parts m_parts;
    BrowserTab::Page m_page;
    WebLink::Giver m_giver = WebLink::Giver::User; // of the page
    QString m_hint;
    QString m_frontApp; // when it was opened
    QString m_problem;
    QUuid m_added;
    int m_opening = 0; // counts them: an answer to an earlier one is passed over
    bool m_shown = false;
    bool m_proposes = false; // what is in front; else it was opened on a link
    bool m_dropped = false;
};

} // namespace vorle
