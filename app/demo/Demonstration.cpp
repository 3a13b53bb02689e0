#include "app/demo/Demonstration.h"

#include "agents/TemporaryFiles.h"
#include "app/demo/DemoBlog.h"
#include "base/French.h"
#include "core/DemoPast.h"
#include "core/Preferences.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace vorle {

namespace {

const QString tiravue = QStringLiteral("Tiravue");
const QString potager = QStringLiteral("Potager");

[[noreturn]] void fail(const QString &text) { throw std::runtime_error(text.toStdString()); }

void makeDemoFolder(const QString &path) {
    if (!QDir().mkpath(path)) {
        fail(French::tr("Le dossier de démonstration n’a pas pu être créé : %1").arg(path));
    }
}

void writeFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        fail(French::tr("Le fichier de démonstration n’a pas pu être écrit : %1").arg(path));
    }
}

} // namespace

std::unique_ptr<Demonstration> Demonstration::start() {
    return std::unique_ptr<Demonstration>(new Demonstration);
}

Demonstration::Demonstration() : m_folder(QDir::tempPath() + QStringLiteral("/vorle-demo-XXXXXX")) {
    if (!m_folder.isValid()) {
        fail(French::tr("Le dossier de démonstration n’a pas pu être créé : %1")
                 .arg(m_folder.errorString()));
    }
    m_use.emplace(inUse(m_folder.path()));
    makeHome();
    makeProjects();
    makePictures();
    m_site = std::make_unique<DemoSite>(DemoCatalogue(QDate::currentDate()));
}

QMap<QString, QString> Demonstration::environment() const {
    return {{QStringLiteral("VORLE_HOME"), home()},
            {QStringLiteral("VORLE_DEMO_SITE"), m_site->address()},
            {QStringLiteral("VORLE_PICTURES"), pictures()}};
}

void Demonstration::populate(Preferences &preferences) const {
    const QString local = QStringLiteral("modèles d’IA en local");
    const QString access = QStringLiteral("accessibilité des applications mobiles");
    const QString film = QStringLiteral("photographie argentique");
    const QString bike = QStringLiteral("vélo en ville");
    preferences.change(&Settings::job, QStringLiteral("Développeuse mobile"));
    preferences.change(&Settings::interests, {local, access, film, bike});
    preferences.change(&Settings::interestWeights, {{local, 5}, {access, 4}, {film, 3}, {bike, 2}});
    preferences.change(&Settings::addedTools,
                       {QStringLiteral("Obsidian"), QStringLiteral("Figma")});
    preferences.change(&Settings::projects,
                       {{tiravue, projectFolder(tiravue)}, {potager, projectFolder(potager)}});
    preferences.change(
        &Settings::projectDescriptions,
        {{tiravue, QStringLiteral("application pour commander des tirages de ses photos, sur "
                                  "téléphone et dans le navigateur")},
         {potager, QStringLiteral("un potager de 40 m² en ville, sans produits, paillé toute "
                                  "l’année")}});
    preferences.change(&Settings::prioritySites,
                       {PrioritySite{m_site->address() + demoBlogPath(), {}, {}}});
    preferences.change(&Settings::keptApps,
                       {QStringLiteral("Xcode"), QStringLiteral("Android Studio"),
                        QStringLiteral("Figma"), QStringLiteral("Obsidian")});
    preferences.change(&Settings::exclusions, {QStringLiteral("communiques.example.org"),
                                               QStringLiteral("bons-plans.example.org")});
    preferences.change(&Settings::onboarded, true);
    // Its past has runs, the last one just now (see DemoPast): so none was missed, and the guided
    // first triage is offered.
    constexpr int tenMinutes = 600;
    preferences.change(&Settings::lastSearch, QDateTime::currentDateTimeUtc().addSecs(-tenMinutes));
    preferences.change(&Settings::calibrated, false);
}

QString Demonstration::projectFolder(const QString &name) const {
    return m_folder.filePath(QStringLiteral("projets/") + name);
}

void Demonstration::makeHome() const {
    const QString agent =
        QCoreApplication::applicationDirPath() + QStringLiteral("/vorle-demo-agent");
    if (!QFileInfo(agent).isExecutable()) {
        fail(French::tr("L’agent de démonstration est introuvable : %1").arg(agent));
    }
    const QString programs = home() + QStringLiteral("/.local/bin");
    makeDemoFolder(programs);
    for (const QString &name : {QStringLiteral("claude"), QStringLiteral("codex")}) {
        const QString link = programs + u'/' + name;
        if (!QFile::link(agent, link)) {
            fail(French::tr("L’agent de démonstration n’a pas pu être placé : %1").arg(link));
        }
    }
    writeFile(home() + QStringLiteral("/.claude.json"),
              R"({"oauthAccount": {"displayName": "Démonstration"}})");
    makeDemoFolder(home() + QStringLiteral("/.codex"));
    writeFile(home() + QStringLiteral("/.codex/auth.json"), R"({"tokens": {}})");
}

void Demonstration::makeProjects() const {
    makeDemoFolder(projectFolder(potager));
    makeDemoFolder(projectFolder(tiravue));
    for (const QString &name :
         {QStringLiteral("package.json"), QStringLiteral("package-lock.json")}) {
        QFile source(QStringLiteral(":/vorle/demo/tiravue/") + name);
        if (!source.open(QIODevice::ReadOnly)) {
            fail(French::tr("Le projet de démonstration est absent de l’app : %1").arg(name));
        }
        writeFile(projectFolder(tiravue) + u'/' + name, source.readAll());
    }
}

void Demonstration::makePictures() const {
    makeDemoFolder(pictures());
    const QDir drawings(QStringLiteral(":/vorle/demo/pictures"));
    for (const QString &name : drawings.entryList(QDir::Files)) {
        QFile source(drawings.filePath(name));
        if (!source.open(QIODevice::ReadOnly)) {
            fail(French::tr("Une image de démonstration est absente de l’app\u00A0: %1").arg(name));
        }
        writeFile(pictures() + u'/' + demoPictureFile(QFileInfo(name).baseName()),
                  source.readAll());
    }
}

} // namespace vorle
