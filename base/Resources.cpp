#include "base/Resources.h"

#include <QFile>

namespace vorle {

std::optional<QByteArray> Resources::data(const QString &name, const QString &extension) const {
    QFile file(m_root + u'/' + name + u'.' + extension);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}

std::optional<QString> Resources::text(const QString &name, const QString &extension) const {
    const auto bytes = data(name, extension);
    return bytes ? std::optional(QString::fromUtf8(*bytes)) : std::nullopt;
}

} // namespace vorle
