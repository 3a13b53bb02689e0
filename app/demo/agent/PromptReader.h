#pragma once

#include <QDate>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace vorle::demo {

/// What stands in `prompt` in the place of each placeholder of `instruction` ("@COUNT" and so
/// on). Nothing when the prompt was not made from that instruction. Where a value holds a piece of
/// the instruction itself, the value ends there.
std::optional<QHash<QString, QString>> placeholderValues(const QString &instruction,
                                                         const QString &prompt);

/// "November 21, 2026"; an invalid date for any other text.
QDate promptDate(const QString &text);

/// A scope as the candidates instruction presents it.
struct ScopeRead {
    QString project; ///< empty: declared topics and tools
    QString description;
    QStringList dependencies; ///< as the dependency file spells them, in its order
    struct Interest {
        QString topic;
        int weight = 3;
    };
    QList<Interest> interests;
    QStringList tools;
    bool second = false; ///< topics that a first search came back empty on
};
ScopeRead readScope(const QString &scope);

/// One block of the judge's instruction, or of the one for pages that could not be read.
struct BlockRead {
    QString id;
    QString title;
    QString link;
    QString kind;
    QString level;
    QString note;
    QString content;
};
QList<BlockRead> readBlocks(const QString &candidates);

/// The person the judge judges for, as far as grading needs them.
struct ProfileRead {
    struct Project {
        QString name;
        QString description;
        QStringList labels;
    };
    QList<Project> projects;
    QList<ScopeRead::Interest> interests;
    QStringList tools;
};
ProfileRead readProfile(const QString &profile);
/// The same from the instruction for the items of trusted sites, which lists it on three lines.
ProfileRead readSitesProfile(const QHash<QString, QString> &values);

/// One item of a trusted site: "[site] title — summary (2026-11-21) link".
struct ItemRead {
    QString title;
    QString summary;
    QString link;
};
QList<ItemRead> readItems(const QString &items);

/// One topic as the instruction for a reading note presents it.
struct TopicSourceRead {
    QString title;
    QString link;
};
struct TopicRead {
    QString project; ///< empty: none is named
    QString title;
    QString dependency;
    QList<TopicSourceRead> sources;
    QString text; ///< what was read earlier; empty: nothing
};
TopicRead readTopic(const QHash<QString, QString> &values);

} // namespace vorle::demo
