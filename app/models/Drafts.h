#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// What stands in the lines that add something, written and not taken yet, by the line's name: it
/// is there again at the next start, and nothing is decided by leaving. Main thread.
class Drafts final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    explicit Drafts(QObject *owner) : QObject(owner) {}

    static constexpr qsizetype longest = 2'000; ///< UTF-16 units; longer ones are not kept

    /// "" where nothing was left there.
    Q_INVOKABLE QString of(const QString &line) const { return m_texts.value(line); }
    Q_INVOKABLE void keep(const QString &line, const QString &text);

    const QMap<QString, QString> &all() const { return m_texts; }
    void take(const QMap<QString, QString> &texts);

private:
    QMap<QString, QString> m_texts;
};

} // namespace vorle
