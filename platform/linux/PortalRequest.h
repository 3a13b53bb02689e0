#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

#include <functional>

namespace vorle {

// The desktop's portal, by which it lets programs ask the person.
QString portalService();
QString portalPath();

/// One question to the portal, whose answer comes later by a signal. Deletes itself once it was
/// answered or taken back. Main thread.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    enum class Answer { Given, Refused, Failed };
    /// Called once: refused by the person, or failed where there is no such portal.
    using Done = std::function<void(Answer answer, const QVariantMap &results)>;

    /// Asks `method` of the interface. `arguments` gets the question's options, with the handle's
    /// token in them, to put them where they belong. An `owner` that goes hears nothing. Gives the
    /// question, while it is there.
    static QPointer<PortalRequest>
    ask(const QDBusConnection &bus, const QString &interface, const QString &method,
        const std::function<QVariantList(QVariantMap options)> &arguments, QObject *owner,
        Done done);

    /// The portal has it, and puts it before the person.
    bool isTaken() const { return m_taken; }
    /// Has the portal forget it, late as it may be: what it did not put before the person by then,
    /// it puts away. Nobody is told any more.
    void takeBack();

private:
    PortalRequest(const QDBusConnection &bus, QObject *owner, Done done);
    void listenAt(const QString &path);
    void end(Answer answer, const QVariantMap &results);
    Q_SLOT void answered(const QDBusMessage &signal);

    QDBusConnection m_bus;
    QString m_path;
    Done m_done;
    bool m_taken = false;
};

} // namespace vorle
