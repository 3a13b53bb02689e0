#include "app/transfer/TopicImport.h"

#include "search/web/Links.h"

#include <QSet>

#include <utility>

namespace vorle {

namespace {

/// The links that say which page a topic is about. What only names a site tells nothing.
QStringList ownLinks(const Topic &topic) {
    QStringList links;
    const auto take = [&links](const QString &link) {
        if (namesOnePage(link)) {
            links += canonicalLink(link);
        }
    };
    if (const TopicSource *source = topic.mainSource()) {
        take(source->url);
    }
    if (topic.capturedURL) {
        take(*topic.capturedURL);
    }
    return links;
}

} // namespace

ImportOutcome importTopicsInto(TopicStore &store, QList<Topic> topics) {
    QSet<QString> known;
    const QList<TopicPtr> present = store.topics();
    for (const TopicPtr &topic : present) {
        for (const QString &link : ownLinks(*topic)) {
            known.insert(link);
        }
    }
    ImportOutcome outcome;
    QList<Topic> fresh;
    QList<QUuid> pending;
    QSet<QUuid> given;
    for (Topic &topic : topics) {
        if (topic.id.isNull()) { // the same at the next import, so that it does not come twice
            topic.id = QUuid::createUuidV5(QUuid(), json::encode(topic));
        }
        const QStringList links = ownLinks(topic);
        if (store.topic(topic.id)) {
            ++outcome.sameTopic;
        } else if (given.contains(topic.id)) {
            ++outcome.repeated;
        } else if (std::any_of(links.begin(), links.end(),
                               [&](const QString &link) { return known.contains(link); })) {
            ++outcome.sameLink;
        } else {
            given.insert(topic.id);
            if (topic.status == TopicStatus::Pending && !isBeingRead(topic)) {
                pending += topic.id;
            }
            fresh += std::move(topic);
        }
    }
    outcome.added = fresh.size();
    store.add(std::move(fresh));
    store.releasePending(pending);
    return outcome;
}

} // namespace vorle
