// What an engine tells, kept and noted until the person answers.

#include "update/UpdateError.h"
#include "update/Updater.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {
constexpr double tenths = 10;
} // namespace

void Updater::showPermissionRequest(std::function<void(bool)> reply) {
    noteUpdate(QStringLiteral("asking for permission"));
    m_permissionReply = std::move(reply);
    Q_EMIT changed();
    if (!m_userInitiated) {
        Q_EMIT told(notice());
    }
}

void Updater::showUserInitiatedCheck(Cancellation cancel) {
    noteUpdate(QStringLiteral("checking, as asked"));
    m_userInitiated = true;
    m_cancellation = std::move(cancel);
    enter(Stage::Checking);
}

void Updater::showFound(const OfferedUpdate &update, Reply reply) {
    noteUpdate(QStringLiteral("found ") + update.version);
    m_found = update;
    m_foundAt = m_parts.clock.now();
    m_foundReply = std::move(reply);
    m_cancellation = nullptr;
    m_installAsked = false;
    if (m_relaunchAsked && update.fetched) {
        answerFound(Choice::Install); // it is the one that was put off
        return;
    }
    m_relaunchAsked = false; // of another version than this
    enter(Stage::Found);
    tellUnseen();
}

void Updater::showReleaseNotes(const QString &notes) {
    noteUpdate(QStringLiteral("release notes came"));
    m_found.notes = notes;
    Q_EMIT changed();
}

void Updater::showReleaseNotesFailed(const QString &error) {
    noteUpdate(QStringLiteral("release notes failed: ") + error);
}

void Updater::showNotFound(const QString &reason, Acknowledgement acknowledge) {
    noteUpdate(QStringLiteral("nothing newer: ") + reason);
    m_cancellation = nullptr;
    m_relaunchAsked = false;
    m_messageAcknowledged = std::move(acknowledge);
    if (m_userInitiated) {
        enter(Stage::UpToDate);
    } else {
        endSilently();
    }
}

void Updater::showError(const QString &error, Acknowledgement acknowledge) {
    noteUpdate(QStringLiteral("failed: ") + error);
    m_cancellation = nullptr;
    m_countdown.stop();
    m_foundReply = nullptr;
    m_readyReply = nullptr;
    m_messageAcknowledged = std::move(acknowledge);
    m_isElsewhere = false;
    m_relaunchAsked = false;
    if (std::exchange(m_installAsked, false) || m_stage == Stage::Downloading ||
        m_stage == Stage::Preparing || m_stage == Stage::Installing) {
        enter(Stage::InstallFailed);
        tellUnseen();
    } else if (m_userInitiated) {
        enter(Stage::CheckFailed);
    } else {
        endSilently();
    }
}

void Updater::showDownloadInitiated(Cancellation cancel) {
    noteUpdate(QStringLiteral("downloading"));
    m_cancellation = std::move(cancel);
    m_expectedBytes = 0;
    m_receivedBytes = 0;
    enter(Stage::Downloading);
}

void Updater::showExpectedBytes(qint64 bytes) {
    noteUpdate(QStringLiteral("expecting %1 bytes").arg(bytes));
    m_expectedBytes = bytes;
    Q_EMIT changed();
}

void Updater::showReceivedBytes(qint64 bytes) {
    constexpr qint64 mega = 1'000'000;
    // A line a tenth, or a megabyte where the whole is unknown, not a thousand.
    const auto step = [this] {
        return m_expectedBytes > 0 ? qint64(progress() * tenths) : m_receivedBytes / mega;
    };
    const qint64 before = m_receivedBytes > 0 ? step() : -1;
    m_receivedBytes += bytes;
    m_expectedBytes = m_expectedBytes > 0 ? std::max(m_expectedBytes, m_receivedBytes) : 0;
    if (step() != before) {
        noteUpdate(QStringLiteral("received %1 bytes").arg(m_receivedBytes));
    }
    Q_EMIT changed();
}

void Updater::showExtractionStarted() {
    noteUpdate(QStringLiteral("unpacking"));
    m_cancellation = nullptr;
    m_extracted = -1;
    enter(Stage::Preparing);
}

void Updater::showExtractionProgress(double part) {
    if (m_stage == Stage::Preparing) {
        const int before = m_extracted < 0 ? -1 : static_cast<int>(m_extracted * tenths);
        m_extracted = std::clamp(part, 0.0, 1.0);
        if (const int now = static_cast<int>(m_extracted * tenths); now != before) {
            noteUpdate(QStringLiteral("unpacked %1 tenths").arg(now));
        }
        Q_EMIT changed();
    }
}

void Updater::showReady(Reply reply) {
    noteUpdate(QStringLiteral("ready"));
    m_cancellation = nullptr;
    m_readyReply = std::move(reply);
    if (std::exchange(m_relaunchAsked, false)) {
        answerReady(Choice::Install); // who asks anew knows what goes on
        return;
    }
    // The answer to this one: a later one has nothing to do with it.
    const bool installAsked = std::exchange(m_installAsked, false);
    m_heldUp.clear();
    if (installAsked && !isHeldUp()) {
        m_countdown.start();
    }
    enter(Stage::Ready);
    tellUnseen();
}

void Updater::showInstalling(bool programEnded, std::function<void()> endAgain) {
    noteUpdate(QStringLiteral("installing, the program %1")
                   .arg(programEnded ? QStringLiteral("has ended") : QStringLiteral("is to end")));
    m_endAgain = std::move(endAgain);
    enter(Stage::Installing);
}

void Updater::showInstalled(bool relaunched, Acknowledgement acknowledge) {
    noteUpdate(
        QStringLiteral("installed%1").arg(relaunched ? QStringLiteral(", relaunched") : QString()));
    m_messageAcknowledged = std::move(acknowledge);
    this->acknowledge();
}

void Updater::showTakenBack(const QString &version) {
    noteUpdate(QStringLiteral("%1 did not come to work, %2 does").arg(version, m_parts.version));
    m_isElsewhere = false;
    enter(Stage::InstallFailed);
    Q_EMIT told(updatetext::installFailedTitle());
}

void Updater::showHeldElsewhere() {
    noteUpdate(QStringLiteral("another process installs an update"));
    m_cancellation = nullptr;
    m_relaunchAsked = false;
    // Nobody asked this process for it: the other one tells what comes of it.
    const bool asked = std::exchange(m_installAsked, false) || m_userInitiated;
    m_isElsewhere = asked;
    enter(asked ? Stage::InstallFailed : Stage::Idle);
    if (asked) {
        tellUnseen();
    }
}

void Updater::showInFocus() {
    noteUpdate(QStringLiteral("shown again"));
    Q_EMIT changed();
}

void Updater::dismissed() {
    noteUpdate(QStringLiteral("done"));
    m_cancellation = nullptr;
    m_relaunchAsked = false;
    m_foundReply = nullptr;
    m_userInitiated = false;
    if (m_stage == Stage::Checking || m_stage == Stage::Found || m_stage == Stage::Downloading ||
        m_stage == Stage::Preparing) {
        enter(Stage::Idle);
    }
}

} // namespace vorle
