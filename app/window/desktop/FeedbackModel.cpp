#include "app/window/desktop/FeedbackModel.h"

#include "agents/TemporaryFiles.h"
#include "app/labels/Wording.h"
#include "base/OnDisk.h"
#include "base/SystemErrorText.h"
#include "platform/FilePicker.h"
#include "platform/Pasteboard.h"

#include <QBuffer>

#include <algorithm>
#include <memory>
#include <numeric>
#include <system_error>
#include <vector>

namespace vorle {

namespace {

QString imageAddress(const QImage &image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(bytes.toBase64());
}

struct PictureFiles {
    std::vector<std::shared_ptr<TemporaryFile>> files;
    QString problem; ///< why they could not be written
};

/// Any thread.
PictureFiles filesOf(const QList<FeedbackPicture> &pictures) {
    PictureFiles written;
    try {
        for (const FeedbackPicture &each : pictures) {
            written.files.push_back(
                std::make_shared<TemporaryFile>(u"vorle-feedback-", each.suffix));
            written.files.back()->write(each.bytes);
        }
    } catch (const std::system_error &error) {
        return {{}, systemRefusalText(error)};
    }
    return written;
}

} // namespace

FeedbackModel::FeedbackModel(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)) {}

FeedbackModel::~FeedbackModel() = default;

QStringList FeedbackModel::kinds() const {
    QStringList labels;
    for (const FeedbackKind kind : feedbackKinds) {
        labels += feedbackLabel(kind);
    }
    return labels;
}

void FeedbackModel::setKind(int kind) {
    const int last = static_cast<int>(std::size(feedbackKinds)) - 1;
    m_kind = feedbackKinds[std::clamp(kind, 0, last)];
    Q_EMIT kindChanged();
}

void FeedbackModel::setText(const QString &text) {
    if (text != m_text) {
        m_text = text;
        tell({});
    }
}

void FeedbackModel::setDiagnosed(bool diagnosed) {
    m_diagnosed = diagnosed;
    Q_EMIT joinedChanged();
}

QString FeedbackModel::diagnosticsLabel() {
#if defined(Q_OS_MACOS)
    return tr("Joindre la version de vorle, de macOS et l’IA utilisée");
#else
    return tr("Joindre la version de vorle, du système et l’IA utilisée");
#endif
}

QString FeedbackModel::joinedText() const {
    QStringList joined;
    if (m_diagnosed) {
        joined += m_parts.diagnostics();
    }
    if (m_pictures.isEmpty()) {
        joined += tr("Aucun sujet, aucun fichier.");
    }
    return shownWords(joined.join(QStringLiteral(". ")));
}

QVariantList FeedbackModel::pictures() const {
    QList<PictureRow> rows;
    for (const Joined &each : m_pictures) {
        rows += each.row;
    }
    return variants(rows);
}

bool FeedbackModel::isWindowJoined() const {
    return std::ranges::any_of(m_pictures, [](const Joined &each) { return each.picture.own; });
}

void FeedbackModel::begin(QQuickWindow *window) {
    ++m_openings;
    m_window = window != nullptr ? window->grabWindow() : QImage();
    m_windowImage = m_window.isNull() ? QString() : imageAddress(smallOf(m_window));
    m_pictures.removeIf([](const Joined &each) { return each.picture.own; }); // of another time
    tell({});
    Q_EMIT joinedChanged();
}

void FeedbackModel::work(int more) {
    m_underWay += more;
    Q_EMIT changed();
}

void FeedbackModel::tell(const QString &problem, Offer offer) {
    m_problem = shownWords(problem);
    Q_EMIT changed();
    if (m_toCopy != (offer == Offer::Copy)) {
        m_toCopy = !m_toCopy;
        Q_EMIT toCopyChanged();
    }
}

void FeedbackModel::take(FeedbackPicture picture) {
    const auto together = std::accumulate(
        m_pictures.cbegin(), m_pictures.cend(), qint64(picture.bytes.size()),
        [](qint64 sum, const Joined &each) { return sum + each.picture.bytes.size(); });
    if (m_pictures.size() >= FeedbackPicture::most) {
        tell(tr("Cinq images au plus."));
    } else if (together > FeedbackPicture::mostTogether) {
        tell(tr("Ensemble, ces images sont trop lourdes\u00A0: 20 Mo au plus."));
    } else {
        PictureRow row{shownWords(picture.name), imageAddress(picture.small)};
        m_pictures.append({std::move(picture), std::move(row)});
        Q_EMIT joinedChanged();
    }
}

void FeedbackModel::joinWindow() {
    if (!windowImage().isEmpty() && !isBusy()) {
        detach(encodeWindow(this), QStringLiteral("the window's picture"));
    }
}

Task<> FeedbackModel::encodeWindow(QPointer<FeedbackModel> self) {
    self->work(1);
    const int opening = self->m_openings;
    auto picture = co_await onPool(
        [image = self->m_window] { return pictureOf(image, QStringLiteral("vorle.png")); });
    if (self) {
        self->work(-1);
    }
    if (self && opening == self->m_openings) {
        self->tell({});
        self->take(std::move(picture));
    }
}

