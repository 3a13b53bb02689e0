#include "search/discovery/ProjectFinder.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <set>
#include <utility>

#include <sys/stat.h>

namespace vorle::discovery {

namespace {

constexpr std::array<QStringView, 14> usualFolders{
    u"Projects", u"Projets", u"Developer", u"Développement", u"dev",       u"Dev",   u"code",
    u"Code",     u"src",     u"git",       u"repos",         u"workspace", u"Sites", u"work"};

constexpr std::array<QStringView, 4> personalFolders{u"Documents", u"Desktop", u"Bureau",
                                                     u"Downloads"};

// Of the home itself: what a person keeps there besides projects.
constexpr std::array<QStringView, 13> otherFolders{
    u"Library", u"Applications", u"Movies", u"Music",           u"Pictures",  u"Public", u"Videos",
    u"Musique", u"Images",       u"Vidéos", u"Téléchargements", u"Templates", u"snap"};

constexpr std::array<QStringView, 8> passedOver{u"node_modules", u"vendor", u"build", u"target",
                                                u"dist",         u"Pods",   u"venv",  u"out"};

template <std::size_t N>
bool holds(const std::array<QStringView, N> &names, QStringView name) {
    return std::ranges::find(names, name) != names.end();
}

/// Which folder it is on which device; nothing where it is no folder, or a link to one.
std::optional<std::pair<dev_t, ino_t>> identityOf(const QString &folder) {
    struct stat about{};
    if (::lstat(QFile::encodeName(folder).constData(), &about) != 0 || !S_ISDIR(about.st_mode)) {
        return std::nullopt;
    }
    return std::pair(about.st_dev, about.st_ino);
}

struct Found {
    QString folder;
    QDateTime changed; // its dependency file
};

class Finder {
public:
    Finder(QString home, const FinderLimits &limits)
        : m_home(std::move(home)), m_limits(limits), m_deadline(limits.time) {}

    void lookUnder(const QString &root, int depth) {
        const auto identity = identityOf(root);
        if (identity && m_roots.insert(*identity).second) { // "dev" and "Dev" may be one
            m_waiting.push_back({root, depth, identity->first});
        }
    }
    QList<Found> run() {
        while (!m_waiting.empty() && !m_deadline.hasExpired()) {
            const Waiting next = m_waiting.front();
            m_waiting.pop_front();
            look(next);
        }
        return std::move(m_found);
    }

private:
    struct Waiting {
        QString folder;
        int depth; // levels left below it
        dev_t device;
    };

    void look(const Waiting &at) {
        if (const QString manifest = manifestIn(at.folder); !manifest.isEmpty()) {
            m_found += {at.folder, QFileInfo(QDir(at.folder).filePath(manifest)).lastModified()};
            return;
        }
        if (at.depth == 0) {
            return;
        }
        // Entry by entry: a folder of a hundred thousand files is not waited for.
        QDirIterator entries(at.folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
        while (m_entries < m_limits.entries && !m_deadline.hasExpired() && entries.hasNext()) {
            const QString folder = entries.next();
            const QString name = entries.fileName();
            ++m_entries;
            const bool home = at.folder == m_home;
            if (name.startsWith(u'.') || holds(passedOver, name) ||
                (home && (holds(otherFolders, name) || holds(personalFolders, name)))) {
                continue;
            }
            if (const auto identity = identityOf(folder);
                identity && identity->first == at.device) {
                m_waiting.push_back({folder, at.depth - 1, at.device});
            }
        }
    }

    QString m_home;
    FinderLimits m_limits;
    QDeadlineTimer m_deadline;
    std::deque<Waiting> m_waiting; // breadth first: what lies near the top is nearer to the person
    std::set<std::pair<dev_t, ino_t>> m_roots;
    QList<Found> m_found;
    int m_entries = 0;
};

} // namespace

QList<Project> findProjects(const QString &home, PersonalFolders personal,
                            const FinderLimits &limits) {
    const QDir root(home);
    Finder finder(root.path(), limits);
    bool usual = false;
    for (const QStringView name : usualFolders) {
        const QString folder = root.filePath(name.toString());
        usual = usual || QFileInfo(folder).isDir();
        finder.lookUnder(folder, limits.depth);
    }
    if (personal == PersonalFolders::Included) {
        for (const QStringView name : personalFolders) {
            finder.lookUnder(root.filePath(name.toString()), limits.depth);
        }
    }
    if (!usual) {
        finder.lookUnder(root.path(), 1);
    }
    QList<Found> found = finder.run();
    std::ranges::stable_sort(found, std::ranges::greater(), &Found::changed);
    QList<Project> projects;
    for (const Found &one : found.first(std::min<qsizetype>(limits.projects, found.size()))) {
        projects += readProject(one.folder);
    }
    return projects;
}

} // namespace vorle::discovery
