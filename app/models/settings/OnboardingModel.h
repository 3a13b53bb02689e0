#pragma once

#include "app/models/territory/ProjectsModel.h"
#include "base/Async.h"
#include "core/Preferences.h"
#include "search/discovery/DiscoveryApps.h"
#include "search/discovery/ProjectFinder.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace vorle {

/// A project's folder that was found under the home.
struct FoundFolder {
    Q_GADGET
    QML_VALUE_TYPE(foundFolder)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QUrl url MEMBER url FINAL)
    Q_PROPERTY(QString detail MEMBER detail FINAL)

public:
    QString name;   ///< the folder's own
    QUrl url;       ///< of its path
    QString detail; ///< "~/Projets · React Native, Expo"

    QString key() const { return url.toString(); }
    bool operator==(const FoundFolder &) const = default;
};

/// The first set-up: five steps, each of which can be passed over. What is entered is kept at once,
/// by whoever keeps it at other times; this object knows where the person is, what can be proposed
/// to them, and how it ends. It opens by itself for somebody who never ran vorle, comes back where
/// it was left, and can be begun anew from the settings. Main thread; what it is given outlives it.
class OnboardingModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool shown READ isShown NOTIFY changed FINAL)
    /// It was left before its end.
    Q_PROPERTY(bool unfinished READ isUnfinished NOTIFY changed FINAL)
    Q_PROPERTY(Step step READ step NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// "Étape 2 sur 5\u00A0: Tes projets"
    Q_PROPERTY(QString announcement READ announcement NOTIFY changed FINAL)
    /// The job that projects and apps point to, and what pointed there: "Proposé d’après Xcode.";
    /// both "" until they were looked at.
    Q_PROPERTY(QString jobProposal READ jobProposal NOTIFY foundChanged FINAL)
    Q_PROPERTY(QString jobReason READ jobReason NOTIFY foundChanged FINAL)
    Q_PROPERTY(QStringList jobs READ jobs CONSTANT FINAL)
    /// Of FoundFolder: those that are no project yet.
    Q_PROPERTY(vorle::RowsModel *found READ found CONSTANT FINAL)
    /// Of NameRow: technologies of the projects that are no topic of interest yet, three at most.
    Q_PROPERTY(vorle::RowsModel *topicProposals READ topicProposals CONSTANT FINAL)
    /// Why a first run could not be started now: nothing to search; "" when it could.
    Q_PROPERTY(QString refusal READ refusal NOTIFY changed FINAL)

public:
    enum Step { You, Projects, Topics, Agent, When };
    Q_ENUM(Step)
    static constexpr int steps = 5;

    struct Parts {
        Preferences &preferences;
        ProjectsModel &projects; ///< which reads the user's own
        QString home;            ///< where projects are looked for
        discovery::PersonalFolders personal = discovery::PersonalFolders::Included;
        /// The apps of this machine; asked once, when it is first shown. Any thread.
        std::function<QList<discovery::App>()> apps = {};
        bool wanted = false; ///< nothing was ever run or kept here
    };
    explicit OnboardingModel(Parts parts, QObject *parent = nullptr);
    ~OnboardingModel() override;

    bool isShown() const { return m_shown; }
    bool isUnfinished() const;
    Step step() const;
    QString title() const;
    QString text() const;
    QString announcement() const;
    QString jobProposal() const { return m_job; }
    QString jobReason() const;
    QStringList jobs() const;
    RowsModel *found() { return &m_foundRows; }
    RowsModel *topicProposals() { return &m_proposals; }
    QString refusal() const;

    /// Shows it, where it was left.
    Q_INVOKABLE void open();
    /// From the first step on; what was entered stays.
    Q_INVOKABLE void beginAgain();
    /// The job as the person writes it; nothing is proposed in its place any more. Gives a French
    /// sentence where it cannot be, "" where it was taken.
    Q_INVOKABLE QString setJob(const QString &job);
    /// The next step; nothing after the last one. The job that is proposed is taken with the first
    /// one where none was given.
    Q_INVOKABLE void next();
    /// The same, and takes nothing.
    Q_INVOKABLE void pass();
    Q_INVOKABLE void back();
    /// Puts it away, to be taken up again.
    Q_INVOKABLE void leave();
    /// It is done with. Asks for the guided first triage, for who had none.
    Q_INVOKABLE void finish();
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void changed();
    void foundChanged();

private:
    static Task<> look(QPointer<OnboardingModel> self);
    void setStep(int step);
    void propose();
    void showFound();
    void showProposals();

    Parts m_parts;
    bool m_shown = false;
    bool m_looked = false;
    bool m_jobGiven = false; // by the person, be it as none
    QList<discovery::Project> m_found;
    KeyedRows<FoundFolder> m_foundRows;
    KeyedRows<NameRow> m_proposals;
    QStringList m_apps;
    QString m_job;
    QStringList m_evidence;
    CancelSource m_cancel;
    TaskGroup m_work;
};

} // namespace vorle
