#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace vorle::test {

/// Environment variables of this process, as a test wants them for as long as this lives; then they
/// are as they were.
class Variables {
public:
    Variables() = default;
    ~Variables();
    Variables(const Variables &) = delete;
    Variables &operator=(const Variables &) = delete;

    void set(const char *name, const QString &value);
    void unset(const char *name);
    /// Puts it back in the end, whoever sets it meanwhile.
    void keep(const char *name);

private:
    QMap<QByteArray, QByteArray> m_before; ///< null where there was none
};

} // namespace vorle::test
