#include "search/Harvest.h"

#include "search/Links.h"
#include "search/TopicDraft.h"
#include "search/Version.h"

#include <QCoreApplication>

namespace vorle {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("SearchRun", text); }

QString identifier(qsizetype place) { return u'c' + QString::number(place + 1); }

/// The place behind an identifier; -1 for any other text.
qsizetype placeOf(const QString &id) {
    bool number = false;
    const qsizetype place = id.startsWith(u'c') ? id.sliced(1).toLongLong(&number) - 1 : -1;
    return number ? place : -1;
}

} // namespace

Harvest::Harvest(Tools tools, RunBook &book, std::shared_ptr<const JudgeBrief> brief,
                 CancelToken cancel)
    : m_tools(std::move(tools))
    , m_book(book)
    , m_cancel(cancel)
    , m_pipeline(m_tools.asker)
    , m_brief(std::move(brief))
    , m_judging(
          m_tools.asker, m_brief, cancel,
          {.judged = [this](const auto &batch, const auto &verdicts) { keep(batch, verdicts); },
           .failed =
               [this](const auto &batch, const std::exception &error) {
                   m_book.report.costUSD += failureCost(error);
                   m_judgeError = std::current_exception();
                   leave(batch, failureText(error));
               }})
    , m_ledger(m_tools.store.topics()) {}

void Harvest::take(Candidate candidate, Origins origins) {
    const auto place = static_cast<qsizetype>(m_items.size());
    const LinkLedger::Claim claim = m_ledger.claim(candidate.url, place);
    ScopeReport &scope = m_book.report.scopes[origins.report];
    switch (claim.standing) {
    case LinkLedger::Standing::Held:
        ++scope.known;
        return;
    case LinkLedger::Standing::Same:
        ++scope.merged;
        joinSources(claim.item, {candidate.title, candidate.url});
        return;
    case LinkLedger::Standing::New:
        break;
    }
    m_items.push_back({std::move(candidate), std::move(origins), {}, {}, {}, {}, {}});
    ++m_book.progress.candidates;
    m_reads.push_back(read(place));
}

/// One card keeps every address of its page, whether it was judged already or not.
void Harvest::joinSources(qsizetype place, const TopicSource &source) {
    Item &item = m_items[static_cast<std::size_t>(place)];
    if (item.candidate.url == source.url) {
        return;
    }
    item.otherSources.append(source);
    if (item.topic) {
        m_tools.store.addSources(*item.topic, {source});
    }
}

/// Waits for every task, the ones added meanwhile too: they use this object.
Task<> Harvest::outlast(std::deque<Task<>> &tasks) {
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        try {
            co_await tasks[i];
        } catch (const Cancelled &) {
            // Told once all have ended.
        }
    }
    tasks.clear();
    m_cancel.throwIfCancelled();
}

Task<> Harvest::finishReading() { return outlast(m_reads); }

Task<> Harvest::finishPictures() { return outlast(m_pictures); }

Task<> Harvest::finishNotes() { return outlast(m_notes); }

/// A topic's picture is its main source's; a page that could not be read has none to give.
Task<> Harvest::fetchPictures(QUuid topic, QString link) {
    if (const auto picture = co_await m_tools.images.picture(std::move(link), m_cancel)) {
        m_tools.store.setGallery(topic, {*picture});
    }
}

Task<> Harvest::read(qsizetype place) {
    Item &item = m_items[static_cast<std::size_t>(place)];
    item.page = co_await m_tools.reader.read(item.candidate.url, m_cancel);
    if (joinsAnother(place) || isOldNews(item)) {
        --m_book.progress.candidates;
    } else {
        count(item.page.level);
        ++m_book.progress.read;
        m_judging.add(judgeCandidate(place));
    }
    m_book.tell();
}

/// Whether the link led to a page that is held already, or being read under another address.
bool Harvest::joinsAnother(qsizetype place) {
    const Item &item = m_items[static_cast<std::size_t>(place)];
    if (item.page.level == ReadLevel::None || !isHttpLink(item.page.finalUrl)) {
        return false;
    }
    const LinkLedger::Claim claim = m_ledger.claim(item.page.finalUrl, place);
    const TopicSource source{item.candidate.title, item.candidate.url};
    ScopeReport &scope = m_book.report.scopes[item.origins.report];
    switch (claim.standing) {
    case LinkLedger::Standing::New:
        break;
    case LinkLedger::Standing::Held:
        ++scope.known;
        m_tools.store.addSources(claim.topic, {source});
        return true;
    case LinkLedger::Standing::Same:
        ++scope.merged;
        joinSources(claim.item, source);
        return true;
    }
    return false;
}

