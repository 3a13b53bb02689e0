#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <variant>

namespace vorle {

/// A picture that goes with a message: what it is called, its file's bytes, and a small one of it.
struct FeedbackPicture {
    static constexpr qsizetype most = 5;
    static constexpr qint64 mostBytes = 10'000'000;    ///< of one
    static constexpr qint64 mostTogether = 20'000'000; ///< more than that no mail takes

    QString name;
    QString suffix; ///< ".png"
    QByteArray bytes;
    QImage small;
    bool own = false; ///< made here, rather than found in a file
};

/// A picture's file, read whole and seen to be one: an ordinary file of this machine, PNG, JPEG,
/// GIF or WebP by its content, within the size, of no more than 40 million points. Else why not, in
/// French. Any thread; a disk may hold it up.
std::variant<FeedbackPicture, QString> readPicture(const QString &path);
/// One as small as it is shown among those that are joined; as it is where it is no larger. Any
/// thread.
QImage smallOf(const QImage &image);
/// A picture of our own making. Any thread.
FeedbackPicture pictureOf(const QImage &image, const QString &name);

} // namespace vorle
