#include "app/models/territory/ReflexesModel.h"

#include "app/labels/TopicLabels.h"
#include "app/models/ListParts.h"
#include "app/territory/ReflexSwitch.h"
#include "app/triage/SectionOrder.h"

namespace vorle {

namespace {

constexpr std::chrono::milliseconds settled{200}; // a run changes many topics at once

} // namespace

QString ReflexRow::told() const {
    QStringList facts{evidence, effect};
    if (sample) {
        facts.prepend(ReflexesModel::tr("exemple"));
    } else if (!on) {
        facts += ReflexesModel::tr("coupé");
    }
    return facts.join(QStringLiteral(", "));
}

ReflexesModel::ReflexesModel(const Parts &parts, QObject *parent)
    : QObject(parent), m_parts(parts) {
    m_later.setSingleShot(true);
    m_later.setInterval(settled);
    connect(&m_later, &QTimer::timeout, this, &ReflexesModel::work);
    connect(&parts.store, &TopicStore::topicChanged, this, &ReflexesModel::follow);
    connect(&parts.store, &TopicStore::topicsAdded, this, &ReflexesModel::follow);
    connect(&parts.store, &TopicStore::topicsReset, this, &ReflexesModel::follow);
    connect(&parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::disabledReflexes) && m_active) {
            work(); // a switch is seen to move at once
        } else {
            follow();
        }
    });
}

void ReflexesModel::follow() {
    if (m_active) {
        m_later.start();
    }
}

void ReflexesModel::setActive(bool active) {
    m_active = active;
    if (active) {
        work();
    } else {
        m_later.stop();
    }
}

void ReflexesModel::work() {
    m_later.stop();
    const Settings &settings = m_parts.preferences.settings();
    m_learned = learn(m_parts.store.topics(), settings);
    const bool samples = m_learned.reflexes.isEmpty() && m_learned.decisions < decisionsToLearn;
    QList<ReflexRow> rows;
    for (const Reflex::Group group : Reflex::groups) {
        QString heading = reflexGroupTitle(group);
        for (const Reflex &reflex : samples ? sampleReflexes() : m_learned.reflexes) {
            if (reflex.group == group) {
                rows += {reflex.id,
                         std::exchange(heading, QString()),
                         shownLine(reflex.title),
                         shownLine(reflex.evidence),
                         reflex.effect,
                         samples || isReflexOn(settings, reflex.id),
                         samples};
            }
        }
    }
    m_rows.show(rows);
    Q_EMIT changed();
}

QString ReflexesModel::stateText() const { return shownWords(nothingLearnedText(m_learned)); }

QString ReflexesModel::footText() const {
    const auto isOff = [](const ReflexRow &row) { return !row.on; };
    return std::ranges::any_of(m_rows.rows(), isOff) ? shownWords(switchedOffText()) : QString();
}

QString ReflexesModel::startAgainText() const {
    return m_learned.decisions == 0 && m_learned.reflexes.isEmpty()
               ? QString()
               : shownWords(vorle::startAgainText(m_learned.reflexes.size()));
}

void ReflexesModel::setOn(const QString &id, bool on) { setReflexOn(m_parts.preferences, id, on); }

void ReflexesModel::startAgain() { startLearningAgain(m_parts.preferences, m_parts.clock.now()); }

QVariantList ReflexesModel::decisions(const QString &id) const {
    const QDate today = m_parts.clock.now().toTimeZone(m_parts.zone).date();
    QList<DecidedRow> rows;
    for (const auto &[topic, moment] :
         decisionsBehind(id, m_parts.store.topics(), m_parts.preferences.settings())) {
        const auto section = sectionOf(*topic);
        rows += {identityText(topic->id), shownWords(topic->title), statusLabel(topic->status),
                 moment ? dayLabel(moment->toTimeZone(m_parts.zone).date(), today) : QString(),
                 section ? static_cast<int>(*section) : -1};
    }
    return variants(rows);
}

} // namespace vorle
