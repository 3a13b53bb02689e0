#pragma once

#include "base/Async.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// The system's way to point at a folder or a file. Asking holds nothing up; nothing when the
/// person gave up. One question at a time: a second one brings the first to the front and is given
/// nothing. Main thread; outlives every question under way. Paths are absolute.
class FilePicker {
public:
    virtual ~FilePicker() = default;

    /// What may be chosen: "OPML" and "*.opml", "*.xml". No kind stands for any file.
    struct Kind {
        QString name;
        QStringList patterns;
    };

    /// A folder that exists, looked for from `start` on; where that is empty, from wherever the
    /// system likes.
    virtual Task<std::optional<QString>> folder(QString title, QString start) = 0;
    /// A file that exists.
    virtual Task<std::optional<QString>> file(QString title, Kind kind) = 0;
    /// Where to write: the person has been asked before one that exists is named. `suggested` is a
    /// file's name, or its whole path.
    virtual Task<std::optional<QString>> saveAs(QString title, QString suggested) = 0;
};

} // namespace vorle
