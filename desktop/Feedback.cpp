#include "desktop/Feedback.h"

#include "base/French.h"

#include <QChar>
#include <QRegularExpression>

#include <algorithm>

namespace vorle {

namespace {

/// Browsers and mail services cut or refuse longer ones.
constexpr qsizetype longestAddress = 8'000;
/// In bytes: a program is handed it as one argument, which Linux refuses past 131,071.
constexpr qsizetype longestBody = 100'000;

QString subjectOf(FeedbackKind kind) {
    switch (kind) {
    case FeedbackKind::Problem:
        return French::tr("vorle\u00A0: un problème");
    case FeedbackKind::Idea:
        return French::tr("vorle\u00A0: une idée");
    case FeedbackKind::Score:
        return French::tr("vorle\u00A0: un sujet mal noté");
    }
    return {};
}

/// Without what steers: controls, and marks that turn the direction of what follows.
QString clean(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    text.removeIf([](QChar sign) {
        const char16_t code = sign.unicode();
        const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
        return turns || (sign.category() == QChar::Other_Control && code != u'\n' && code != u'\t');
    });
    return text.trimmed();
}

/// Line ends as mail has them.
QByteArray encoded(QString text) {
    return QUrl::toPercentEncoding(text.replace(u'\n', QStringLiteral("\r\n")));
}

} // namespace

QString feedbackLabel(FeedbackKind kind) {
    switch (kind) {
    case FeedbackKind::Problem:
        return French::tr("Un problème");
    case FeedbackKind::Idea:
        return French::tr("Une idée");
    case FeedbackKind::Score:
        return French::tr("Un sujet mal noté");
    }
    return {};
}

QString feedbackPrompt(FeedbackKind kind) {
    switch (kind) {
    case FeedbackKind::Problem:
        return French::tr("Ce que tu faisais, ce qui s’est passé, ce que tu attendais.");
    case FeedbackKind::Idea:
        return French::tr("Ce qui te manque, ou ce qui serait mieux autrement.");
    case FeedbackKind::Score:
        return French::tr("Le sujet, la note qu’il a eue, celle qu’il méritait, et pourquoi.");
    }
    return {};
}

MailDraft feedbackMail(const Feedback &feedback) {
    MailDraft draft{Feedback::address.toString(), subjectOf(feedback.kind), clean(feedback.text),
                    feedback.pictures};
    if (!feedback.diagnostics.isEmpty()) {
        draft.body += QStringLiteral("\n\n—\n") + clean(feedback.diagnostics).simplified();
    }
    return draft;
}

QUrl mailtoAddress(const MailDraft &draft) {
    return QUrl::fromEncoded("mailto:" + QUrl::toPercentEncoding(draft.to, "@") +
                             "?subject=" + encoded(draft.subject) + "&body=" + encoded(draft.body));
}

QUrl webMailAddress(const MailDraft &draft) {
    return QUrl::fromEncoded("https://mail.google.com/mail/?view=cm&fs=1&to=" + encoded(draft.to) +
                             "&su=" + encoded(draft.subject) + "&body=" + encoded(draft.body));
}

bool isWebMail(const QString &program) {
    static constexpr QStringView browsers[] = {
        u"firefox", u"chrome",     u"chromium", u"safari",    u"brave",    u"vivaldi",
        u"opera",   u"edgemac",    u"edge",     u"librewolf", u"epiphany", u"konqueror",
        u"falkon",  u"thebrowser", u"zen",      u"gmail",     u"waterfox", u"orion"};
    const QString name = program.toLower();
    static const QRegularExpression parts(QStringLiteral("[^a-z]+"));
    const QStringList words = name.split(parts, Qt::SkipEmptyParts);
    return std::ranges::any_of(browsers,
                               [&](QStringView browser) { return words.contains(browser); });
}

Task<FeedbackOutcome> prepareFeedback(MailComposer &mail, MailDraft draft) {
    if (draft.body.toUtf8().size() > longestBody) {
        co_return FeedbackOutcome::TooLong;
    }
    const QString program = co_await mail.program();
    const bool web = isWebMail(program);
    if (!web && mail.takesDrafts(program) && co_await mail.compose(draft)) {
        co_return FeedbackOutcome::Ready;
    }
    const QUrl address = web ? webMailAddress(draft) : mailtoAddress(draft);
    if (program.isEmpty()) {
        co_return FeedbackOutcome::NoMail;
    }
    if (address.toEncoded().size() > longestAddress) {
        co_return FeedbackOutcome::TooLong;
    }
    if (!mail.open(address)) {
        co_return FeedbackOutcome::NoMail;
    }
    if (draft.attachments.isEmpty()) {
        co_return FeedbackOutcome::Ready;
    }
    mail.show(draft.attachments);
    co_return FeedbackOutcome::PicturesLeft;
}

} // namespace vorle
