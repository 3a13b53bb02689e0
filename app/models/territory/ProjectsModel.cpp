#include "app/models/territory/ProjectsModel.h"

#include "base/OnDisk.h"
#include "platform/FilePicker.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace vorle {

namespace {

/// What a folder that somebody points at is.
struct Pointed {
    enum class Kind { Folder, File, Nothing };
    Kind kind = Kind::Nothing;
    QString path; ///< as the disk spells it
    QString name;
};

Pointed pointedAt(const QString &path) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    if (!info.isDir()) {
        return {Pointed::Kind::File, path, info.fileName()};
    }
    const QString canonical = info.canonicalFilePath();
    const QString name = QDir(canonical).dirName();
    return {Pointed::Kind::Folder, canonical, name.isEmpty() ? canonical : name};
}

/// The folder stands beside it in its own place: naming it again would only fill the line.
QString detailOf(const discovery::Project &found) {
    using Problem = discovery::Project::Problem;
    switch (found.problem) {
    case Problem::NoFolder:
        return found.folder.isEmpty()
                   ? ProjectsModel::tr("Sans dossier\u00A0: sa description suffit.")
                   : ProjectsModel::tr("Le dossier n’est plus là.");
    case Problem::NoAnswer:
        return ProjectsModel::tr("Le dossier ne répond pas.");
    case Problem::NoManifest:
        return ProjectsModel::tr("Aucun fichier de dépendances reconnu.");
    case Problem::UnreadableManifest:
        return ProjectsModel::tr("Son fichier de dépendances est illisible.");
    case Problem::MalformedManifest:
        return ProjectsModel::tr("Son fichier %1 est mal formé.")
            .arg(found.manifest ? found.manifest->name : QString());
    case Problem::None:
        break;
    }
    return QStringList{found.manifest ? found.manifest->name : QString(),
                       counted(found.dependencies, ProjectsModel::tr("dépendance"),
                               ProjectsModel::tr("dépendances"))}
        .join(QStringLiteral(" · "));
}

} // namespace

ProjectsModel::ProjectsModel(const Parts &parts, TellRemoved removed, QObject *parent)
    : QObject(parent), m_parts(parts), m_removed(std::move(removed)) {
    connect(&parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::projects)) {
            askNewOnes();
            show();
        } else if (Preferences::isKeyOf(key, &Settings::projectDescriptions)) {
            show();
        }
    });
    show();
}

QStringList ProjectsModel::labels() const {
    QStringList all;
    for (const Reading &reading : m_readings) {
        all += reading.found ? reading.found->labels : QStringList();
    }
    all.removeDuplicates();
    return all;
}

ProjectsModel::~ProjectsModel() { m_cancel.cancel(); }

Task<> ProjectsModel::stopped() {
    m_cancel.cancel();
    co_await m_work.join();
}

void ProjectsModel::work(Task<> task, const char *what) {
    m_work.add(logged(std::move(task), QString::fromLatin1(what)));
}

void ProjectsModel::refresh() {
    const auto folders = m_parts.preferences.settings().projects;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        m_readings[it.key()].folder = it.value();
        work(ask(this, it.key(), it.value()), "reading a project");
    }
    show();
}

/// What is read already stays as it is: a change of one project asks for its folder alone.
void ProjectsModel::askNewOnes() {
    const auto folders = m_parts.preferences.settings().projects;
    m_readings.removeIf([&](auto entry) {
        return !folders.contains(entry.key()) || folders[entry.key()] != entry->folder;
    });
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        if (!m_readings.contains(it.key())) {
            m_readings[it.key()].folder = it.value();
            work(ask(this, it.key(), it.value()), "reading a project");
        }
    }
}

Task<> ProjectsModel::ask(QPointer<ProjectsModel> self, QString name, QString folder) {
    auto found = co_await onDisk([folder] { return discovery::readProject(folder); }, maxDiskWait,
                                 self->m_cancel.token());
    if (!self || self->m_readings.value(name).folder != folder ||
        self->m_parts.preferences.settings().projects.value(name) != folder) {
        co_return; // it is gone, or another by now
    }
    if (!found) {
        found.emplace();
        found->folder = folder;
        found->problem = discovery::Project::Problem::NoAnswer;
    }
    self->m_readings[name].found = std::move(found);
    self->show();
    Q_EMIT self->read();
}

