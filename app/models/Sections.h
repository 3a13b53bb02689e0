#pragma once

#include "app/models/ProgramBudget.h"
#include "app/models/RunModel.h"
#include "app/models/Section.h"
#include "app/models/TopicListModel.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <bitset>

namespace vorle {

/// The six sections as the window's menu shows them, the one chosen, and what it says of itself:
/// the line under its title, and the page that stands where there is no topic. Main thread; what
/// it is given outlives it.
class Sections final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(
        vorle::sections::Section current READ current WRITE setCurrent NOTIFY currentChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY currentChanged FINAL)
    /// "12 sujets de la fouille de lundi, 47 min de lecture"
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY textsChanged FINAL)
    /// The chosen section's list; null in the last two sections.
    Q_PROPERTY(vorle::TopicListModel *topics READ topics NOTIFY currentChanged FINAL)
    /// The page of the chosen section while it has no topic; empty texts while it has some.
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY textsChanged FINAL)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY textsChanged FINAL)
    /// Its buttons, what helps most first: a list of CardButton.
    Q_PROPERTY(QVariantList emptyActions READ emptyActions NOTIFY textsChanged FINAL)

public:
    enum Role {
        TitleRole = Qt::UserRole, ///< "title"
        CountRole                 ///< "count": int; 0 in the last two sections
    };

    struct Parts {
        TopicListModel &inbox;
        TopicListModel &program;
        TopicListModel &reserve;
        TopicListModel &library;
        const ProgramBudget &budget;
        const RunModel &run;
        const Preferences &preferences;
        const Clock &clock;
        LocalZone zone = {};
    };
    explicit Sections(Parts parts, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Section current() const { return m_current; }
    void setCurrent(Section section);
    QString title() const { return title(m_current); }
    QString subtitle() const;
    TopicListModel *topics() const { return listOf(m_current); }
    QString emptyTitle() const;
    QString emptyText() const;
    QVariantList emptyActions() const;

    static QString title(Section section);
    /// The list of a section; null of one that lists no topics.
    TopicListModel *listOf(Section section) const;

Q_SIGNALS:
    /// Another section is about to be chosen.
    void leaving();
    void currentChanged();
    void textsChanged();

private:
    int countOf(Section section) const;
    QString inboxSubtitle() const;
    ProgramText programText() const;
    QString inboxEmptyText() const;
    QVariant helpOf(Section section) const;
    void follow(TopicListModel &list);
    void scheduleTextsChanged();

    Parts m_parts;
    Section m_current = Section::Inbox;
    bool m_textsDue = false;
    std::bitset<sectionCount> m_recounted; // sections whose counts are still to be told
};

} // namespace vorle
