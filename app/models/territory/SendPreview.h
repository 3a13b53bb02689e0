#pragma once

#include "app/models/territory/TerritoryRows.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "core/Preferences.h"
#include "search/discovery/DiscoveryApps.h"
#include "search/run/RunPreview.h"

#include <QPointer>
#include <QTimer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A question that a run would send.
struct SentQuestion {
    Q_GADGET
    QML_VALUE_TYPE(sentQuestion)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString size MEMBER size FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)

public:
    QString name; ///< the project's, "Tes sujets", "Jugement"
    QString size; ///< "6 ko"
    QString text;

    bool operator==(const SentQuestion &) const = default;
};

/// What a run would send to the agent, word for word. Worked out while it is `active`, anew a
/// moment after the territory changed; nothing is sent for it. Main thread; the parts outlive it.
class SendPreview final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Of SentQuestion.
    Q_PROPERTY(QVariantList questions READ questions NOTIFY changed FINAL)
    /// "14 ko"; "" while it is not known, or where a run would send nothing.
    Q_PROPERTY(QString size READ size NOTIFY changed FINAL)
    /// Why a run would send nothing, or what it would leave out; may be empty.
    Q_PROPERTY(QString note READ note NOTIFY changed FINAL)

public:
    struct Parts {
        const Preferences &preferences;
        const TopicStore &store;
        Asker &asker;
        const Clock &clock;
        std::function<QList<discovery::App>()> apps = {}; ///< of this machine. Any thread.
    };
    explicit SendPreview(const Parts &parts, QObject *parent = nullptr);
    ~SendPreview() override;

    QVariantList questions() const;
    QString size() const;
    QString note() const;
    void setActive(bool active);
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void changed();

private:
    static Task<> work(QPointer<SendPreview> self);

    Parts m_parts;
    QTimer m_later;
    bool m_active = false;
    bool m_working = false;
    bool m_stale = false; ///< something changed while it was worked out
    RunPreview m_preview;
    CancelSource m_cancel;
    TaskGroup m_work;
};

} // namespace vorle
