#include "app/window/Tray.h"

#include "app/models/RunModel.h"
#include "app/models/TopicListModel.h"
#include "core/NumberText.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPainter>

namespace vorle {

namespace {

constexpr QColor ember(0xC9, 0x43, 0x1A);
constexpr QColor paper(0xFF, 0xFF, 0xFF);

enum class Style { Coloured, Mask };

bool isMac() { return QGuiApplication::platformName() == u"cocoa"; }

QPixmap drawn(int size, int waiting, Style style) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style == Style::Mask ? QColor(Qt::black) : ember);
    painter.drawEllipse(QRectF(size * 0.06, size * 0.06, size * 0.88, size * 0.88));
    if (style == Style::Mask) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    }
    painter.setPen(paper);
    if (waiting > 0) {
        QFont font = painter.font();
        font.setBold(true);
        font.setPixelSize(qMax(7, size * (waiting > 99 ? 38 : 54) / 100));
        painter.setFont(font);
        painter.drawText(pixmap.rect(), Qt::AlignCenter,
                         waiting > 99 ? QStringLiteral("99+") : QString::number(waiting));
        return pixmap;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(paper);
    for (const double x : {0.36, 0.64}) {
        painter.drawEllipse(QPointF(size * x, size * 0.47), size * 0.07, size * 0.1);
    }
    return pixmap;
}

QIcon icon(int waiting, Style style) {
    QIcon made;
    // A count is for the menu bar alone, and changes with every key: few and small.
    const QList<int> sizes = waiting > 0 ? QList{22, 44} : QList{16, 22, 24, 32, 44, 64, 128, 256};
    for (const int size : sizes) {
        made.addPixmap(drawn(size, waiting, style));
    }
    made.setIsMask(style == Style::Mask);
    return made;
}

} // namespace

Tray::Tray(RunModel &run, TopicListModel &inbox, QObject *parent)
    : QObject(parent), m_run(run), m_inbox(inbox) {
    m_next = m_menu.addAction(QString());
    m_next->setEnabled(false);
    m_menu.addSeparator();
    m_search = m_menu.addAction(tr("Fouiller maintenant"), this,
                                [this] { m_run.running() ? m_run.stop() : m_run.start(); });
    m_menu.addAction(tr("Ajouter un sujet"), this, &Tray::addAsked);
    m_menu.addAction(tr("Ouvrir"), this, &Tray::openAsked);
    m_menu.addSeparator();
    m_menu.addAction(tr("Réglages"), this, &Tray::settingsAsked);
    m_menu.addAction(tr("Rechercher une mise à jour"), this, &Tray::updateAsked);
    m_menu.addAction(tr("Envoyer un retour"), this, &Tray::feedbackAsked);
    m_menu.addAction(tr("Quitter"), this, &Tray::quitAsked);
    // On a Mac an item that has a menu opens it on every click and tells of none; Qt 6.11 dies of
    // it. There the menu is opened by activated().
    if (!isMac()) {
        m_item.setContextMenu(&m_menu);
    }
    connect(&m_item, &QSystemTrayIcon::activated, this, &Tray::activated);
    connect(&m_item, &QSystemTrayIcon::messageClicked, this, &Tray::openAsked);
    connect(&run, &RunModel::progressChanged, this, &Tray::refresh);
    connect(&run, &RunModel::scheduleChanged, this, &Tray::refresh);
    connect(&inbox, &TopicListModel::countChanged, this, &Tray::refresh);
    refresh();
    show();
}

bool Tray::show() {
    if (!m_item.isVisible() && QSystemTrayIcon::isSystemTrayAvailable()) {
        m_item.show();
    }
    return m_item.isVisible();
}

void Tray::activated(QSystemTrayIcon::ActivationReason reason) {
    // Some trays do not say where their items are: then it is where the pointer is.
    const QRect told = m_item.geometry();
    const QRect anchor = told.isValid() ? told : QRect(QCursor::pos(), QSize(1, 1));
    if (reason == QSystemTrayIcon::Trigger) {
        Q_EMIT statusAsked(anchor);
    } else if (reason == QSystemTrayIcon::DoubleClick) {
        Q_EMIT openAsked();
    } else if (reason == QSystemTrayIcon::Context && m_item.contextMenu() == nullptr) {
        m_menu.popup(anchor.bottomLeft());
    }
}

bool Tray::tell(const QString &title, const QString &text) {
    // What Qt would call there macOS no longer has.
    if (isMac() || !m_item.isVisible() || !QSystemTrayIcon::supportsMessages()) {
        return false;
    }
    m_item.showMessage(title, text, picture(0));
    return true;
}

QIcon Tray::picture(int waiting) { return icon(waiting, Style::Coloured); }

QIcon Tray::mask(int waiting) { return icon(waiting, Style::Mask); }

void Tray::refresh() {
    const QString next = m_run.nextRunText();
    QString phase = m_run.statusText();
    phase.replace(u'&', QStringLiteral("&&")); // no key of the menu's
    m_next->setText(m_run.running()  ? phase
                    : next.isEmpty() ? tr("Aucune fouille prévue")
                                     : tr("Prochaine fouille\u00A0: %1").arg(next));
    m_search->setText(m_run.running() ? tr("Arrêter la fouille") : tr("Fouiller maintenant"));
    const int waiting = m_inbox.count();
    m_item.setIcon(isMac() ? mask(waiting) : picture(waiting));
    m_item.setToolTip(waiting == 0   ? tr("vorle, rien à trier")
                      : waiting == 1 ? tr("vorle, 1 sujet à trier")
                                     : tr("vorle, %1 sujets à trier").arg(numberText(waiting)));
}

} // namespace vorle