/// A release of a dependency that is not newer than the version in use is told apart, not shown.
bool Harvest::isOldNews(Item &item) {
    const PlannedScope *planned = item.origins.planned;
    const QString &dependency = item.candidate.about;
    const QString inUse = planned != nullptr ? planned->versions.value(dependency) : QString();
    if (inUse.isEmpty() || item.page.level == ReadLevel::None) {
        return false;
    }
    const VersionNews news = versionNews(dependency, inUse, item.page.title.value_or(QString()),
                                         QString::fromUtf8(item.page.text));
    item.currentVersion = inUse;
    item.newVersion = news.newVersion;
    if (news.notNewer) {
        m_book.report.notNewer +=
            DroppedLink{item.candidate.title, item.candidate.url,
                        tr("%1 : tu utilises déjà la version %2.").arg(dependency, inUse)};
    }
    return news.notNewer;
}

void Harvest::count(ReadLevel level) {
    ReadCounts &read = m_book.report.read;
    switch (level) {
    case ReadLevel::Full:
        ++read.full;
        break;
    case ReadLevel::Seen:
        ++read.seen;
        break;
    case ReadLevel::Meta:
        ++read.meta;
        break;
    case ReadLevel::None:
        ++read.none;
        break;
    }
}

JudgeCandidate Harvest::judgeCandidate(qsizetype place) const {
    const Item &item = m_items[static_cast<std::size_t>(place)];
    JudgeCandidate candidate;
    candidate.id = identifier(place);
    candidate.title = item.candidate.title;
    candidate.url = item.candidate.url;
    // The link tells best; where it tells nothing, the agent's word counts.
    candidate.kind = guessKind(item.candidate.url);
    if (candidate.kind == ItemKind::Article) {
        candidate.kind = json::fromRaw<ItemKind>(item.candidate.kind).value_or(ItemKind::Article);
    }
    candidate.level = item.page.level;
    candidate.content = judgedContent(item.page);
    return candidate;
}

void Harvest::keep(const QList<JudgeCandidate> &batch, const Judge::Verdicts &verdicts) {
    m_book.report.costUSD += verdicts.costUSD.value_or(0);
    QList<Topic> added;
    QList<JudgeCandidate> unanswered;
    QList<std::pair<QUuid, QString>> pictured;
    QList<ScoreNote> notes;
    for (const JudgeCandidate &candidate : batch) {
        const auto verdict = verdicts.byId.constFind(candidate.id);
        if (verdict == verdicts.byId.cend()) {
            unanswered += candidate;
            continue;
        }
        Item &item = m_items[static_cast<std::size_t>(placeOf(candidate.id))];
        Topic topic = topicFrom(item, *verdict);
        if (item.topic) { // dug up: judged once more, in its place
            topic.id = *item.topic;
            if (!m_tools.store.replacePending(std::move(topic))) {
                continue; // the user has it as it was judged first
            }
        } else {
            item.topic = topic.id;
            added += std::move(topic);
            ++m_book.progress.judged;
        }
        notes += draftNote(*m_brief, candidate, *verdict, *item.topic, m_tools.now());
        if (item.page.level != ReadLevel::None) {
            pictured += {*item.topic, item.candidate.url};
        }
    }
    m_book.report.topicIds += m_tools.store.add(std::move(added));
    if (!notes.isEmpty()) {
        m_notes.push_back(m_tools.notes.add(std::move(notes)));
    }
    for (const auto &[topic, link] : pictured) {
        m_pictures.push_back(fetchPictures(topic, link));
    }
    leave(unanswered, tr("L’IA n’a rien répondu pour ce lien."));
    m_book.tell();
}

/// What was not judged is no topic; it is told, and may come back with the next run. An item that
/// was judged once stays as it was.
void Harvest::leave(const QList<JudgeCandidate> &batch, const QString &reason) {
    for (const JudgeCandidate &candidate : batch) {
        if (!m_items[static_cast<std::size_t>(placeOf(candidate.id))].topic) {
            m_book.report.unjudged += DroppedLink{candidate.title, candidate.url, reason};
        }
    }
}