void FeedbackModel::join(const QList<QUrl> &files) {
    QStringList paths;
    for (const QUrl &file : files) {
        if (file.isLocalFile()) {
            paths += file.toLocalFile();
        }
    }
    if (paths.isEmpty()) {
        tell(tr("Je ne prends que des images de cette machine."));
        return;
    }
    paths = paths.first(std::min(paths.size(), FeedbackPicture::most + 1)); // one more is told
    detach(read(this, paths), QStringLiteral("pictures for a message"));
}

Task<> FeedbackModel::read(QPointer<FeedbackModel> self, QStringList paths) {
    self->work(1);
    self->tell({});
    for (const QString &path : paths) {
        auto read = co_await onDisk([path] { return readPicture(path); });
        if (!self) {
            co_return;
        }
        if (!read) {
            self->tell(tr("Ce disque ne répond pas."));
            break;
        }
        if (const auto *problem = std::get_if<QString>(&*read)) {
            self->tell(*problem);
        } else {
            self->take(std::get<FeedbackPicture>(std::move(*read)));
        }
    }
    self->work(-1);
}

void FeedbackModel::choose() { detach(pick(this), QStringLiteral("choosing a picture")); }

Task<> FeedbackModel::pick(QPointer<FeedbackModel> self) {
    const auto path = co_await self->m_parts.files.file(
        tr("Joindre une image"),
        {tr("Images"),
         {QStringLiteral("*.png"), QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"),
          QStringLiteral("*.gif"), QStringLiteral("*.webp")}});
    if (self && path) {
        self->join({QUrl::fromLocalFile(*path)});
    }
}

void FeedbackModel::remove(int index) {
    if (index >= 0 && index < m_pictures.size()) {
        m_pictures.removeAt(index);
        tell({});
        Q_EMIT joinedChanged();
    }
}

MailDraft FeedbackModel::draft() const {
    Feedback feedback{m_kind, m_text};
    if (m_diagnosed) {
        feedback.diagnostics = m_parts.diagnostics();
    }
    return feedbackMail(feedback);
}

void FeedbackModel::prepare() {
    if (isBusy() || m_text.trimmed().isEmpty()) {
        return;
    }
    detach(handOver(this), QStringLiteral("handing a message over"));
}

Task<> FeedbackModel::handOver(QPointer<FeedbackModel> self) {
    MailDraft draft = self->draft();
    const QString given = self->m_text;
    const qsizetype pictures = self->m_pictures.size();
    QList<FeedbackPicture> joined;
    for (const Joined &each : self->m_pictures) {
        joined += each.picture;
    }
    self->work(1);
    self->tell({});
    const auto written = co_await onDisk([joined] { return filesOf(joined); });
    if (!self) {
        co_return;
    }
    if (!written || !written->problem.isEmpty()) {
        self->work(-1);
        self->tell(written ? written->problem : tr("Ce disque ne répond pas."));
        co_return;
    }
    for (const auto &file : written->files) {
        draft.attachments += file->path();
    }
    const FeedbackOutcome outcome = co_await prepareFeedback(self->m_parts.mail, std::move(draft));
    if (outcome == FeedbackOutcome::Ready || outcome == FeedbackOutcome::PicturesLeft) {
        for (const auto &file : written->files) {
            file->keep(); // the mail program reads them when the message is sent
        }
    }
    if (self) {
        self->work(-1);
        self->finish(outcome, self->m_text == given && self->m_pictures.size() == pictures);
    }
}

void FeedbackModel::finish(FeedbackOutcome outcome, bool unchanged) {
    switch (outcome) {
    case FeedbackOutcome::TooLong:
        tell(tr("Ce message est trop long pour s’ouvrir tout prêt. Copie-le, puis colle-le dans "
                "ton e-mail."),
             Offer::Copy);
        return;
    case FeedbackOutcome::NoMail:
        tell(tr("Je n’ai pas trouvé ton programme d’e-mail. Copie le message, puis colle-le là où "
                "tu écris tes e-mails."),
             Offer::Copy);
        return;
    case FeedbackOutcome::Ready:
    case FeedbackOutcome::PicturesLeft:
        break;
    }
    if (unchanged) { // what was added meanwhile is not in the message: it stays
        m_text.clear();
        m_pictures.clear();
        Q_EMIT changed();
        Q_EMIT joinedChanged();
        Q_EMIT prepared();
    }
    Q_EMIT said(outcome == FeedbackOutcome::Ready
                    ? tr("Le message t’attend dans ton e-mail. Relis-le, puis envoie-le.")
                    : tr("Le message t’attend dans ton e-mail. Glisses-y les images, je te les "
                         "montre."));
}

void FeedbackModel::copy() {
    const MailDraft message = draft();
    m_parts.pasteboard.replace(message.to + u'\n' + message.subject + QStringLiteral("\n\n") +
                               message.body);
    Q_EMIT said(tr("Message copié. Il est pour %1.").arg(message.to));
}

} // namespace vorle
