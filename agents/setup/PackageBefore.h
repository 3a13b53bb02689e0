#pragma once

#include <QString>

#include <string>

namespace vorle {

/// What was there of an npm package before another version of it is installed below the same
/// prefix: npm puts it aside, and where it is killed leaves neither the old one nor the new. Kept
/// in a folder beside it, so that a later process can still put it back. Any thread, one at a time;
/// may take its time. What the system refuses is thrown as std::system_error.
class PackageBefore {
public:
    /// `package` as npm names it ("@openai/codex"), `program` as it is called in "bin".
    PackageBefore(const QString &prefix, const QString &package, const QString &program);

    /// Keeps what is there, be it nothing. What an earlier installation kept and never came to
    /// forget is put back first; and what killed ones left of npm's own, which would hold the next
    /// up, is taken away.
    void keep() const;
    /// Something is kept: an installation is under way, or was killed.
    bool isKept() const;
    /// What is of no use any more lies about: one was killed as it began or had ended.
    bool hasLeftovers() const;
    void clearLeftovers() const;
    /// All as it was when it was kept; nothing where nothing is kept.
    void putBack() const;
    /// The new one has come to stay.
    void forget() const;

private:
    void sweep() const;
    /// A name beside the package's own that none has.
    std::string aside(const char *what) const;

    QString m_program; ///< the link that is started
    QString m_scope;   ///< the folder that holds the package's own
    QString m_name;    ///< of that
    QString m_kept;
    QString m_fresh; ///< what is to be that
    QString m_old;   ///< what was
};

} // namespace vorle
