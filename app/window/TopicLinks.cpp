#include "app/window/TopicLinks.h"

#include "app/labels/Wording.h"
#include "base/WebLink.h"
#include "core/NumberText.h"
#include "platform/LinkOpener.h"
#include "platform/Pasteboard.h"

#include <QDrag>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// What of a drop is looked at: a stranger's may be as long as they like.
constexpr qsizetype mostAddresses = 1'000;
constexpr qsizetype mostWords = 64 << 10;

/// Its whole lines, as far as they are looked at: half an address is another address.
QStringView lookedAt(QStringView text) {
    if (text.size() <= mostWords) {
        return text;
    }
    return text.first(std::max<qsizetype>(0, text.first(mostWords).lastIndexOf(u'\n')));
}

/// What was offered, taken apart.
struct Offered {
    QStringList links;
    qsizetype files = 0;
    qsizetype others = 0;
};

Offered takenApart(const QList<QUrl> &urls, const QString &text) {
    Offered offered;
    const auto add = [&](const QString &given) {
        const auto link = WebLink::from(given);
        if (link && !offered.links.contains(link->text())) {
            offered.links += link->text();
        } else if (!link) {
            ++offered.others;
        }
    };
    // One more than is taken, to know that there are more.
    const auto full = [&] { return offered.links.size() > TopicLinks::mostAtOnce; };
    for (const QUrl &url : urls.first(std::min(mostAddresses, urls.size()))) {
        if (full()) {
            break;
        }
        if (url.isLocalFile()) {
            ++offered.files;
        } else {
            add(url.toString(QUrl::FullyEncoded));
        }
    }
    if (!urls.isEmpty()) {
        return offered;
    }
    for (const QStringView line : lookedAt(text).split(u'\n')) {
        if (full()) {
            break;
        }
        if (const QStringView words = line.trimmed(); !words.isEmpty()) {
            add(words.toString());
        }
    }
    return offered;
}

/// What is carried under the pointer: the title, on paper.
QPixmap slipOf(const QString &title) {
    constexpr int width = 260;
    constexpr int height = 34;
    constexpr int inset = 14;
    const double ratio = qGuiApp->devicePixelRatio();
    QPixmap slip(QSizeF(width * ratio, height * ratio).toSize());
    slip.setDevicePixelRatio(ratio);
    slip.fill(Qt::transparent);
    QPainter painter(&slip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0xD9, 0xCD, 0xBD));
    painter.setBrush(QColor(0xFF, 0xFF, 0xFF));
    painter.drawRoundedRect(QRectF(0.5, 0.5, width - 1, height - 1), 12, 12);
    painter.setPen(QColor(0x24, 0x1D, 0x16));
    const QString words =
        painter.fontMetrics().elidedText(title, Qt::ElideRight, width - 2 * inset);
    painter.drawText(QRect(inset, 0, width - 2 * inset, height), Qt::AlignVCenter | Qt::AlignLeft,
                     words);
    return slip;
}

} // namespace

void TopicLinks::open(const QString &url) {
    const auto link = WebLink::from(url, WebLink::Giver::User);
    if (!link || !m_parts.opener.open(*link)) {
        Q_EMIT said(tr("Je n’ai pas pu ouvrir ce lien."));
    }
}

QString TopicLinks::linkOf(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic && topic->mainSource() != nullptr ? topic->mainSource()->url : QString();
}

void TopicLinks::copyOf(const QString &topicId) {
    const QString link = linkOf(topicId);
    if (link.isEmpty()) {
        Q_EMIT said(tr("Ce sujet n’a pas de lien."));
        return;
    }
    m_parts.pasteboard.replace(link);
    Q_EMIT said(tr("Lien copié."));
}

QString TopicLinks::onPasteboard() const {
    const auto link = WebLink::from(m_parts.pasteboard.text(), WebLink::Giver::User);
    return link ? link->text() : QString();
}

QString TopicLinks::add(const QString &url, const QString &note) {
    const auto taken =
        m_parts.capture.take({.url = url, .title = {}, .note = note, .project = std::nullopt});
    const auto *refusal = std::get_if<LinkCapture::Refusal>(&taken);
    return refusal != nullptr ? shownWords(refusal->text) : QString();
}

