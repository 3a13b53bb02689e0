#pragma once

#include "app/models/ListParts.h"
#include "base/Async.h"
#include "desktop/Feedback.h"
#include "desktop/FeedbackPicture.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace vorle {

class FilePicker;
class Pasteboard;

/// A picture of the form's list.
struct PictureRow {
    Q_GADGET
    QML_VALUE_TYPE(pictureRow)
    Q_PROPERTY(QString name MEMBER name FINAL)
    /// A small one, as an address that holds it.
    Q_PROPERTY(QString image MEMBER image FINAL)

public:
    QString name;
    QString image;
    bool operator==(const PictureRow &) const = default;
};

/// The form "Envoyer un retour": what is written to the maker, and what goes with it. The message
/// is laid before the person in their own mail program; nothing is sent from here. What was written
/// stays until it was handed over. The files of its pictures stay for a day, since a mail program
/// reads them when the message is sent. Main thread, which writes none of them; what it is given
/// outlives it.
class FeedbackModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QStringList kinds READ kinds CONSTANT FINAL)
    Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY kindChanged FINAL)
    /// What an empty message asks for.
    Q_PROPERTY(QString prompt READ prompt NOTIFY kindChanged FINAL)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    /// Whether the line of diagnostics is joined, what the switch says, and what is joined in all
    /// but pictures.
    Q_PROPERTY(bool diagnosed READ isDiagnosed WRITE setDiagnosed NOTIFY joinedChanged FINAL)
    Q_PROPERTY(QString diagnosticsLabel READ diagnosticsLabel CONSTANT FINAL)
    Q_PROPERTY(QString joinedText READ joinedText NOTIFY joinedChanged FINAL)
    /// The pictures that are joined: a list of PictureRow.
    Q_PROPERTY(QVariantList pictures READ pictures NOTIFY joinedChanged FINAL)
    /// The window as it was before the form: small, "" where there is none or it is joined already.
    Q_PROPERTY(QString windowImage READ windowImage NOTIFY joinedChanged FINAL)
    /// Something is being read or handed over.
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed FINAL)
    /// Why a picture was not taken, or the message could not be handed over; "" when nothing is
    /// wrong.
    Q_PROPERTY(QString problem READ problem NOTIFY changed FINAL)
    /// There is no way to hand it over, so that it is offered as a text to copy.
    Q_PROPERTY(bool toCopy READ isToCopy NOTIFY toCopyChanged FINAL)

public:
    struct Parts {
        MailComposer &mail;
        FilePicker &files;
        Pasteboard &pasteboard;
        /// "vorle 1.4.2 (310), macOS 15.1, Claude Code", as it is now.
        std::function<QString()> diagnostics;
    };
    explicit FeedbackModel(Parts parts, QObject *parent = nullptr);
    ~FeedbackModel() override;

    QStringList kinds() const;
    int kind() const { return static_cast<int>(m_kind); }
    void setKind(int kind);
    QString prompt() const { return feedbackPrompt(m_kind); }
    QString text() const { return m_text; }
    void setText(const QString &text);
    bool isDiagnosed() const { return m_diagnosed; }
    void setDiagnosed(bool diagnosed);
    static QString diagnosticsLabel();
    QString joinedText() const;
    QVariantList pictures() const;
    QString windowImage() const { return isWindowJoined() ? QString() : m_windowImage; }
    bool isBusy() const { return m_underWay > 0; }
    QString problem() const { return m_problem; }
    bool isToCopy() const { return m_toCopy; }

    /// Before the form is shown over it.
    Q_INVOKABLE void begin(QQuickWindow *window);
    /// Joins the window's picture.
    Q_INVOKABLE void joinWindow();
    /// Joins the pictures that were dropped.
    Q_INVOKABLE void join(const QList<QUrl> &files);
    /// Has one chosen.
    Q_INVOKABLE void choose();
    Q_INVOKABLE void remove(int index);
    /// Lays the message before the person.
    Q_INVOKABLE void prepare();
    /// Puts it on the pasteboard, address and subject first.
    Q_INVOKABLE void copy();

Q_SIGNALS:
    void changed();
    void toCopyChanged();
    void kindChanged();
    void joinedChanged();
    /// The message was handed over: the form has done its work.
    void prepared();
    /// A word for the user on what they just did.
    void said(const QString &sentence);

private:
    // They outlive the form's being shown, and may outlive this.
    static Task<> read(QPointer<FeedbackModel> self, QStringList paths);
    static Task<> encodeWindow(QPointer<FeedbackModel> self);
    static Task<> pick(QPointer<FeedbackModel> self);
    static Task<> handOver(QPointer<FeedbackModel> self);
    void take(FeedbackPicture picture);
    bool isWindowJoined() const;
    MailDraft draft() const;
    void finish(FeedbackOutcome outcome, bool unchanged);
    enum class Offer { None, Copy };
    void tell(const QString &problem, Offer offer = Offer::None);
    void work(int more);

    Parts m_parts;
    FeedbackKind m_kind = FeedbackKind::Problem;
    QString m_text;
    bool m_diagnosed = true;
    struct Joined {
        FeedbackPicture picture;
        PictureRow row;
    };
    QList<Joined> m_pictures;
    QImage m_window;
    QString m_windowImage;
    QString m_problem;
    bool m_toCopy = false;
    int m_underWay = 0;
    int m_openings = 0; // of the form: a picture of an earlier one is of another time
};

} // namespace vorle
