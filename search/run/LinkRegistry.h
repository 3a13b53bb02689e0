#pragma once

#include "core/TopicStore.h"

#include <QHash>
#include <QString>

#include <optional>

namespace vorle {

/// Which links a run may take: one link, one card. Two spellings of a link are the same link (see
/// canonicalLink), and so are two that lead to the same page. Main thread.
class LinkRegistry {
public:
    enum class Standing {
        New,   ///< nobody has it: it now belongs to the item that claimed it
        Known, ///< a topic of the store has it
        Same   ///< another item of this run has it
    };
    struct Claim {
        Standing standing = Standing::New;
        QUuid topic;        ///< the topic, when known
        qsizetype item = 0; ///< the other item, when the same
    };

    /// Knows the links of these topics, and the addresses they are fetched from. Of several topics
    /// that have a link one in the reserve is meant: it waits for the link to come back.
    explicit LinkRegistry(const QList<TopicPtr> &topics);

    /// Who has `link`. Nobody: `item` has it from now on. An item may claim again what it has
    /// (Standing::New).
    Claim claim(const QString &link, qsizetype item);
    /// What `item` had belongs to whom `heir` names from now on (Standing::Known or
    /// Standing::Same).
    void give(qsizetype item, const Claim &heir);
    /// Takes in a topic that came since, or has more addresses by now.
    void know(const Topic &topic);
    /// The topic that has `link`, if one has.
    std::optional<QUuid> topicOf(const QString &link) const;

private:
    void know(const QString &link, const QUuid &topic);

    QHash<QString, QUuid> m_known;
    QHash<QString, qsizetype> m_items;
};

} // namespace vorle