TopicLinks::Offer TopicLinks::offerOf(const QList<QUrl> &urls, const QString &text) const {
    if (m_carrying) {
        return Nothing; // it came from here
    }
    const Offered offered = takenApart(urls, text);
    return !offered.links.isEmpty() ? Links
           : offered.others > 0     ? Refused
           : offered.files > 0      ? Files
                                    : Nothing;
}

void TopicLinks::takeDropped(const QList<QUrl> &urls, const QString &text) {
    Offered offered = takenApart(urls, text);
    if (m_carrying || offered.links.isEmpty()) {
        if (!m_carrying && offered.files + offered.others > 0) {
            Q_EMIT said(offered.others == 0
                            ? tr("Je ne lis pas les fichiers\u00A0: glisse l’adresse d’une page.")
                            : tr("Ce n’est pas l’adresse d’une page web."));
        }
        return;
    }
    if (m_parts.store.isDamaged()) {
        Q_EMIT said(tr("Je prendrai des liens quand tes sujets seront de nouveau lisibles."));
        return;
    }
    const bool more = offered.links.size() > mostAtOnce;
    offered.links.resize(std::min(mostAtOnce, offered.links.size()));
    QList<CapturedLink> links;
    for (const QString &link : std::as_const(offered.links)) {
        links += CapturedLink{.url = link, .sharedAt = m_parts.clock.now()};
    }
    const auto results = m_parts.capture.takeDropped(links);
    const qsizetype added =
        std::ranges::count(results, IntakeResult::Kind::New, &IntakeResult::kind);
    const qsizetype held =
        std::ranges::count(results, IntakeResult::Kind::Held, &IntakeResult::kind);
    const qsizetype back = std::ranges::count(results, true, &IntakeResult::isBack);
    QString sentence =
        added == 1  ? tr("Lien ajouté\u00A0: je le lis, et il t’attend dans «\u202FÀ trier\u202F».")
        : added > 1 ? tr("%1 liens ajoutés\u00A0: je les lis, et ils t’attendent dans «\u202FÀ "
                         "trier\u202F».")
                          .arg(numberText(added))
        : held == 1 && back == 1
            ? tr("Tu l’avais écarté\u00A0: il est de retour dans «\u202FÀ trier\u202F».")
        : held == 1 ? tr("Tu as déjà ce lien.")
        : held > 1  ? tr("Tu as déjà ces liens.")
                    : tr("Ce n’est pas l’adresse d’une page web.");
    if (added > 0 && held > 0) {
        sentence += u' ' + (held == 1 ? tr("Tu en avais déjà un.")
                                      : tr("Tu en avais déjà %1.").arg(numberText(held)));
    }
    if (more) {
        sentence += u' ' + tr("Je n’en prends que %1 à la fois.").arg(mostAtOnce);
    }
    Q_EMIT said(sentence);
}

std::unique_ptr<QMimeData> TopicLinks::dragged(const QString &topicId) const {
    const auto link = WebLink::from(linkOf(topicId), WebLink::Giver::User);
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    if (!link || !topic) {
        return nullptr;
    }
    const QString title = shownWords(topic->title).simplified();
    auto data = std::make_unique<QMimeData>();
    data->setUrls({link->url()});
    data->setText(link->text());
    // A page wrote the title: where it is markup it is words.
    data->setHtml(QStringLiteral("<a href=\"%1\">%2</a>")
                      .arg(link->text().toHtmlEscaped(), title.toHtmlEscaped()));
    // As browsers name a dragged link.
    const QString named = link->text() + u'\n' + title;
    data->setData(QStringLiteral("text/x-moz-url"),
                  QByteArray(reinterpret_cast<const char *>(named.utf16()), 2 * named.size()));
    return data;
}

void TopicLinks::carry(const QString &topicId) {
    QMetaObject::invokeMethod(this, [this, topicId] { letFly(topicId); }, Qt::QueuedConnection);
}

void TopicLinks::letFly(const QString &topicId) {
    auto data = dragged(topicId);
    if (m_carrying || !data || !(QGuiApplication::mouseButtons() & Qt::LeftButton)) {
        return; // it was let go already
    }
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    auto *drag = new QDrag(this); // goes by itself
    drag->setMimeData(data.release());
    drag->setPixmap(slipOf(shownWords(topic->title)));
    drag->setHotSpot({-8, -8});
    m_carrying = true;
    drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
    m_carrying = false;
}

} // namespace vorle
