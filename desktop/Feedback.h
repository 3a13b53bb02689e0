#pragma once

#include "base/Async.h"
#include "platform/MailComposer.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace vorle {

/// What the person writes to the maker about. In this order.
enum class FeedbackKind { Problem, Idea, Score };
inline constexpr FeedbackKind feedbackKinds[] = {FeedbackKind::Problem, FeedbackKind::Idea,
                                                 FeedbackKind::Score};

/// "Un problème"
QString feedbackLabel(FeedbackKind kind);
/// What an empty message asks for.
QString feedbackPrompt(FeedbackKind kind);

struct Feedback {
    /// Where it goes: the maker's, and the only place that says so.
    static constexpr QStringView address = u"retours@vorle.fr";

    FeedbackKind kind = FeedbackKind::Problem;
    QString text;           ///< as the person wrote it
    QString diagnostics{};  ///< one line, shown before it is joined; "" for none
    QStringList pictures{}; ///< paths
};

/// The message: the text without signs that steer a terminal or a mail program, and the diagnostics
/// under it. Pure.
MailDraft feedbackMail(const Feedback &feedback);
/// The same as an address: every sign of a text that could end it, or begin another header, is
/// encoded. Without attachments. Pure.
QUrl mailtoAddress(const MailDraft &draft);
QUrl webMailAddress(const MailDraft &draft);
/// Whether what opens for mail addresses is a browser, in which mail is read on the web. Pure.
bool isWebMail(const QString &program);

enum class FeedbackOutcome {
    Ready,        ///< a message stands ready, with all that goes with it
    PicturesLeft, ///< it stands ready; the pictures are shown, to be taken into it by hand
    TooLong,      ///< the text does not fit an address, and there is no other way here
    NoMail        ///< nothing here opens for mail
};

/// Lays the message before the person, in their own mail program: whole where that takes it, else
/// as an address. Nothing is sent by it.
Task<FeedbackOutcome> prepareFeedback(MailComposer &mail, MailDraft draft);

} // namespace vorle
