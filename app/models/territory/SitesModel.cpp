#include "app/models/territory/SitesModel.h"

#include "base/OnDisk.h"
#include "base/WebLink.h"
#include "core/RunHistory.h"
#include "platform/FilePicker.h"
#include "search/feeds/Feeds.h"
#include "search/feeds/Opml.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vorle {

namespace {

QString noFeedText() {
    return SitesModel::tr("Ce site n’annonce aucun flux\u00A0: je le lis par la recherche. Si tu "
                          "connais l’adresse de son flux, mets-la à sa place.");
}

/// What the runs tell of a site.
struct Told {
    const RunReport *last = nullptr; ///< the last that looked at it
    int items = 0;
    QString trouble;
    QDateTime since; ///< when the trouble was first told, without a run in between that was well
};

Told toldOf(const QString &address, const QList<RunReport> &reports) {
    Told told;
    for (qsizetype i = reports.size() - 1; i >= 0; --i) {
        const RunReport &report = reports.at(i);
        const QList<SiteReport> sites = report.sites.value_or(QList<SiteReport>());
        const auto site = std::ranges::find(sites, address, &SiteReport::site);
        if (site == sites.end()) {
            continue;
        }
        const auto trouble = std::ranges::find(report.feeds, address, &FeedTrouble::site);
        const QString problem = trouble == report.feeds.end() ? QString() : trouble->problem;
        if (told.last == nullptr) {
            told.last = &report;
            told.items = site->items;
            told.trouble = problem;
        } else if (problem != told.trouble) {
            break;
        }
        told.since = report.date;
        if (problem.isEmpty()) {
            break;
        }
    }
    return told;
}

/// " · « Le titre », hier" of a site's newest item.
QString itemText(const QString &title, const std::optional<QDateTime> &date, const QDateTime &now,
                 const QTimeZone &zone) {
    const QString quoted = SitesModel::tr(" · «\u202F%1\u202F»")
                               .arg(title.isEmpty() ? QStringLiteral("…") : shownLine(title));
    return date ? quoted + QStringLiteral(", ") + pastText(*date, now, zone) : quoted;
}

/// The newest item of a site that a run saw; nothing where none saw any.
const SiteReport *latestOf(const QString &address, const QList<RunReport> &reports) {
    for (qsizetype i = reports.size() - 1; i >= 0; --i) {
        if (reports.at(i).sites) {
            const QList<SiteReport> &sites = *reports.at(i).sites;
            const auto site = std::ranges::find(sites, address, &SiteReport::site);
            if (site != sites.end() && site->latest) {
                return &*site;
            }
        }
    }
    return nullptr;
}

/// A list of feeds as it lies on the disk, or why it cannot be read.
struct ListRead {
    std::optional<OpmlList> list;
    QString problem;
};

ListRead readList(const QString &path) {
    QFile file(path);
    // A pipe or a device must not hold the thread up.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {{}, SitesModel::tr("Ce fichier ne se laisse pas lire.")};
    }
    if (file.size() > maxOpmlBytes) {
        return {{}, SitesModel::tr("Ce fichier est trop gros pour une liste de flux.")};
    }
    auto list = readOpml(file.read(maxOpmlBytes + 1));
    return list ? ListRead{std::move(list), {}}
                : ListRead{{}, SitesModel::tr("Ce fichier n’est pas un OPML.")};
}

QString cameText(const territory::SitesAdded &came, const OpmlList &list) {
    QStringList facts;
    const auto add = [&](qsizetype count, const QString &one, const QString &many) {
        if (count > 0) {
            facts += counted(count, one, many);
        }
    };
    add(came.added, SitesModel::tr("site ajouté"), SitesModel::tr("sites ajoutés"));
    add(came.known, SitesModel::tr("déjà là"), SitesModel::tr("déjà là"));
    add(came.refused + list.unreadable, SitesModel::tr("adresse illisible"),
        SitesModel::tr("adresses illisibles"));
    add(came.beyondLimit, SitesModel::tr("de trop"), SitesModel::tr("de trop"));
    return facts.isEmpty() ? SitesModel::tr("Cette liste ne nomme aucun site.")
                           : facts.join(QStringLiteral(", ")) + u'.';
}

} // namespace

