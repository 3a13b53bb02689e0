#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

// What the lists of the screens hold: values, worded.

/// A text with a word on what it is: a change and its sort, a fact and its name, what a scope of a
/// run came to.
struct NamedText {
    Q_GADGET
    QML_VALUE_TYPE(namedText)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(bool failed MEMBER failed FINAL)

public:
    QString name; ///< may be empty
    QString text;
    bool failed = false; ///< it tells of a failure

    bool operator==(const NamedText &) const = default;
};

/// One of the judge's grades.
struct NamedGrade {
    Q_GADGET
    QML_VALUE_TYPE(namedGrade)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(int grade MEMBER grade FINAL)

public:
    QString name;
    int grade = 0; ///< 0 to 10

    bool operator==(const NamedGrade &) const = default;
};

/// A link to a source.
struct NamedLink {
    Q_GADGET
    QML_VALUE_TYPE(namedLink)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString url MEMBER url FINAL)
    Q_PROPERTY(QString address MEMBER address FINAL)
    Q_PROPERTY(QString picture MEMBER picture FINAL)
    Q_PROPERTY(QString adds MEMBER adds FINAL)

public:
    QString name;
    QString url;
    QString address; ///< the url as it is shown
    QString picture; ///< the name of its file in the picture cache, or ""
    QString adds;    ///< what it adds to the others, or ""

    bool operator==(const NamedLink &) const = default;
};

/// A word that is kept, and how it reads.
struct NamedChoice {
    Q_GADGET
    QML_VALUE_TYPE(namedChoice)
    Q_PROPERTY(QString word MEMBER word FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)

public:
    QString word; ///< as it is kept
    QString text; ///< as it reads

    bool operator==(const NamedChoice &) const = default;
};

/// A part of a topic's reading notes.
struct ReadingPart {
    Q_GADGET
    QML_VALUE_TYPE(readingPart)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString body MEMBER body FINAL)
    Q_PROPERTY(bool code MEMBER code FINAL)

public:
    QString title;
    QString body;
    bool code = false; ///< kept as it is, to be copied

    bool operator==(const ReadingPart &) const = default;
};

/// A list as QML's views take it.
template <class Value>
QVariantList variants(const QList<Value> &values) {
    QVariantList list;
    list.reserve(values.size());
    for (const Value &value : values) {
        list.append(QVariant::fromValue(value));
    }
    return list;
}

} // namespace vorle
