#include "app/window/desktop/QuickCapture.h"

#include "app/labels/Wording.h"
#include "base/Text.h"

#include <QPointer>
#include <QUrl>

#include <utility>

namespace vorle {

QuickCapture::QuickCapture(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)) {
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::projects)) {
            Q_EMIT projectsChanged();
        }
    });
}

QuickCapture::~QuickCapture() = default;

QString QuickCapture::pageTitle() const {
    return m_page.title.isEmpty() ? WebLink::site(QUrl(m_page.address), QUrl::PrettyDecoded)
                                  : shownWords(m_page.title);
}

QString QuickCapture::pageLine() const {
    QString address = WebLink::shown(m_page.address);
    address.remove(0, address.indexOf(u"://") + 3);
    return m_page.from.isEmpty() ? address : QStringLiteral("%1 · %2").arg(m_page.from, address);
}

QString QuickCapture::proposalText() const {
    return m_parts.tab.asksBrowsers()
               ? tr("Safari, Google Chrome et Arc. Firefox ne laisse pas lire l’onglet\u00A0: je "
                    "propose le lien que tu as copié.")
               : tr("Ici aucun navigateur ne laisse lire l’onglet\u00A0: je propose le lien que tu "
                    "as copié.");
}

QStringList QuickCapture::projects() const {
    return m_parts.preferences.settings().projects.keys();
}

void QuickCapture::begin() {
    ++m_opening;
    m_page = {};
    m_hint.clear();
    m_dropped = false;
    m_proposes = false;
    m_giver = WebLink::Giver::User;
    setProblem({});
    if (isAdded()) {
        m_added = {};
        Q_EMIT addedChanged();
    }
}

void QuickCapture::openOver(const QString &frontApp) {
    if (m_shown && !isAdded()) {
        Q_EMIT raised();
        return;
    }
    m_frontApp = frontApp;
    begin();
    Q_EMIT pageChanged();
    Q_EMIT opened();
    m_proposes = m_parts.preferences.settings().proposeTab;
    if (m_proposes) {
        detach(ask(this, m_parts.tab, m_frontApp, m_opening), QStringLiteral("the browser's tab"));
    }
}

bool QuickCapture::open(const cli::LinkToCapture &link) {
    if (link.url.isEmpty() && link.problem.isEmpty()) {
        open();
        return true;
    }
    if (link.url.isEmpty()) {
        // A page can give an address without a link, as often as it likes: nothing is proposed by
        // it that a key would add, and the keyboard stays where it is.
        if (!m_shown || isAdded()) {
            begin();
            m_frontApp.clear();
            Q_EMIT pageChanged();
            Q_EMIT opened();
        }
        setProblem(shownWords(link.problem));
        return true;
    }
    if (m_shown && !isAdded()) {
        // A page may ask again and again: it takes nobody's keyboard twice.
        if (link.giver != WebLink::Giver::Stranger) {
            Q_EMIT raised();
        }
        const bool same = m_page.address == link.url;
        if (!same) {
            setProblem(tr("Un autre lien est arrivé\u00A0: ajoute celui-ci ou quitte-le (Échap), "
                          "puis redonne l’autre."));
        }
        return same;
    }
    begin();
    m_frontApp.clear();
    const bool strange = link.giver == WebLink::Giver::Stranger;
    m_giver = link.giver;
    m_page = {link.title, link.url, strange ? tr("Un lien reçu") : QString()};
    Q_EMIT pageChanged();
    Q_EMIT opened();
    return true;
}

Task<> QuickCapture::ask(QPointer<QuickCapture> self, BrowserTab tab, QString frontApp,
                         int opening) {
    const BrowserTab::Proposal proposal = co_await tab.read(frontApp);
    if (self && self->m_opening == opening && !self->m_dropped) {
        self->propose(proposal);
    }
}

void QuickCapture::propose(const BrowserTab::Proposal &proposal) {
    m_hint = shownWords(proposal.hint);
    m_page = proposal.page.value_or(BrowserTab::Page());
    Q_EMIT pageChanged();
}

void QuickCapture::setShown(bool shown) { m_shown = shown; }

void QuickCapture::lookAgain() {
    if (m_shown && m_proposes && !m_dropped && !isAdded()) {
        const auto proposal = m_parts.tab.readPasteboard(m_frontApp);
        if (proposal.page && proposal.page->address != m_page.address) {
            propose(proposal);
        }
    }
}

void QuickCapture::dropPage() {
    m_dropped = true;
    m_page = {};
    m_giver = WebLink::Giver::User;
    setProblem({});
    Q_EMIT pageChanged();
}

void QuickCapture::typed() {
    m_dropped = true;
    setProblem({});
}

bool QuickCapture::add(const QString &typed, const QString &note, int project) {
    const bool proposed = !m_page.address.isEmpty();
    LinkCapture::Link link{.url = proposed ? m_page.address : typed,
                           .title = proposed ? m_page.title : QString(),
                           .note = note};
    const QStringList names = projects();
    if (project >= 0 && project < names.size()) {
        link.project = names[project];
    }
    if (m_giver == WebLink::Giver::Stranger) {
        link.sharedAt = QDateTime::currentDateTimeUtc();
    }
    const auto taken = m_parts.capture.take(link);
    if (const auto *refusal = std::get_if<LinkCapture::Refusal>(&taken)) {
        setProblem(shownWords(refusal->text));
        return false;
    }
    m_added = std::get<QUuid>(taken);
    setProblem({});
    Q_EMIT addedChanged();
    return true;
}

void QuickCapture::takeBack() {
    const QUuid id = std::exchange(m_added, QUuid());
    if (!id.isNull()) {
        m_parts.store.dismiss(id);
        Q_EMIT addedChanged();
    }
}

void QuickCapture::setProblem(const QString &problem) {
    if (m_problem != problem) {
        m_problem = problem;
        Q_EMIT problemChanged();
    }
}

} // namespace vorle