SitesModel::SitesModel(const Parts &parts, TellRemoved removed, QObject *parent)
    : QObject(parent), m_parts(parts), m_removed(std::move(removed)) {
    connect(&parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::prioritySites)) {
            show();
        }
    });
    show();
}

SitesModel::~SitesModel() { m_cancel.cancel(); }

Task<> SitesModel::stopped() {
    m_cancel.cancel();
    co_await m_work.join();
}

void SitesModel::work(Task<> task, const char *what) {
    m_work.add(logged(std::move(task), QString::fromLatin1(what)));
}

void SitesModel::refresh() { work(readReports(this), "reading the runs' reports"); }

Task<> SitesModel::readReports(QPointer<SitesModel> self) {
    auto reports =
        co_await onDisk([file = self->m_parts.topicsFile] { return RunHistory(file).reports(); },
                        maxDiskWait, self->m_cancel.token());
    if (self && reports) {
        self->m_reports = *std::move(reports);
        self->show();
    }
}

void SitesModel::show() {
    QList<SiteRow> rows;
    QSet<QString> shown; // a file written by hand may name one twice
    for (const PrioritySite &site : m_parts.preferences.settings().prioritySites) {
        if (!shown.contains(site.address)) {
            shown.insert(site.address);
            rows += rowOf(site);
        }
    }
    m_rows.show(rows);
}

SiteRow SitesModel::rowOf(const PrioritySite &site) const {
    const QDateTime now = m_parts.clock.now();
    SiteRow row;
    row.name = site.address;
    row.shown = shownLine(site.address);
    const auto link = WebLink::typed(site.address, WebLink::Host::Any);
    const QString host =
        link ? WebLink::site(link->url(), QUrl::PrettyDecoded) : QString(row.shown);
    row.initial = host.left(1).toUpper();
    const auto readText = [&](const QDateTime &at) {
        return tr("lu %1").arg(pastText(at, now, m_parts.zone));
    };
    const Told told = toldOf(site.address, m_reports);
    const Seen seen = m_seen.value(site.address);
    if (seen.asking) {
        row.asking = true;
        row.state = tr("Je regarde…");
    } else if (seen.at.isValid() && (told.last == nullptr || told.last->date <= seen.at)) {
        row.state = seen.state;
        row.wrong = seen.wrong;
        row.read = readText(seen.at);
    } else if (told.last == nullptr) {
        row.state = site.feed      ? tr("flux trouvé, lu à la prochaine fouille")
                    : site.checked ? noFeedText()
                                   : tr("pas encore lu");
    } else if (told.trouble.isEmpty()) {
        row.state =
            told.items == 0
                ? tr("flux lu, rien de nouveau")
                : tr("flux lu, %1").arg(counted(told.items, tr("nouveauté"), tr("nouveautés")));
        if (const SiteReport *newest = latestOf(site.address, m_reports)) {
            row.state += itemText(*newest->latest, newest->latestAt, now, m_parts.zone);
        }
        row.read = readText(told.last->date);
    } else if (site.checked && !site.feed) {
        row.state = noFeedText();
        row.read = readText(told.last->date);
    } else {
        row.state =
            tr("ne répond pas depuis la fouille %1").arg(ofDayText(told.since, now, m_parts.zone));
        row.wrong = true;
    }
    row.state = shownWords(row.state);
    return row;
}

QString SitesModel::add(const QString &address) {
    setNote({});
    return shownWords(territory::addSite(m_parts.preferences, address).value_or(QString()));
}

QString SitesModel::rename(const QString &from, const QString &to) {
    setNote({});
    return shownWords(territory::changeSite(m_parts.preferences, from, to).value_or(QString()));
}

void SitesModel::remove(const QString &address) {
    setNote({});
    if (auto putBack = territory::removeSite(m_parts.preferences, address)) {
        m_removed(address, *std::move(putBack));
    }
}

void SitesModel::look(const QString &address) {
    const QList<PrioritySite> &sites = m_parts.preferences.settings().prioritySites;
    const auto site = std::ranges::find(sites, address, &PrioritySite::address);
    if (site != sites.end() && !m_seen[address].asking) {
        m_seen[address].asking = true;
        show();
        PrioritySite asked = *site;
        asked.checked.reset(); // somebody asks: it is looked at whatever was known
        work(lookAt(this, asked, m_cancel.token()), "looking at a site");
    }
}

