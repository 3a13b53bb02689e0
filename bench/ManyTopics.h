#pragma once

#include "core/Topic.h"

#include <QRandomGenerator>

namespace vorle {

/// About 8,000 bytes of prose of two languages, with what JSON has to escape.
inline QByteArray readText(QRandomGenerator &random) {
    static const QByteArrayView words[] = {"la ",        "version ", "apporte ",  "un ",
                                           "correctif ", "the ",     "release ",  "\"fixes\" ",
                                           "mémoire ",   "été ",     "déployée ", "since ",
                                           "2026. ",     "parser ",  "— "};
    QByteArray text;
    while (text.size() < 8'000) {
        text += words[random.bounded(static_cast<quint32>(std::size(words)))];
        if (random.bounded(14U) == 0) {
            text += '\n';
        }
    }
    return text;
}

/// Judged topics to sort, each with the text that was read. The same at each call, but for the
/// identities.
inline QList<Topic> manyTopics(qsizetype count) {
    QRandomGenerator random(1);
    QList<Topic> topics;
    for (qsizetype i = 0; i < count; ++i) {
        Topic topic;
        topic.id = QUuid::createUuid();
        topic.title = QStringLiteral("Vapeur %1 corrige une fuite de mémoire").arg(i);
        topic.score = static_cast<int>(random.bounded(11U));
        topic.project = QStringLiteral("Tiravue");
        topic.minutes = 20;
        topic.kind = QStringLiteral("announcement");
        topic.summary = QString::fromUtf8(readText(random).first(300));
        topic.why = QString::fromUtf8(readText(random).first(200));
        topic.firstStep = QStringLiteral("Lire les notes de version");
        topic.changes = {QStringLiteral("gain de 20 %"), QStringLiteral("nouvelle API")};
        topic.readLevel = ReadLevel::Full;
        topic.urgency = Judgment::Urgency{};
        topic.criteria = Judgment::Criteria{7, 6, 5, 8, 20};
        topic.sources = {
            {QStringLiteral("Notes"), QStringLiteral("https://example.org/%1").arg(i)}};
        topic.foundAt = QDateTime(QDate(2026, 11, 2), QTime(8, 0), Qt::UTC);
        topic.seenText = readText(random);
        topics.append(std::move(topic));
    }
    return topics;
}

} // namespace vorle
