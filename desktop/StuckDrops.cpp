#include "desktop/StuckDrops.h"

#include "base/Log.h"
#include "storage/BesideTopics.h"

#include <QFile>

#include <exception>

namespace vorle {

namespace {

/// Names are any bytes: they are written in hexadecimal digits.
struct StuckRecord {
    QByteArray name;
    QString number; ///< past what JSON's numbers hold for sure
    qint64 bytes = 0;
    QString changed;
    bool goesAside = false;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &StuckRecord::name),
                          json::field("number", &StuckRecord::number),
                          json::field("bytes", &StuckRecord::bytes),
                          json::field("changed", &StuckRecord::changed),
                          json::field("goesAside", &StuckRecord::goesAside));
    }
    static constexpr auto jsonRest() { return &StuckRecord::unknown; }
};

void tell(const std::exception &error) {
    logLine(QStringLiteral("the drops that are done with: ") +
            QString::fromLocal8Bit(error.what()));
}

} // namespace

StuckDrops::StuckDrops(const QString &topicsFile)
    : m_file(sidecarPath(topicsFile, QStringLiteral("drops.json"))) {}

StuckDrops::Drops StuckDrops::load() const {
    Drops drops;
    try {
        const auto bytes = m_file.isEmpty() ? std::nullopt : readWhole(m_file);
        const auto records =
            bytes ? json::decode<QList<StuckRecord>>(*bytes) : QList<StuckRecord>();
        for (const StuckRecord &each : records) {
            drops.insert(QByteArray::fromHex(each.name),
                         {{each.number.toULongLong(), each.bytes, each.changed.toLongLong()},
                          each.goesAside});
        }
    } catch (const std::exception &error) {
        tell(error);
    }
    return drops;
}

void StuckDrops::save(const Drops &drops) const {
    if (m_file.isEmpty() || (drops.isEmpty() && !QFile::exists(m_file))) {
        return;
    }
    QList<StuckRecord> records;
    for (auto each = drops.cbegin(); each != drops.cend(); ++each) {
        records += {each.key().toHex(), QString::number(each->state.number), each->state.bytes,
                    QString::number(each->state.changed), each->goesAside};
    }
    try {
        replaceWhole(m_file, json::encode(records, json::Style::Pretty));
    } catch (const std::exception &error) {
        tell(error);
    }
}

} // namespace vorle
