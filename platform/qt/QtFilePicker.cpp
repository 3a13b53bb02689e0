#include "platform/qt/QtFilePicker.h"

#include "base/French.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QWindow>

namespace vorle {

/// A dialog over the window that has the keyboard; none while another is open.
QFileDialog *QtFilePicker::made(const QString &title) {
    if (m_open) {
        m_open->raise();
        m_open->activateWindow();
        return nullptr;
    }
    QWindow *over = QGuiApplication::focusWindow();
    m_open = new QFileDialog(nullptr, title);
    m_open->setAttribute(Qt::WA_DeleteOnClose);
    m_open->setWindowModality(Qt::WindowModal);
    m_open->setDirectory(QDir::homePath());
    // Qt's own dialog speaks English where no translation of Qt is installed.
    m_open->setLabelText(QFileDialog::LookIn, French::tr("Dans\u00A0:"));
    m_open->setLabelText(QFileDialog::FileName, French::tr("Nom\u00A0:"));
    m_open->setLabelText(QFileDialog::FileType, French::tr("Type\u00A0:"));
    m_open->setLabelText(QFileDialog::Accept, French::tr("Choisir"));
    m_open->setLabelText(QFileDialog::Reject, French::tr("Annuler"));
    m_open->winId(); // made now, so that it can be told which window it belongs to
    if (m_open->windowHandle() != nullptr) {
        m_open->windowHandle()->setTransientParent(over);
    }
    return m_open;
}

Task<std::optional<QString>> QtFilePicker::answer(QFileDialog *dialog) {
    if (dialog == nullptr) {
        co_return std::nullopt;
    }
    struct Answer {
        std::optional<QString> path;
    };
    auto given = std::make_shared<Answer>();
    OneShot done;
    QObject::connect(dialog, &QFileDialog::finished, dialog, [given, done, dialog](int result) {
        const QStringList files = dialog->selectedFiles();
        if (result == QDialog::Accepted && !files.isEmpty()) {
            given->path = QDir::cleanPath(QFileInfo(files.first()).absoluteFilePath());
        }
        done.fire();
    });
    dialog->open();
    co_await done;
    co_return given->path;
}

Task<std::optional<QString>> QtFilePicker::folder(QString title, QString start) {
    QFileDialog *dialog = made(title);
    if (dialog != nullptr) {
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
        if (!start.isEmpty()) {
            dialog->setDirectory(start);
        }
    }
    return answer(dialog);
}

Task<std::optional<QString>> QtFilePicker::file(QString title, Kind kind) {
    QFileDialog *dialog = made(title);
    if (dialog != nullptr) {
        dialog->setFileMode(QFileDialog::ExistingFile);
        if (!kind.patterns.isEmpty()) {
            dialog->setNameFilter(kind.name + QStringLiteral(" (") + kind.patterns.join(u' ') +
                                  u')');
        }
    }
    return answer(dialog);
}

Task<std::optional<QString>> QtFilePicker::saveAs(QString title, QString suggested) {
    QFileDialog *dialog = made(title);
    if (dialog != nullptr) {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setLabelText(QFileDialog::Accept, French::tr("Enregistrer"));
        dialog->setFileMode(QFileDialog::AnyFile);
        dialog->selectFile(suggested);
    }
    return answer(dialog);
}

} // namespace vorle
