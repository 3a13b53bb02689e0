#pragma once

#include "update/Updater.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The update view: how far the Updater is, in words, and what may be answered now. Main thread;
/// the updater outlives it.
class UpdateModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// What is going on, and what there is to say of it; each may be "".
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// "6,2 sur 18,4 Mo", "" while nothing is being fetched.
    Q_PROPERTY(QString amount READ amount NOTIFY changed FINAL)
    /// What is new in the version that was found, a stranger's text; "" outside of that.
    Q_PROPERTY(QString notes READ notes NOTIFY changed FINAL)
    Q_PROPERTY(bool failed READ hasFailed NOTIFY changed FINAL)
    /// Something is being fetched or unpacked; `progress` is 0 to 1, below 0 while not known.
    Q_PROPERTY(bool working READ isWorking NOTIFY changed FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY changed FINAL)
    /// What may be answered now.
    Q_PROPERTY(bool installable READ isInstallable NOTIFY changed FINAL)
    Q_PROPERTY(bool stoppable READ isStoppable NOTIFY changed FINAL)
    Q_PROPERTY(bool deferrable READ isDeferrable NOTIFY changed FINAL)
    Q_PROPERTY(bool relaunchable READ isRelaunchable NOTIFY changed FINAL)
    Q_PROPERTY(bool permissionWanted READ isPermissionWanted NOTIFY changed FINAL)
    /// Why this program cannot be updated from here; "" when it can.
    Q_PROPERTY(QString obstacle READ obstacle NOTIFY changed FINAL)
    /// "vorle 1.4.2"
    Q_PROPERTY(QString versionText READ versionText CONSTANT FINAL)
    Q_PROPERTY(bool checksByItself READ checksByItself WRITE setChecksByItself NOTIFY
                   settingsChanged FINAL)
    Q_PROPERTY(bool installsByItself READ installsByItself WRITE setInstallsByItself NOTIFY
                   settingsChanged FINAL)

public:
    explicit UpdateModel(Updater &updater, QObject *parent = nullptr);

    QString title() const;
    QString text() const;
    QString amount() const;
    QString notes() const;
    bool hasFailed() const;
    bool isWorking() const;
    double progress() const { return m_updater.progress(); }
    bool isInstallable() const { return m_updater.stage() == Updater::Stage::Found; }
    bool isStoppable() const;
    bool isDeferrable() const { return m_updater.isCountingDown(); }
    bool isRelaunchable() const;
    bool isPermissionWanted() const { return m_updater.isPermissionWanted(); }
    QString obstacle() const;
    QString versionText() const;
    bool checksByItself() const { return m_updater.checksByItself(); }
    void setChecksByItself(bool on) { m_updater.setChecksByItself(on); }
    bool installsByItself() const { return m_updater.installsByItself(); }
    void setInstallsByItself(bool on) { m_updater.setInstallsByItself(on); }

    /// Looks for a new version, unless something is under way or waits for an answer.
    Q_INVOKABLE void look();
    Q_INVOKABLE void retry() { m_updater.check(); }
    Q_INVOKABLE void install() { m_updater.install(); }
    Q_INVOKABLE void skip() { m_updater.skip(); }
    Q_INVOKABLE void stop() { m_updater.cancel(); }
    Q_INVOKABLE void putOff() { m_updater.putOff(); }
    Q_INVOKABLE void relaunch() { m_updater.relaunch(); }
    Q_INVOKABLE void allow(bool daily) { m_updater.allow(daily); }
    /// Told by the view: it can be seen, or cannot any more.
    Q_INVOKABLE void watch(bool seen) { m_updater.setWatched(seen); }
    /// The view was put away: what it told was read, what it asked is asked another day.
    Q_INVOKABLE void putAway() { m_updater.putAway(); }

Q_SIGNALS:
    void changed();
    void settingsChanged();

private:
    Updater &m_updater;
};

} // namespace vorle
