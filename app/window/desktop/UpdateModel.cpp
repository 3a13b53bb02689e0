#include "app/window/desktop/UpdateModel.h"

#include "app/labels/Wording.h"
#include "core/NumberText.h"

#include <QCoreApplication>

namespace vorle {

namespace {

using Stage = Updater::Stage;

QString megabytes(qint64 bytes) {
    constexpr double mega = 1'000'000;
    return tenthsText(double(bytes) / mega);
}

} // namespace

UpdateModel::UpdateModel(Updater &updater, QObject *parent) : QObject(parent), m_updater(updater) {
    connect(&updater, &Updater::changed, this, &UpdateModel::changed);
    connect(&updater, &Updater::settingsChanged, this, &UpdateModel::settingsChanged);
}

QString UpdateModel::title() const {
    const QString title = m_updater.stage() == Stage::Idle ? versionText() : m_updater.title();
    return shownWords(title);
}

QString UpdateModel::text() const {
    const bool told = m_updater.stage() != Stage::Idle;
    return shownWords(told ? m_updater.text() : m_updater.obstacle());
}

QString UpdateModel::amount() const {
    if (m_updater.stage() != Stage::Downloading || m_updater.expectedBytes() <= 0) {
        return {};
    }
    return tr("%1 sur %2 Mo")
        .arg(megabytes(m_updater.receivedBytes()), megabytes(m_updater.expectedBytes()));
}

QString UpdateModel::notes() const {
    return m_updater.stage() == Stage::Found ? shownWords(m_updater.found().notes) : QString();
}

bool UpdateModel::hasFailed() const {
    return m_updater.stage() == Stage::CheckFailed || m_updater.stage() == Stage::InstallFailed;
}

bool UpdateModel::isWorking() const {
    return m_updater.stage() == Stage::Downloading || m_updater.stage() == Stage::Preparing;
}

bool UpdateModel::isStoppable() const {
    return m_updater.stage() == Stage::Checking || m_updater.stage() == Stage::Downloading;
}

bool UpdateModel::isRelaunchable() const {
    return m_updater.stage() == Stage::Installing ||
           (m_updater.stage() == Stage::Ready && !m_updater.isCountingDown());
}

QString UpdateModel::obstacle() const { return shownWords(m_updater.obstacle()); }

QString UpdateModel::versionText() const {
    return tr("vorle %1").arg(QCoreApplication::applicationVersion());
}

void UpdateModel::look() {
    const Stage stage = m_updater.stage();
    if (stage == Stage::Idle || stage == Stage::UpToDate || stage == Stage::CheckFailed) {
        m_updater.check();
    }
}

} // namespace vorle
