#include "app/window/DemoProcess.h"

#include <QProcessEnvironment>

#include <utility>

namespace vorle {

DemoProcess::DemoProcess(QString program, QStringList arguments, QObject *parent)
    : QObject(parent), m_program(std::move(program)), m_arguments(std::move(arguments)) {
    // Its words are for the terminal that this program was started from.
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    connect(&m_process, &QProcess::started, this, &DemoProcess::started);
    connect(&m_process, &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) {
        const bool closed = how == QProcess::NormalExit && status == 0;
        Q_EMIT ended(closed ? QString() : tr("La démonstration s’est arrêtée d’elle-même."));
    });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            Q_EMIT ended(tr("La démonstration n’a pas pu s’ouvrir."));
        }
    });
}

DemoProcess::~DemoProcess() {
    m_process.disconnect(this);
    if (isRunning()) {
        constexpr int patienceMs = 5'000;
        stop();
        if (!m_process.waitForFinished(patienceMs)) {
            m_process.kill();
            m_process.waitForFinished(patienceMs);
        }
    }
}

void DemoProcess::start() {
    if (!isRunning()) {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(QString::fromLatin1(returnVariable), QStringLiteral("1"));
        m_process.setProcessEnvironment(variables);
        m_process.start(m_program, m_arguments);
    }
}

void DemoProcess::stop() {
    if (isRunning()) {
        m_process.terminate();
    }
}

} // namespace vorle
