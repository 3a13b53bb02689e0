#pragma once

#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The settings as rows on pages, which can be searched: what each is called, what it is for, and
/// which of them are shown now. The values are SettingsModel's. Main thread; what it is given
/// outlives it.
class SettingsPages final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The pages there is something on, in their order.
    Q_PROPERTY(QStringList pages READ pages CONSTANT FINAL)
    /// Which of them is looked at; while something is searched for, all with a hit are.
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY shownChanged FINAL)
    /// What is searched for: every word of it, in whatever case, with or without accents.
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY shownChanged FINAL)
    Q_PROPERTY(bool searching READ searching NOTIFY shownChanged FINAL)
    /// The rows that are shown, by the setting's key or a word of their own.
    Q_PROPERTY(QStringList shown READ shown NOTIFY shownChanged FINAL)
    /// The pages that they stand on, by their name.
    Q_PROPERTY(QStringList shownPages READ shownPages NOTIFY shownChanged FINAL)

    /// "Prochaine fouille lundi 23 novembre à 8:00."
    Q_PROPERTY(QString nextRunText READ nextRunText NOTIFY settingsChanged FINAL)
    /// "3 h"
    Q_PROPERTY(QString weeklyText READ weeklyText NOTIFY settingsChanged FINAL)
    /// "Et chez tes voisins"
    Q_PROPERTY(QString radiusText READ radiusText NOTIFY settingsChanged FINAL)
    /// "vorle 0.1.0"
    Q_PROPERTY(QString versionText READ versionText CONSTANT FINAL)

public:
    SettingsPages(const Preferences &preferences, const Clock &clock, const LocalZone &zone = {},
                  QObject *parent = nullptr);

    QStringList pages() const { return m_pages; }
    int page() const { return m_page; }
    void setPage(int page);
    QString query() const { return m_query; }
    void setQuery(const QString &query);
    bool searching() const;
    QStringList shown() const;
    QStringList shownPages() const;
    QString nextRunText() const;
    QString weeklyText() const;
    QString radiusText() const;
    static QString versionText();

    /// Whether there is something to set in that row now; one without is not found either.
    Q_INVOKABLE void setPresent(const QString &row, bool present);
    /// The name of a row, and what it is for; "" where the row says that itself.
    Q_INVOKABLE static QString title(const QString &row);
    Q_INVOKABLE static QString help(const QString &row);
    /// The week's time one step further: the next half hour up or down, within what it may be.
    Q_INVOKABLE static int steppedMinutes(int minutes, int by);
    /// Looks again at the clock.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void shownChanged();
    void settingsChanged();

private:
    const Preferences &m_preferences;
    const Clock &m_clock;
    LocalZone m_zone;
    QStringList m_pages;
    int m_page = 0;
    QString m_query;
    QSet<QString> m_absent;
};

} // namespace vorle
