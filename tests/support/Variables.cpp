#include "tests/support/Variables.h"

#include <QFile>

namespace vorle::test {

Variables::~Variables() {
    for (auto it = m_before.cbegin(); it != m_before.cend(); ++it) {
        it->isNull() ? qunsetenv(it.key().constData()) : qputenv(it.key().constData(), *it);
    }
}

void Variables::set(const char *name, const QString &value) {
    keep(name);
    qputenv(name, QFile::encodeName(value));
}

void Variables::unset(const char *name) {
    keep(name);
    qunsetenv(name);
}

void Variables::keep(const char *name) {
    if (!m_before.contains(name)) {
        m_before.insert(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
    }
}

} // namespace vorle::test
