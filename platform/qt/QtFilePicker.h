#pragma once

#include "platform/FilePicker.h"

#include <QFileDialog>
#include <QPointer>

namespace vorle {

/// The dialogs of the desktop, or Qt's own where it has none. Needs a QApplication.
class QtFilePicker final : public FilePicker {
public:
    Task<std::optional<QString>> folder(QString title, QString start) override;
    Task<std::optional<QString>> file(QString title, Kind kind) override;
    Task<std::optional<QString>> saveAs(QString title, QString suggested) override;

private:
    QFileDialog *made(const QString &title);
    static Task<std::optional<QString>> answer(QFileDialog *dialog);

    QPointer<QFileDialog> m_open;
};

} // namespace vorle
