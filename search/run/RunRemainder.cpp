#include "search/run/RunRemainder.h"

#include "agents/UsageLimit.h"
#include "base/Log.h"
#include "storage/BesideTopics.h"
#include "storage/DurableFile.h"

#include <QFile>

#include <algorithm>

namespace vorle {

namespace {

constexpr qint64 maxLateSeconds = 12 * 3600;

/// One that waits for nothing, or whose links nobody brought, was not written by any version.
bool isSound(const RunRemainder &rest) {
    return rest.report.waits && std::ranges::none_of(rest.links, [](const RemainingLink &link) {
               return link.proposals.isEmpty();
           });
}

void logFailure(const char *what, const std::exception &error) {
    logLine(QStringLiteral("what is left of the run could not be %1: %2")
                .arg(QString::fromLatin1(what), QString::fromUtf8(error.what())));
}

} // namespace

ResumeAction resumeAction(const RunRemainder &rest, const QDateTime &now, bool running) {
    const auto &until = rest.waits().until;
    if (running) {
        return ResumeAction::Wait;
    }
    if (rest.asked || !until || *until > now.addDays(UsageLimit::maxWait.count())) {
        return ResumeAction::Offer;
    }
    if (now < *until) {
        return ResumeAction::Wait;
    }
    return until->secsTo(now) <= maxLateSeconds ? ResumeAction::Go : ResumeAction::Offer;
}

RemainderFile::RemainderFile(const QString &topicsFile)
    : m_file(sidecarPath(topicsFile, fileName())) {}

/// @throws std::system_error
RemainderFile::Reading RemainderFile::examine() const {
    const auto bytes = m_file.isEmpty() ? std::nullopt : readWhole(m_file);
    if (!bytes) {
        return {};
    }
    try {
        auto rest = json::decode<RunRemainder>(*bytes);
        if (isSound(rest)) {
            return {Found::Remainder, std::move(rest)};
        }
    } catch (const json::DecodeError &error) {
        logFailure("read", error);
    }
    return {Found::Unreadable, std::nullopt};
}

RemainderFile::Reading RemainderFile::read() const {
    try {
        return examine();
    } catch (const std::exception &error) {
        logFailure("read", error);
        return {};
    }
}

/// @throws std::system_error for what cannot be read or kept aside: it is not to be replaced
void RemainderFile::keepUnreadable(const QDateTime &now) const {
    if (examine().found == Found::Unreadable) {
        keepCopy(m_file, backupName(m_file, now));
    }
}

bool RemainderFile::write(const RunRemainder &rest, const QDateTime &now) const {
    try {
        if (m_file.isEmpty()) {
            return false;
        }
        keepUnreadable(now);
        replaceWhole(m_file, json::encode(rest, json::Style::Pretty) + '\n');
        return true;
    } catch (const std::exception &error) {
        logFailure("kept", error);
        return false;
    }
}

bool RemainderFile::clear(const QDateTime &now) const {
    try {
        if (m_file.isEmpty() || !QFile::exists(m_file)) {
            return true;
        }
        keepUnreadable(now);
        return QFile::remove(m_file);
    } catch (const std::exception &error) {
        logFailure("put away", error);
        return false;
    }
}

} // namespace vorle
