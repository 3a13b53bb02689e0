#include "core/Topic.h"

#include "base/Text.h"

#include <QUrl>

#include <algorithm>

namespace vorle {

namespace {

/// First path segments of GitHub's main host that name a page of its own, not an owner.
constexpr std::array<QStringView, 16> ownPages{
    u"about",    u"advisories", u"apps",   u"blog",     u"collections", u"explore",
    u"features", u"login",      u"orgs",   u"pricing",  u"search",      u"security",
    u"settings", u"sponsors",   u"topics", u"trending",
};

QString repositoryOf(const QString &link) {
    const QUrl url(link);
    const QString host = url.host().toLower();
    const bool mainHost = host == u"github.com" || host == u"www.github.com";
    if (!mainHost && host != u"raw.githubusercontent.com") {
        return {};
    }
    const QStringList parts = url.path().split(u'/', Qt::SkipEmptyParts);
    if (parts.size() < 2 || (mainHost && std::ranges::find(ownPages, parts[0]) != ownPages.end())) {
        return {};
    }
    QString repository = parts[1];
    if (repository.endsWith(u".git") && repository.size() > 4) {
        repository.chop(4);
    }
    return parts[0] + u'/' + repository;
}

} // namespace

QString TopicSource::displayName() const {
    QString repository = repositoryOf(url);
    if (!repository.isEmpty()) {
        return repository;
    }
    const QStringView known = trimmed(title);
    return known.isEmpty() ? QStringLiteral("Source") : known.toString();
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

QString changeLabel(const QString &change) {
    const auto speaksOf = [&](QStringView word) {
        return change.contains(word, Qt::CaseInsensitive);
    };
    if (speaksOf(u"faille")) {
        return QStringLiteral("Faille de sécurité");
    }
    if (speaksOf(u"casse")) {
        return QStringLiteral("Changement cassant");
    }
    if (speaksOf(u"gain")) {
        return QStringLiteral("Gain");
    }
    return speaksOf(u"nouvelle API") ? QStringLiteral("Nouvelle API") : QString();
}

} // namespace vorle
