#pragma once

#include <QMetaType>
#include <QString>

#include <exception>

namespace vorle {

/// Why a run failed as a whole.
struct RunFailure {
    QString text;           ///< the failure's own sentence, as every screen shows it
    bool signedOut = false; ///< the agent has no account any more
    QString agentName;      ///< the display name of the agent that was to be asked

    bool operator==(const RunFailure &) const = default;
};

/// What `error` means to the user of the agent of that name.
RunFailure runFailure(const std::exception &error, const QString &agentName);

/// How a failed run is announced, in the panel and by a notification.
struct FailureNotice {
    QString title; ///< "Je n’ai pas pu fouiller."
    QString text;  ///< the failure's text; of a signed-out agent, how to sign in again too

    bool operator==(const FailureNotice &) const = default;
};
FailureNotice failureNotice(const RunFailure &failure);

/// Title and text in one line, for a status.
QString failureLine(const RunFailure &failure);

} // namespace vorle

Q_DECLARE_METATYPE(vorle::RunFailure)
