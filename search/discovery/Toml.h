#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

namespace vorle::toml {

/// One "key = value" of a TOML text.
struct Entry {
    QString table;    ///< the header it stands under, without blanks and quotes: "tool.poetry"
    int block = 0;    ///< counts the headers: entries of one "[[package]]" share theirs
    QString key;      ///< without blanks and quotes around its parts: "version.ref"
    QByteArray value; ///< as written, comments taken out, lines joined by a blank
};

/// The entries of a TOML text (toml.io, 1.0), in order. Enough to read manifests and lock files:
/// values stay as they are written. What cannot be made out is passed over. Pure, any thread; time
/// linear in the text.
QList<Entry> entries(QByteArrayView text);

/// The text of a value that is one string; empty for anything else.
QString string(QByteArrayView value);

/// Every string in a value, in order: the elements of an array of strings.
QStringList strings(QByteArrayView value);

/// The entries of an inline table: { module = "a:b", version.ref = "c" }.
QList<Entry> inlineTable(QByteArrayView value);

} // namespace vorle::toml
