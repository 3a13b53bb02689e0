#include "update/Updater.h"

#include "base/French.h"
#include "update/UpdateError.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace updatetext {

QString upToDate(const QString &version) {
    return French::tr("%1 est la dernière version.").arg(version);
}
QString readyTitle() { return French::tr("Une nouvelle version est prête."); }
QString readyForTheEnd() { return French::tr("Elle s’installera quand tu quitteras vorle."); }
QString heldUp(const QString &busy) {
    return French::tr("%1\u00A0: je ne me relance pas maintenant. La nouvelle version s’installera "
                      "quand tu quitteras vorle.")
        .arg(busy);
}
QString checkFailedTitle() { return French::tr("Je n’ai pas pu vérifier les mises à jour"); }
QString checkFailedText() { return French::tr("Vérifie ta connexion à Internet, puis réessaie."); }
QString installFailedTitle() { return French::tr("La mise à jour n’a pas pu s’installer"); }
QString installFailedText() {
    return French::tr("vorle reste dans sa version actuelle. Je réessaierai à la prochaine "
                      "vérification.");
}
QString heldElsewhereTitle() { return French::tr("Une mise à jour est en cours"); }
QString heldElsewhereText() {
    return French::tr("Une autre vorle s’en occupe déjà\u00A0: laisse-la finir.");
}

} // namespace updatetext

Updater::Updater(Parts parts, QObject *parent) : QObject(parent), m_parts(std::move(parts)) {
    m_countdown.setSingleShot(true);
    m_countdown.setInterval(m_parts.countdown);
    connect(&m_countdown, &QTimer::timeout, this, [this] {
        if (isHeldUp()) { // since the countdown began
            enter(Stage::Ready);
            tellUnseen();
        } else {
            answerReady(Choice::Install);
        }
    });
    m_parts.engine.start(*this);
}

QString Updater::title() const {
    switch (m_stage) {
    case Stage::Idle:
        return {};
    case Stage::Checking:
        return tr("Je regarde s’il y a une nouvelle version…");
    case Stage::Found:
        return tr("vorle %1").arg(m_found.version);
    case Stage::Downloading:
        return tr("Téléchargement…");
    case Stage::Preparing:
        return tr("Préparation…");
    case Stage::Ready:
    case Stage::Installing:
        return updatetext::readyTitle();
    case Stage::UpToDate:
        return updatetext::upToDate(m_parts.version);
    case Stage::CheckFailed:
        return updatetext::checkFailedTitle();
    case Stage::InstallFailed:
        return m_isElsewhere ? updatetext::heldElsewhereTitle() : updatetext::installFailedTitle();
    }
    Q_UNREACHABLE();
}

QString Updater::text() const {
    switch (m_stage) {
    case Stage::Downloading:
    case Stage::Preparing:
        return tr("Tu peux continuer, je m’en occupe.");
    case Stage::Ready:
        return isCountingDown()     ? tr("Prête, vorle se relance en 3 secondes.")
               : m_heldUp.isEmpty() ? updatetext::readyForTheEnd()
                                    : updatetext::heldUp(m_heldUp);
    case Stage::CheckFailed:
        return updatetext::checkFailedText();
    case Stage::InstallFailed:
        return m_isElsewhere ? updatetext::heldElsewhereText() : updatetext::installFailedText();
    default:
        return {};
    }
}

QString Updater::notice() const {
    switch (m_stage) {
    case Stage::Found:
        return tr("vorle %1 est là.").arg(m_found.version);
    case Stage::Ready:
        return isCountingDown() || !m_heldUp.isEmpty() ? text() : title();
    case Stage::InstallFailed:
        return title();
    default:
        return isPermissionWanted()
                   ? tr("Je peux regarder chaque jour s’il y a une nouvelle version de vorle.")
                   : QString();
    }
}

double Updater::progress() const {
    if (m_stage == Stage::Preparing) {
        return m_extracted;
    }
    return m_expectedBytes > 0 ? std::min(1.0, double(m_receivedBytes) / double(m_expectedBytes))
                               : -1;
}

