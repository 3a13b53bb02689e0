#include "app/models/SettingsModel.h"

#include <QMetaMethod>
#include <QMetaProperty>

namespace vorle {

namespace {

template <json::RawEnum E>
QStringList wordsOf() {
    QStringList words;
    for (const std::string_view word : rawStrings(E{})) {
        words += QString::fromUtf8(word.data(), qsizetype(word.size()));
    }
    return words;
}

} // namespace

SettingsModel::SettingsModel(Preferences &preferences, QObject *parent)
    : QObject(parent), m_preferences(preferences) {
    connect(&preferences, &Preferences::changed, this, &SettingsModel::announce);
    connect(&preferences, &Preferences::saveFailed, this, &SettingsModel::tellDisk);
    connect(&preferences, &Preferences::saved, this, [this] { tellDisk({}); });
}

QStringList SettingsModel::appearances() const { return wordsOf<Appearance>(); }
QStringList SettingsModel::accents() const { return wordsOf<Accent>(); }
QStringList SettingsModel::notifyModes() const { return wordsOf<NotifyMode>(); }

QString SettingsModel::problem() const {
    return m_refusal.isEmpty() || m_diskFailure.isEmpty() ? m_refusal + m_diskFailure
                                                          : m_refusal + u'\n' + m_diskFailure;
}

/// A property has its setting's key for a name, save the radius, whose key tells a second scale.
void SettingsModel::announce(const QString &key) {
    const QByteArray name = key == u"radiusLevel2" ? "radiusLevel" : key.toLatin1();
    const int index = staticMetaObject.indexOfProperty(name.constData());
    if (index >= 0) {
        staticMetaObject.property(index).notifySignal().invoke(this, Qt::DirectConnection);
    }
}

void SettingsModel::tellRefusal(const std::optional<QString> &refusal) {
    const QString text = refusal.value_or(QString());
    if (!text.isEmpty() || !m_refusal.isEmpty()) {
        m_refusal = text;
        Q_EMIT problemChanged();
    }
}

void SettingsModel::tellDisk(const QString &failure) {
    m_diskFailure = failure;
    Q_EMIT problemChanged();
}

} // namespace vorle