void ProjectsModel::show() {
    const Settings &settings = m_parts.preferences.settings();
    QList<ProjectRow> rows;
    for (auto it = settings.projects.cbegin(); it != settings.projects.cend(); ++it) {
        ProjectRow row;
        row.name = it.key();
        row.shown = shownLine(it.key());
        row.description = shownLine(settings.projectDescriptions.value(it.key()));
        row.folder = shownLine(it.value());
        if (const auto found = m_readings.value(it.key()).found) {
            using Problem = discovery::Project::Problem;
            row.detail = shownLine(detailOf(*found));
            row.astray = !found->hasFolder() && !it.value().isEmpty();
            row.wrong = row.astray || found->problem == Problem::UnreadableManifest ||
                        found->problem == Problem::MalformedManifest;
            for (const QString &label : found->labels) {
                row.labels += shownLine(label);
            }
        }
        rows += row;
    }
    m_rows.show(rows);
}

void ProjectsModel::setProblem(const QString &problem) {
    if (problem != m_problem) {
        m_problem = shownWords(problem);
        Q_EMIT problemChanged();
    }
}

void ProjectsModel::addFolders(const QList<QUrl> &dropped) {
    QStringList paths;
    for (const QUrl &url : dropped) {
        if (url.isLocalFile() && url.host().isEmpty()) {
            paths += url.toLocalFile();
        }
    }
    if (paths.isEmpty()) {
        setProblem(tr("Ce n’est pas un dossier de ce disque."));
        return;
    }
    work(add(this, paths), "adding a project");
}

Task<> ProjectsModel::add(QPointer<ProjectsModel> self, QStringList paths) {
    self->setProblem({});
    QStringList refused;
    std::vector<Task<std::optional<Pointed>>> asked;
    for (const QString &path : std::as_const(paths)) {
        asked.push_back(
            onDisk([path] { return pointedAt(path); }, maxDiskWait, self->m_cancel.token()));
    }
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const std::optional<Pointed> pointed = co_await asked[i];
        if (!self) {
            co_return;
        }
        Preferences &preferences = self->m_parts.preferences;
        const QString shown = shownLine(paths[qsizetype(i)]);
        if (!pointed) {
            refused += tr("Le dossier %1 ne répond pas.").arg(shown);
        } else if (pointed->kind == Pointed::Kind::Nothing) {
            refused += tr("Le dossier %1 est introuvable.").arg(shown);
        } else if (pointed->kind == Pointed::Kind::File) {
            refused +=
                tr("«\u202F%1\u202F» est un fichier\u00A0: glisse le dossier qui le contient.")
                    .arg(shownLine(pointed->name));
        } else {
            const QString free = territory::freeProjectName(preferences.settings(), pointed->name);
            const auto refusal = territory::addProject(preferences, free, pointed->path);
            refused += refusal ? QStringList{*refusal} : QStringList();
        }
    }
    refused.removeAll(QString());
    if (refused.size() > 1) {
        refused = {refused.first(), refused.size() == 2
                                        ? tr("Et un autre.")
                                        : tr("Et %1 autres.").arg(refused.size() - 1)};
    }
    self->setProblem(refused.join(u' '));
}

void ProjectsModel::chooseFolder() {
    detach(choose(this, {}), QStringLiteral("choosing a folder"));
}

void ProjectsModel::chooseFolderFor(const QString &name) {
    detach(choose(this, name), QStringLiteral("choosing a folder"));
}

Task<> ProjectsModel::choose(QPointer<ProjectsModel> self, QString name) {
    const QString title =
        name.isEmpty() ? tr("Ajouter un projet") : tr("Où est %1\u202F?").arg(shownLine(name));
    const auto path = co_await self->m_parts.files.folder(title, {});
    if (!self || !path) {
        co_return;
    }
    self->work(name.isEmpty() ? add(self, {*path}) : move(self, name, *path), "adding a project");
}

Task<> ProjectsModel::move(QPointer<ProjectsModel> self, QString name, QString path) {
    const auto pointed =
        co_await onDisk([path] { return pointedAt(path); }, maxDiskWait, self->m_cancel.token());
    if (self) {
        self->setProblem(
            !pointed || pointed->kind != Pointed::Kind::Folder
                ? tr("Le dossier %1 ne répond pas.").arg(shownLine(path))
                : territory::moveProject(self->m_parts.preferences, name, pointed->path)
                      .value_or(QString()));
    }
}

QString ProjectsModel::describe(const QString &name, const QString &description) {
    return shownWords(
        territory::setDescription(m_parts.preferences, name, description).value_or(QString()));
}

void ProjectsModel::remove(const QString &name) {
    setProblem({});
    if (auto putBack = territory::removeProject(m_parts.preferences, name)) {
        m_removed(name, *std::move(putBack));
    }
}

} // namespace vorle
