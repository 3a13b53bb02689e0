#include "core/Topic.h"

#include "base/French.h"
#include "base/Text.h"
#include "core/GitHubLink.h"

namespace vorle {

QString TopicSource::displayName() const {
    if (const auto repository = gitHubRepository(url)) {
        return repository->owner + u'/' + repository->name;
    }
    const QStringView known = trimmed(title);
    return known.isEmpty() ? French::tr("Source") : known.toString();
}

size_t qHash(const TopicSource &source, size_t seed) {
    return qHashMulti(seed, source.title, source.url);
}

// Equal topics have equal identities, and different topics nearly always different ones.
size_t qHash(const Topic &topic, size_t seed) { return qHash(topic.id, seed); }

bool Topic::isUrgent() const {
    if (urgency && urgency->level == Judgment::Urgency::Level::Now) {
        return true;
    }
    return score >= 9 && kind && (kind->contains(u"faille") || kind->contains(u"casse"));
}

bool isBeingRead(const Topic &topic) {
    return topic.status == TopicStatus::Pending && topic.capturedURL.has_value();
}

bool isUnjudgedCapture(const Topic &topic) {
    return isBeingRead(topic) || (topic.capturedURL && topic.status == TopicStatus::Dismissed &&
                                  topic.readLevel == ReadLevel::None && !topic.criteria);
}

QString changeLabel(const QString &change) {
    // At the start of a sentence too, and in no other spelling.
    const auto speaksOf = [&](QStringView word) {
        const QString capital = word.first(1).toString().toUpper() + word.sliced(1).toString();
        return change.contains(word) || change.contains(capital);
    };
    if (speaksOf(u"faille")) {
        return French::tr("Faille de sécurité");
    }
    if (speaksOf(u"casse")) {
        return French::tr("Changement cassant");
    }
    if (speaksOf(u"gain")) {
        return French::tr("Gain");
    }
    return speaksOf(u"nouvelle API") ? French::tr("Nouvelle API") : QString();
}

} // namespace vorle