void Updater::setChecksByItself(bool on) {
    m_checksForInstalls = false;
    if (const auto reply = std::exchange(m_permissionReply, nullptr)) {
        reply(on); // answered, in another way
    } else {
        m_parts.engine.setChecksByItself(on);
    }
    if (!on && installsByItself()) {
        m_parts.engine.setInstallsByItself(false); // nothing would come of it
    }
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

void Updater::setInstallsByItself(bool on) {
    m_parts.engine.setInstallsByItself(on);
    if (on && !checksByItself()) {
        m_checksForInstalls = true;
        m_parts.engine.setChecksByItself(true); // which it cannot do without
    } else if (!on && std::exchange(m_checksForInstalls, false)) {
        m_parts.engine.setChecksByItself(false); // nobody allowed them for themselves
    }
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

void Updater::followSettings(bool isAnswered) {
    if (isAnswered) {
        m_permissionReply = nullptr; // it would write over that
    }
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

void Updater::check() {
    if (m_parts.engine.obstacle()) {
        Q_EMIT changed(); // it may have come since
        return;
    }
    acknowledge(); // of the last one
    m_userInitiated = true;
    m_parts.engine.check();
}

void Updater::allow(bool daily) {
    if (const auto reply = std::exchange(m_permissionReply, nullptr)) {
        reply(daily);
        Q_EMIT settingsChanged();
        Q_EMIT changed();
    }
}

void Updater::install() {
    if (m_foundReply) {
        m_installAsked = true;
        answerFound(Choice::Install);
    }
}

void Updater::skip() { answerFound(Choice::Skip); }

void Updater::cancel() {
    if (const auto cancellation = std::exchange(m_cancellation, nullptr)) {
        m_installAsked = false;
        m_relaunchAsked = false;
        enter(Stage::Idle);
        cancellation();
    }
}

void Updater::relaunch() {
    if (m_stage == Stage::Installing && m_endAgain) {
        m_endAgain();
    }
    if (m_stage != Stage::Ready) {
        return;
    }
    if (m_readyReply) {
        answerReady(Choice::Install);
    } else {
        m_relaunchAsked = true;
        m_parts.engine.check(); // which tells once more that it is ready
    }
}

bool Updater::isHeldUp() {
    m_heldUp = m_parts.busy ? m_parts.busy() : QString();
    return !m_heldUp.isEmpty();
}

void Updater::putOff() {
    m_installAsked = false;
    m_relaunchAsked = false;
    m_heldUp.clear();
    answerReady(Choice::Dismiss);
}

bool Updater::isMessageShown() const {
    return m_stage == Stage::UpToDate || m_stage == Stage::CheckFailed ||
           m_stage == Stage::InstallFailed;
}

/// Of what nobody asked for: what was told before that stays until it was read.
void Updater::endSilently() {
    if (!isMessageShown()) {
        enter(Stage::Idle);
    }
    if (const auto acknowledged = std::exchange(m_messageAcknowledged, nullptr)) {
        acknowledged();
    }
}

void Updater::tellUnseen() {
    if (const QString sentence = notice(); !m_isWatched && !sentence.isEmpty()) {
        Q_EMIT told(sentence);
    }
}

void Updater::acknowledge() {
    if (isMessageShown()) {
        enter(Stage::Idle);
    }
    if (const auto acknowledged = std::exchange(m_messageAcknowledged, nullptr)) {
        acknowledged();
    }
}

void Updater::putAway() {
    acknowledge();
    answerFound(Choice::Dismiss);
}

void Updater::lookAtClock() {
    constexpr qint64 day = 24 * 3600;
    const QDateTime now = m_parts.clock.now();
    // A clock that was set back says nothing of how long it waited.
    if (m_foundReply && (now < m_foundAt || now >= m_foundAt.addSecs(day))) {
        answerFound(Choice::Dismiss);
    }
    m_parts.engine.lookAtClock();
}

void Updater::answerFound(Choice choice) {
    if (const auto reply = std::exchange(m_foundReply, nullptr)) {
        if (choice != Choice::Install) {
            enter(Stage::Idle);
        }
        reply(choice);
    }
}

void Updater::answerReady(Choice choice) {
    m_countdown.stop();
    if (const auto reply = std::exchange(m_readyReply, nullptr)) {
        enter(choice == Choice::Install ? Stage::Installing : Stage::Ready);
        reply(choice);
    }
}

void Updater::enter(Stage stage) {
    m_stage = stage;
    Q_EMIT changed();
}

} // namespace vorle
