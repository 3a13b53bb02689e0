#pragma once

#include "app/labels/Wording.h"
#include "app/territory/TerritoryEdit.h"
#include "base/Text.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace vorle {

/// Takes the news of what was taken out, with how it comes back.
using TellRemoved = std::function<void(const QString &what, territory::PutBack putBack)>;

/// A name, a path or an address that the user or a file gave, on its line.
inline QString shownLine(const QString &words) {
    constexpr qsizetype most = 600;
    return shownWords(clampedLine(words, most));
}

// What the lists of "Ton territoire" hold, worded. `name` is how the settings have it, and what the
// model's functions are given; `shown` is how it reads.

struct ProjectRow {
    Q_GADGET
    QML_VALUE_TYPE(projectRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString shown MEMBER shown FINAL)
    Q_PROPERTY(QString description MEMBER description FINAL)
    Q_PROPERTY(QString folder MEMBER folder FINAL)
    Q_PROPERTY(QString detail MEMBER detail FINAL)
    Q_PROPERTY(QStringList labels MEMBER labels FINAL)
    Q_PROPERTY(bool astray MEMBER astray FINAL)
    Q_PROPERTY(bool wrong MEMBER wrong FINAL)
    Q_PROPERTY(QString told READ told FINAL)

public:
    QString name;
    QString shown;
    QString description;
    QString folder; ///< on one line
    QString detail; ///< "package.json · 13 dépendances", or what is wrong; "" while it is read
    QStringList labels;
    bool astray = false; ///< its folder is not there, or does not answer
    bool wrong = false;  ///< `detail` says what is wrong

    /// All but the name, for who listens.
    QString told() const {
        QStringList facts{description, detail, labels.join(QStringLiteral(", ")), folder};
        facts.removeAll(QString());
        for (QString &fact : facts) {
            if (fact.endsWith(u'.')) {
                fact.chop(1);
            }
        }
        return facts.join(QStringLiteral(". "));
    }
    QString key() const { return name; }
    bool operator==(const ProjectRow &) const = default;
};

struct InterestRow {
    Q_GADGET
    QML_VALUE_TYPE(interestRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString shown MEMBER shown FINAL)
    Q_PROPERTY(int weight MEMBER weight FINAL)
    Q_PROPERTY(QString weightText MEMBER weightText FINAL)

public:
    QString name;
    QString shown;
    int weight = 0;     ///< 1 to 5
    QString weightText; ///< "importance 4 sur 5"

    QString key() const { return name; }
    bool operator==(const InterestRow &) const = default;
};

/// A tool, an app, an exclusion.
struct NameRow {
    Q_GADGET
    QML_VALUE_TYPE(nameRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString shown MEMBER shown FINAL)
    Q_PROPERTY(QString icon MEMBER icon FINAL)

public:
    QString name;
    QString shown;
    QString icon = {}; ///< of an app, as AppIcons takes it; may be empty

    QString key() const { return name; }
    bool operator==(const NameRow &) const = default;
};

struct SiteRow {
    Q_GADGET
    QML_VALUE_TYPE(siteRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString shown MEMBER shown FINAL)
    Q_PROPERTY(QString initial MEMBER initial FINAL)
    Q_PROPERTY(QString state MEMBER state FINAL)
    Q_PROPERTY(QString read MEMBER read FINAL)
    Q_PROPERTY(bool wrong MEMBER wrong FINAL)
    Q_PROPERTY(bool asking MEMBER asking FINAL)

public:
    QString name;
    QString shown;
    QString initial;     ///< the first letter of its name, in capitals
    QString state;       ///< "flux lu, 12 nouveautés", "pas encore lu"
    QString read;        ///< "lu hier"; may be empty
    bool wrong = false;  ///< `state` says what is wrong
    bool asking = false; ///< it is being looked at now

    QString key() const { return name; }
    bool operator==(const SiteRow &) const = default;
};

/// An installed app, to choose from.
struct AppRow {
    Q_GADGET
    QML_VALUE_TYPE(appRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString shown MEMBER shown FINAL)
    Q_PROPERTY(QString note MEMBER note FINAL)
    Q_PROPERTY(QString icon MEMBER icon FINAL)
    Q_PROPERTY(bool chosen MEMBER chosen FINAL)

public:
    QString name;
    QString shown;
    QString note;        ///< "outil reconnu", "loisir"; may be empty
    QString icon;        ///< as AppIcons takes it; may be empty
    bool chosen = false; ///< it stands in the list of the mode that is set

    QString key() const { return name; }
    bool operator==(const AppRow &) const = default;
};

} // namespace vorle