Task<> SitesModel::lookAt(QPointer<SitesModel> self, PrioritySite site, CancelToken cancel) {
    const FeedsForRun found = co_await self->m_parts.feeds.itemsForRun({site}, {}, cancel);
    if (!self || found.reports.isEmpty()) {
        co_return;
    }
    const QDateTime now = self->m_parts.clock.now();
    Seen seen{.at = now};
    switch (found.reports.first().outcome) {
    case FeedOutcome::Read:
        seen.state = found.items.isEmpty()
                         ? tr("flux lu, aucun billet récent")
                         : tr("flux lu, %1")
                                   .arg(counted(found.items.size(), tr("billet récent"),
                                                tr("billets récents"))) +
                               itemText(found.items.first().title, found.items.first().date, now,
                                        self->m_parts.zone);
        break;
    case FeedOutcome::NoFeed:
        seen.state = noFeedText();
        break;
    case FeedOutcome::Unreachable:
        seen.state = tr("ne répond pas");
        seen.wrong = true;
        break;
    }
    self->m_seen[site.address] = seen;
    QList<PrioritySite> sites = self->m_parts.preferences.settings().prioritySites;
    const auto kept = std::ranges::find(sites, site.address, &PrioritySite::address);
    if (kept != sites.end() && !seen.wrong) {
        *kept = found.sites.first();
        self->m_parts.preferences.change(&Settings::prioritySites, sites);
    }
    self->show();
}

void SitesModel::setNote(const QString &note) {
    if (note != m_note) {
        m_note = shownWords(note);
        Q_EMIT noteChanged();
    }
}

void SitesModel::importList() { detach(takeList(this), QStringLiteral("reading a list of feeds")); }

void SitesModel::exportList() {
    detach(writeList(this), QStringLiteral("writing a list of feeds"));
}

Task<> SitesModel::takeList(QPointer<SitesModel> self) {
    self->setNote({});
    const auto path = co_await self->m_parts.files.file(
        tr("Importer un OPML"),
        {tr("Listes de flux"), {QStringLiteral("*.opml"), QStringLiteral("*.xml")}});
    if (self && path) {
        self->work(readIn(self, *path), "reading a list of feeds");
    }
}

Task<> SitesModel::readIn(QPointer<SitesModel> self, QString path) {
    const auto read =
        co_await onDisk([path] { return readList(path); }, maxDiskWait, self->m_cancel.token());
    if (!self) {
        co_return;
    }
    if (!read || !read->list) {
        self->setNote(read ? read->problem : tr("Ce fichier ne répond pas."));
        co_return;
    }
    QList<PrioritySite> sites;
    for (const OpmlSite &site : read->list->sites) {
        sites += PrioritySite{site.page.isEmpty() ? site.feed : site.page,
                              site.feed.isEmpty() ? std::nullopt : std::optional(site.feed),
                              {}};
    }
    self->setNote(cameText(territory::addSites(self->m_parts.preferences, sites), *read->list));
}

Task<> SitesModel::writeList(QPointer<SitesModel> self) {
    self->setNote({});
    const auto path =
        co_await self->m_parts.files.saveAs(tr("Exporter tes sites"), QStringLiteral("vorle.opml"));
    if (self && path) {
        self->work(writeOut(self, *path), "writing a list of feeds");
    }
}

Task<> SitesModel::writeOut(QPointer<SitesModel> self, QString path) {
    QList<OpmlSite> sites;
    for (const PrioritySite &site : self->m_parts.preferences.settings().prioritySites) {
        if (const auto link = WebLink::typed(site.address, WebLink::Host::Any)) {
            sites +=
                {territory::oneLine(site.address), link->text(), site.feed.value_or(QString())};
        }
    }
    const QByteArray bytes = writeOpml(sites, self->m_parts.clock.now());
    const auto written = co_await onDisk(
        [path, bytes] {
            QSaveFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
                   file.commit();
        },
        maxDiskWait, self->m_cancel.token());
    if (self) {
        self->setNote(written.value_or(false)
                          ? tr("%1 dans %2.")
                                .arg(counted(sites.size(), tr("site écrit"), tr("sites écrits")),
                                     shownLine(path))
                          : tr("Rien n’a pu être écrit dans %1.").arg(shownLine(path)));
    }
}

} // namespace vorle
