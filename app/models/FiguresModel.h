#pragma once

#include "app/models/FigureParts.h"
#include "app/report/WatchFigures.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"

#include <QImage>
#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// "Bilan": the figures of a period, and what they say. Worked out when somebody looks, and again
/// shortly after what they rest on has changed. Main thread; what it is given outlives it.
class FiguresModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// 0 a week, 1 four weeks, 2 a year.
    Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY changed FINAL)
    /// Whether somebody looks.
    Q_PROPERTY(bool active READ active WRITE setActive NOTIFY changed FINAL)
    Q_PROPERTY(QString rangeText READ rangeText NOTIFY changed FINAL)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed FINAL)
    Q_PROPERTY(QString partName READ partName NOTIFY changed FINAL) ///< "Par semaine"
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY changed FINAL)
    Q_PROPERTY(bool canGoOn READ canGoOn NOTIFY changed FINAL)
    /// Whether there is anything to show at all, in any period.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList counts READ counts NOTIFY changed FINAL) ///< of FigureCount
    Q_PROPERTY(QString timeText READ timeText NOTIFY changed FINAL)  ///< "9 h 05"
    Q_PROPERTY(QString timeOf READ timeOf NOTIFY changed FINAL)    ///< "faites sur 12 h de veille"
    Q_PROPERTY(QVariantList parts READ parts NOTIFY changed FINAL) ///< of FigurePart
    Q_PROPERTY(QVariantList scores READ scores NOTIFY changed FINAL)   ///< of FigureScore
    Q_PROPERTY(QVariantList sources READ sources NOTIFY changed FINAL) ///< of FigureSource
    Q_PROPERTY(QVariantList runs READ runs NOTIFY changed FINAL) ///< of FigureCount: the last ones
    Q_PROPERTY(
        QVariantList steps READ steps NOTIFY changed FINAL) ///< of FigureCount: what, and its name
    /// The minutes a part is given, for the line across the bars; 0 where parts are no weeks.
    Q_PROPERTY(int partBudget READ partBudget NOTIFY changed FINAL)
    Q_PROPERTY(QString partBudgetText READ partBudgetText NOTIFY changed FINAL)
    Q_PROPERTY(QString foundSentence READ foundSentence NOTIFY changed FINAL)
    Q_PROPERTY(QString timeSentence READ timeSentence NOTIFY changed FINAL)
    Q_PROPERTY(QString scoresSentence READ scoresSentence NOTIFY changed FINAL)
    Q_PROPERTY(QString sourcesSentence READ sourcesSentence NOTIFY changed FINAL)
    Q_PROPERTY(QString runsSentence READ runsSentence NOTIFY changed FINAL)
    Q_PROPERTY(
        QString runsNote READ runsNote NOTIFY changed FINAL) ///< what the price is; "" without
    /// On the user's corrections, and on what reflexes changed.
    Q_PROPERTY(QString learnedText READ learnedText NOTIFY changed FINAL)
    /// The charts' figures in words, row by row, for who does not see them.
    Q_PROPERTY(QStringList partsInWords READ partsInWords NOTIFY changed FINAL)
    Q_PROPERTY(QStringList timesInWords READ timesInWords NOTIFY changed FINAL)
    Q_PROPERTY(QStringList scoresInWords READ scoresInWords NOTIFY changed FINAL)
    Q_PROPERTY(QStringList sourcesInWords READ sourcesInWords NOTIFY changed FINAL)

public:
    struct Parts {
        TopicStore &store;
        Preferences &preferences;
        ScoreProvenanceLog &provenance;
        const Clock &clock;
    };
    explicit FiguresModel(Parts parts, const LocalZone &zone = {}, QObject *parent = nullptr);

    int kind() const { return static_cast<int>(m_figures.kind); }
    void setKind(int kind);
    bool active() const { return m_active; }
    void setActive(bool active);
    /// Works them out anew, shortly, while somebody looks: a new day may have begun.
    void refresh();
    /// To the span before, and the one after.
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void goOn();
    /// The report as a page of Markdown.
    QString markdown() const;
    /// A free path in the user's documents for a kept report with that extension:
    /// "…/bilan-vorle-mois-2026-10-26.png", or "…-2.png". "" where there is no such folder.
    Q_INVOKABLE QString freePath(const QString &extension) const;
    /// Keeps the report as Markdown there, and says where, or why not, by `said`.
    Q_INVOKABLE void keepMarkdown();
    /// Says where a picture was kept, or that it was not.
    Q_INVOKABLE void tellKept(const QString &path, bool kept);

    QString rangeText() const;
    QString subtitle() const;
    QString partName() const;
    bool canGoBack() const;
    bool canGoOn() const { return m_back > 0; }
    bool isEmpty() const { return !m_first.isValid(); }
    QVariantList counts() const;
    QString timeText() const;
    QString timeOf() const;
    QVariantList parts() const;
    QVariantList scores() const;
    QVariantList sources() const;
    QVariantList runs() const;
    QVariantList steps() const;
    int partBudget() const;
    QString partBudgetText() const;
    QString foundSentence() const;
    QString timeSentence() const;
    QString scoresSentence() const;
    QString sourcesSentence() const;
    QString runsSentence() const;
    QString runsNote() const;
    QString learnedText() const;
    QStringList partsInWords() const;
    QStringList timesInWords() const;
    QStringList scoresInWords() const;
    QStringList sourcesInWords() const;

Q_SIGNALS:
    void changed();
    /// A word for the user on what they asked for.
    void said(const QString &sentence);

private:
    void work();
    void show(PeriodKind kind, int back);
    QDateTime now() const { return m_parts.clock.now(); }

    Parts m_parts;
    LocalZone m_zone;
    QTimer m_later;
    bool m_active = false;
    int m_back = 0; // how many spans before the present one
    PeriodKind m_kind = PeriodKind::Week;
    ReportPeriod m_period;
    WatchFigures m_figures;
    QDateTime m_first; // of all topics and runs
};

} // namespace vorle
