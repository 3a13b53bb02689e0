#include "app/models/settings/OnboardingModel.h"

#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "app/territory/TerritoryEdit.h"
#include "app/triage/Calibration.h"
#include "base/FrenchLocale.h"
#include "base/OnDisk.h"
#include "search/run/RunPlan.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace vorle {

OnboardingModel::OnboardingModel(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)) {
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::projects)) {
            showFound();
            showProposals();
        } else if (Preferences::isKeyOf(key, &Settings::interests)) {
            showProposals();
        }
        Q_EMIT changed();
    });
    connect(&m_parts.projects, &ProjectsModel::read, this, &OnboardingModel::propose);
    if (m_parts.wanted && !m_parts.preferences.settings().onboarded) {
        open();
    }
}

bool OnboardingModel::isUnfinished() const {
    return m_parts.wanted && !m_shown && !m_parts.preferences.settings().onboarded;
}

OnboardingModel::Step OnboardingModel::step() const {
    return static_cast<Step>(
        std::clamp(m_parts.preferences.settings().onboardingStep, 0, steps - 1));
}

QString OnboardingModel::title() const {
    switch (step()) {
    case You:
        return tr("Toi d’abord");
    case Projects:
        return tr("Tes projets");
    case Topics:
        return tr("Tes domaines");
    case Agent:
        return tr("Ton IA");
    case When:
        break;
    }
    return tr("Quand");
}

QString OnboardingModel::text() const {
    switch (step()) {
    case You:
        return tr("Je note chaque trouvaille pour toi. Dis-moi ce que tu fais.");
    case Projects:
        return shownWords(tr("Donne-moi leurs dossiers\u00A0: j’y lis seulement la liste des "
                             "dépendances."));
    case Topics:
        return tr("Ce que tu suis, même loin de ton métier.");
    case Agent:
        return tr("Je fouille avec l’abonnement que tu as déjà. Choisis lequel.");
    case When:
        break;
    }
    return tr("La première fouille part maintenant, si tu veux.");
}

QString OnboardingModel::announcement() const {
    return tr("Étape %1 sur %2\u00A0: %3").arg(step() + 1).arg(steps).arg(title());
}

QString OnboardingModel::jobReason() const {
    return m_evidence.isEmpty()
               ? QString()
               : tr("Proposé d’après %1.").arg(frenchLocale().createSeparatedList(m_evidence));
}

QStringList OnboardingModel::jobs() const { return discovery::jobPresets(); }

void OnboardingModel::showFound() {
    const QStringList taken = m_parts.preferences.settings().projects.values();
    QList<FoundFolder> rows;
    for (const discovery::Project &project : m_found) {
        if (taken.contains(project.folder)) {
            continue;
        }
        const QFileInfo folder(project.folder);
        QString above = folder.path();
        if (above == m_parts.home || above.startsWith(m_parts.home + u'/')) {
            above.replace(0, m_parts.home.size(), u'~');
        }
        QStringList facts{above};
        if (!project.labels.isEmpty()) {
            facts += project.labels.join(QStringLiteral(", "));
        }
        rows += FoundFolder{shownWords(folder.fileName()), QUrl::fromLocalFile(project.folder),
                            shownWords(facts.join(QStringLiteral(" · ")))};
    }
    m_foundRows.show(rows);
}

void OnboardingModel::showProposals() {
    QStringList proposals = m_parts.projects.labels();
    proposals.removeDuplicates();
    proposals.removeIf([&](const QString &label) {
        return std::ranges::any_of(m_parts.preferences.settings().interests,
                                   [&](const QString &interest) {
                                       return interest.compare(label, Qt::CaseInsensitive) == 0;
                                   });
    });
    constexpr qsizetype most = 3;
    QList<NameRow> rows;
    for (const QString &label : proposals.first(std::min(most, proposals.size()))) {
        rows += {label, shownLine(label), {}};
    }
    m_proposals.show(rows);
}

QString OnboardingModel::refusal() const { return shownWords(refusalText(m_parts.preferences)); }

OnboardingModel::~OnboardingModel() { m_cancel.cancel(); }

Task<> OnboardingModel::stopped() {
    m_cancel.cancel();
    co_await m_work.join();
}

QString OnboardingModel::setJob(const QString &job) {
    m_jobGiven = true;
    return territory::setJob(m_parts.preferences, job).value_or(QString());
}

void OnboardingModel::open() {
    m_shown = true;
    if (!std::exchange(m_looked, true)) {
        m_work.add(logged(look(this), QStringLiteral("looking for projects")));
    }
    Q_EMIT changed();
}

void OnboardingModel::beginAgain() {
    setStep(0);
    open();
}

void OnboardingModel::next() {
    const Settings &settings = m_parts.preferences.settings();
    if (step() == You && !m_jobGiven && !m_evidence.isEmpty() &&
        settings.job.value_or(QString()).isEmpty()) {
        m_parts.preferences.change(&Settings::job, m_job);
    }
    pass();
}

void OnboardingModel::pass() { setStep(std::min(step() + 1, steps - 1)); }

void OnboardingModel::back() { setStep(std::max(step() - 1, 0)); }

void OnboardingModel::setStep(int step) {
    m_parts.preferences.change(&Settings::onboardingStep, step);
}

void OnboardingModel::leave() {
    m_shown = false;
    Q_EMIT changed();
}

void OnboardingModel::finish() {
    Preferences &preferences = m_parts.preferences;
    if (!preferences.settings().onboarded) {
        Calibration::expect(preferences); // first: alone, `onboarded` says that it was long ago
        preferences.change(&Settings::onboarded, true);
    }
    setStep(0);
    leave();
}

/// What can be proposed: the projects under the home, the apps.
Task<> OnboardingModel::look(QPointer<OnboardingModel> self) {
    struct Found {
        QList<discovery::Project> projects;
        QStringList apps;
    };
    self->m_parts.projects.refresh();
    const auto found = co_await onDisk(
        [home = self->m_parts.home, personal = self->m_parts.personal, apps = self->m_parts.apps] {
            Found all{discovery::findProjects(home, personal), {}};
            for (const discovery::App &app : apps ? apps() : QList<discovery::App>()) {
                all.apps += app.name;
            }
            return all;
        },
        maxDiskWait, self->m_cancel.token());
    if (self && found) {
        self->m_found = found->projects;
        self->m_apps = found->apps;
        self->propose();
    }
}

/// The job that all of it points to.
void OnboardingModel::propose() {
    QStringList labels = m_parts.projects.labels();
    if (labels.isEmpty()) { // none was named yet: what was found says as much
        for (const discovery::Project &project : std::as_const(m_found)) {
            labels += project.labels;
        }
    }
    if (m_looked) {
        m_job = discovery::jobTitle(labels, m_apps);
        m_evidence = discovery::jobEvidence(labels, m_apps);
        m_evidence.removeDuplicates();
    }
    showFound();
    showProposals();
    Q_EMIT foundChanged();
}

} // namespace vorle
