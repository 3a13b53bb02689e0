#pragma once

#include "base/Descriptor.h"

#include <QString>

#include <optional>

namespace vorle {

/// A fresh folder in the temporary directory, "vorle-install-" and a UUID, that only the user can
/// enter. It goes with the object, whatever lies in it; after a kill the next start takes it away
/// (removeStaleFiles), and until then it is in use. Main thread.
class WorkFolder {
public:
    /// @throws std::system_error
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;

    const QString &path() const { return m_path; }
    QString file(const QString &name) const { return m_path + u'/' + name; }

private:
    QString m_path;
    std::optional<Descriptor> m_use;
};

} // namespace vorle
