#pragma once

#include "agents/Ask.h"
#include "app/models/settings/BenchPreview.h"
#include "app/models/settings/DesktopSettings.h"
#include "app/models/settings/SettingsPages.h"
#include "app/models/settings/TransferModel.h"
#include "app/window/desktop/CaptureShortcut.h"
#include "app/window/desktop/FeedbackModel.h"
#include "app/window/desktop/UpdateModel.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace vorle {

class FilePicker;
class FileReveal;
class LoginItem;
class Notifier;
class HotKey;
class KeyWatch;
class MailComposer;
class Pasteboard;
class Updater;

/// What single screens stand on, beside what the whole window does: each model is made when its
/// screen first asks for it, so that the first frame waits for none of them. Main thread.
class Screens final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(vorle::SettingsPages *settingsPages READ settingsPages CONSTANT FINAL)
    Q_PROPERTY(vorle::BenchPreview *bench READ bench CONSTANT FINAL)
    Q_PROPERTY(vorle::TransferModel *transfer READ transfer CONSTANT FINAL)
    Q_PROPERTY(vorle::DesktopSettings *desktop READ desktop CONSTANT FINAL)
    Q_PROPERTY(vorle::CaptureShortcut *captureShortcut READ captureShortcut CONSTANT FINAL)
    Q_PROPERTY(vorle::FeedbackModel *feedback READ feedback CONSTANT FINAL)
    Q_PROPERTY(vorle::UpdateModel *updates READ updates CONSTANT FINAL)
    /// Where the topics lie, with "~" for the home.
    Q_PROPERTY(QString topicsPath READ topicsPath CONSTANT FINAL)
    /// "Montrer dans le Finder"
    Q_PROPERTY(QString revealLabel READ revealLabel CONSTANT FINAL)

public:
    /// All of it outlives them.
    struct Parts {
        Preferences &preferences;
        TopicStore &store;
        Asker &asker;
        const Clock &clock;
        Pasteboard &pasteboard;
        FilePicker &files;
        FileReveal &reveal;
        Notifier &notifier;
        LoginItem &login;
        HotKey &hotKey;
        KeyWatch &keys;
        MailComposer &mail;
        Updater &updater;
        std::function<QString()> diagnosticText;
        std::function<QString()> feedbackLine; ///< see FeedbackModel
        std::function<void()> readOn;          ///< has captured links that wait be read
        std::function<bool()> hasMenuBar;      ///< see DesktopSettings
    };
    explicit Screens(Parts parts, QObject *parent = nullptr);
    ~Screens() override;

    SettingsPages *settingsPages();
    BenchPreview *bench();
    TransferModel *transfer();
    DesktopSettings *desktop();
    CaptureShortcut *captureShortcut() { return &m_captureShortcut; }
    FeedbackModel *feedback();
    UpdateModel *updates();
    QString topicsPath() const;
    QString revealLabel() const;

    /// Shows the topics file in the system's file browser.
    Q_INVOKABLE void revealTopics();
    /// Puts the diagnostics on the pasteboard.
    Q_INVOKABLE void copyDiagnostics();
    /// What goes on in them, or was written, and would be lost with the program: the beginning of
    /// a French sentence; "" for nothing.
    QString underWay() const;
    /// Stops what the screens have under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    /// A word for the user on what they just did.
    void said(const QString &sentence);

private:
    static Task<> showFile(QPointer<Screens> self);

    Parts m_parts;
    std::unique_ptr<SettingsPages> m_settingsPages;
    std::unique_ptr<BenchPreview> m_bench;
    std::unique_ptr<TransferModel> m_transfer;
    std::unique_ptr<DesktopSettings> m_desktop;
    CaptureShortcut m_captureShortcut; // which the shortcut sheet follows
    std::unique_ptr<FeedbackModel> m_feedback;
    std::unique_ptr<UpdateModel> m_updates;
    TaskGroup m_work;
};

} // namespace vorle