Topic Harvest::topicFrom(const Item &item, const Judgment &judgment) const {
    Topic topic = draftTopic(item.candidate, item.page, judgment);
    topic.foundAt = m_tools.now();
    topic.origin = m_book.report.scopes[item.origins.report].origin;
    topic.sources += item.otherSources;
    topic.publishedOn = item.origins.publishedOn;
    if (item.origins.planned != nullptr) {
        placeInTerritory(topic, item.candidate, *item.origins.planned);
    }
    if (topic.dependency) {
        topic.currentVersion = item.currentVersion;
        topic.newVersion = item.newVersion;
    }
    return topic;
}

QList<DigItem> Harvest::unreadItems() const {
    QList<DigItem> items;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const Item &item = m_items[i];
        if (item.topic && item.page.level == ReadLevel::None) {
            items += DigItem{identifier(static_cast<qsizetype>(i)), item.candidate.title,
                             item.candidate.url, item.candidate.about};
        }
    }
    return items;
}

Task<> Harvest::dig() {
    const QList<DigItem> items = unreadItems();
    if (items.isEmpty()) {
        co_return;
    }
    m_book.show(tr("Recherche des pages illisibles : ") + QString::number(items.size()));
    for (qsizetype from = 0; from < items.size(); from += Pipeline::digAtOnce) {
        try {
            const Pipeline::DugUp dug = co_await m_pipeline.dig(
                items.mid(from, Pipeline::digAtOnce), m_brief->today, m_tools.agent, m_cancel);
            m_book.report.costUSD += dug.costUSD.value_or(0);
            for (const Dug &result : dug.results) {
                m_reads.push_back(readDug(result));
            }
        } catch (const Cancelled &) {
            break; // told below, once what is under way has ended
        } catch (const std::exception &error) {
            m_book.report.costUSD += failureCost(error);
            m_book.report.warnings += tr("Les pages illisibles n’ont pas pu être recherchées : %1")
                                          .arg(failureText(error));
        }
    }
    bool cancelled = false;
    try {
        co_await finishReading();
    } catch (const Cancelled &) {
        cancelled = true;
    }
    co_await m_judging.finish();
    if (cancelled) {
        throw Cancelled();
    }
}

/// The item that was asked about under `id` and is still unread; nothing for an identifier made up.
Harvest::Item *Harvest::unreadItem(const QString &id) {
    const qsizetype place = placeOf(id);
    if (place < 0 || place >= static_cast<qsizetype>(m_items.size())) {
        return nullptr;
    }
    Item &item = m_items[static_cast<std::size_t>(place)];
    return item.topic && item.page.level == ReadLevel::None ? &item : nullptr;
}

Task<> Harvest::readDug(Dug dug) {
    const qsizetype place = placeOf(dug.id);
    // A page that is another card already would make two of one: the unreadable one is kept as it
    // is. The very link may have been found readable by the agent.
    if (unreadItem(dug.id) == nullptr ||
        m_ledger.claim(dug.url, place).standing != LinkLedger::Standing::New) {
        co_return;
    }
    ReadPage page = co_await m_tools.reader.read(dug.url, m_cancel);
    if (page.level == ReadLevel::None && !dug.what.isEmpty()) {
        // The agent read what this machine could not: its words stand for the page.
        page.level = ReadLevel::Meta;
        page.title = dug.title;
        page.description = dug.what;
    }
    Item *item = unreadItem(dug.id);
    if (item == nullptr || page.level == ReadLevel::None) {
        co_return;
    }
    if (item->candidate.url != dug.url) {
        // The unreadable address stays among the sources: it is known from now on.
        item->otherSources.prepend({item->candidate.title, item->candidate.url});
        item->candidate.url = dug.url;
    }
    item->page = std::move(page);
    ++m_book.report.dug;
    m_judging.add(judgeCandidate(place));
}

void Harvest::settleUnread() {
    for (const Item &item : m_items) {
        const TopicPtr topic = item.topic && item.page.level == ReadLevel::None
                                   ? m_tools.store.topic(*item.topic)
                                   : nullptr;
        if (topic) {
            Topic settled = *topic;
            settled.summary = tr("Je n’ai rien pu lire sur ce sujet : à creuser.");
            settled.firstStep = tr("Ouvrir le lien et décider s’il vaut une recherche de plus.");
            m_tools.store.replacePending(std::move(settled));
        }
    }
}

} // namespace vorle
