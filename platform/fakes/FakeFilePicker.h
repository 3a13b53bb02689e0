#pragma once

#include "platform/FilePicker.h"

#include <QList>

namespace vorle::test {

/// Points at what it is told to, and notes what it was asked.
class FakeFilePicker final : public FilePicker {
public:
    std::optional<QString> answer{}; ///< nothing: the person gives up
    QStringList asked;               ///< the titles
    QString suggested;               ///< by the last saveAs()

    Task<std::optional<QString>> folder(QString title, QString /*start*/) override {
        return given(title);
    }
    Task<std::optional<QString>> file(QString title, Kind /*kind*/) override {
        return given(title);
    }
    Task<std::optional<QString>> saveAs(QString title, QString name) override {
        suggested = name;
        return given(title);
    }

private:
    Task<std::optional<QString>> given(const QString &title) {
        asked += title;
        co_return std::optional<QString>(answer); // a copy: it may be asked again
    }
};

} // namespace vorle::test
