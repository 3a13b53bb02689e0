#include "agents/setup/PackageBefore.h"

#include <filesystem>

namespace vorle {

namespace {

namespace fs = std::filesystem;

fs::path native(const QString &path) { return fs::path(path.toStdString()); }

/// Whether anything has that path, a link that leads nowhere too.
bool isThere(const fs::path &path) { return fs::exists(fs::symlink_status(path)); }

/// The same files by other names, where the file system has such a thing.
void copyTree(const fs::path &from, const fs::path &to) {
    constexpr auto whole = fs::copy_options::recursive | fs::copy_options::copy_symlinks;
    std::error_code error;
    fs::copy(from, to, whole | fs::copy_options::create_hard_links, error);
    if (error) {
        fs::remove_all(to);
        fs::copy(from, to, whole);
    }
}

} // namespace

PackageBefore::PackageBefore(const QString &prefix, const QString &package, const QString &program)
    : m_program(prefix + QStringLiteral("/bin/") + program)
    , m_scope(prefix + QStringLiteral("/lib/node_modules/") + package.section(u'/', 0, -2))
    , m_name(package.section(u'/', -1))
    , m_kept(prefix + QStringLiteral("/lib/.vorle-before-") + program)
    , m_fresh(m_kept + QStringLiteral(".new"))
    , m_old(m_kept + QStringLiteral(".old")) {}

void PackageBefore::keep() const {
    putBack();
    sweep();
    const fs::path kept = native(m_kept);
    const fs::path fresh = native(m_fresh);
    const fs::path package = native(m_scope) / m_name.toStdString();
    fs::remove_all(fresh);
    fs::create_directories(fresh);
    if (isThere(package)) {
        copyTree(package, fresh / "package");
    }
    if (isThere(native(m_program))) {
        fs::copy(native(m_program), fresh / "program", fs::copy_options::copy_symlinks);
    }
    fs::rename(fresh, kept); // whole, or not there
}

bool PackageBefore::isKept() const { return isThere(native(m_kept)); }

bool PackageBefore::hasLeftovers() const {
    return isThere(native(m_fresh)) || isThere(native(m_old));
}

void PackageBefore::clearLeftovers() const {
    fs::remove_all(native(m_fresh));
    fs::remove_all(native(m_old));
}

void PackageBefore::putBack() const {
    const fs::path kept = native(m_kept);
    if (!isThere(kept)) {
        return;
    }
    sweep();
    const fs::path program = native(m_program);
    const fs::path package = native(m_scope) / m_name.toStdString();
    const fs::path fresh = native(m_scope) / aside("vorle");
    const fs::path link = native(m_program + QStringLiteral(".vorle"));
    // Copied, not moved: what is killed here begins anew. All of it, before anything goes: what the
    // system refuses then changes nothing.
    if (isThere(kept / "package")) {
        fs::create_directories(native(m_scope));
        copyTree(kept / "package", fresh);
    }
    if (isThere(kept / "program")) {
        fs::create_directories(program.parent_path());
        fs::remove(link);
        fs::copy(kept / "program", link, fs::copy_options::copy_symlinks);
    }
    if (isThere(package)) {
        fs::rename(package, native(m_scope) / aside("vorle-old"));
    }
    if (isThere(fresh)) {
        fs::rename(fresh, package);
    }
    isThere(link) ? fs::rename(link, program) : void(fs::remove(program));
    sweep();
    forget();
}

void PackageBefore::forget() const {
    clearLeftovers();
    if (isKept()) {
        fs::rename(native(m_kept), native(m_old));
    }
    clearLeftovers();
}

std::string PackageBefore::aside(const char *what) const {
    return '.' + m_name.toStdString() + '-' + what;
}

/// npm moves a package aside to a name that hangs on its path alone; where a kill left one there,
/// older ones can never move it again.
void PackageBefore::sweep() const {
    const std::string begin = aside("");
    std::error_code none;
    for (const fs::directory_entry &entry : fs::directory_iterator(native(m_scope), none)) {
        if (entry.path().filename().string().rfind(begin, 0) == 0) {
            fs::remove_all(entry.path());
        }
    }
}

} // namespace vorle
