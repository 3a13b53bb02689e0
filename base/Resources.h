#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// The application's texts by name and extension: instructions and schemas for the agent, sample
/// data. Read at each call, so that an edited file in a development folder acts at once.
class Resources {
public:
    /// `root` is a folder or a resource prefix.
    explicit Resources(QString root = QStringLiteral(":/vorle")) : m_root(std::move(root)) {}

    /// The bytes of `name`.`extension`, or nothing when it is missing or unreadable.
    std::optional<QByteArray> data(const QString &name, const QString &extension) const;
    /// The same, read as UTF-8.
    std::optional<QString> text(const QString &name, const QString &extension) const;

private:
    QString m_root;
};

} // namespace vorle
