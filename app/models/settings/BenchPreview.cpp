#include "app/models/settings/BenchPreview.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "base/FrenchLocale.h"
#include "base/FrenchSpacing.h"
#include "base/SystemErrorText.h"
#include "core/NumberText.h"
#include "core/ScoreScale.h"

#include <system_error>

namespace vorle {

namespace {

BenchRow rowOf(const BenchItem &item, const std::optional<BenchLabel> &label,
               const std::optional<Judgment> &judgment) {
    BenchRow row;
    row.title = shownWords(item.title);
    if (label) {
        row.expected = BenchPreview::tr("attendu %1").arg(tenthsText(label->score));
    }
    row.judged = judgment.has_value();
    if (judgment) {
        row.text = shownWords(judgment->tldr);
        row.look = BadgeLook::of(scoreFromRelevance(judgment->relevance));
    } else {
        row.look = BadgeLook::of(std::nullopt);
    }
    return row;
}

} // namespace

BenchPreview::BenchPreview(Asker &asker, QObject *parent) : QObject(parent), m_asker(asker) {
    try {
        m_bench = previewOf(loadBenches(asker.resources()).first());
        for (const BenchItem &item : std::as_const(m_bench->items)) {
            const auto label = m_bench->labels.constFind(item.id);
            m_rows += QVariant::fromValue(rowOf(
                item, label == m_bench->labels.constEnd() ? std::nullopt : std::optional(*label),
                std::nullopt));
        }
    } catch (const AgentError &error) {
        m_status = shownWords(error.text());
        m_failed = true;
    }
}

BenchPreview::~BenchPreview() { m_cancel.cancel(); }

QString BenchPreview::costText() const {
    return m_bench ? counted(callsOf(*m_bench), tr("appel à ton IA"), tr("appels à ton IA"))
                   : QString();
}

void BenchPreview::start() {
    if (m_running || !m_bench || !m_work.isEmpty()) {
        return;
    }
    m_running = true;
    m_failed = false;
    m_status = tr("Je fais juger les sujets.");
    m_cancel = CancelSource();
    Q_EMIT changed();
    m_work.add(logged(judge(this, m_asker, *m_bench, m_cancel.token()),
                      QStringLiteral("the bench preview")));
}

void BenchPreview::stop() { m_cancel.cancel(); }

Task<> BenchPreview::stopped() {
    stop();
    co_await m_work.join();
}

Task<> BenchPreview::judge(QPointer<BenchPreview> self, Asker &asker, Bench bench,
                           CancelToken cancel) {
    QString problem;
    try {
        EngineAgent &agent = asker.agent();
        agent.check(agent.locator().choose());
        JudgeBench judging(asker);
        const qsizetype total = bench.items.size();
        const auto progress = [self, total](qsizetype done) {
            if (self) {
                self->m_status = tr("Jugés\u00A0: %1 sur %2.").arg(done).arg(total);
                Q_EMIT self->changed();
            }
        };
        const JudgeBench::Outcome outcome = co_await judging.judge(bench, progress, cancel);
        if (self) {
            self->show(outcome);
        }
        if (outcome.failure) {
            std::rethrow_exception(outcome.failure);
        }
        co_return;
    } catch (const Cancelled &) {
        if (self) {
            self->end(tr("Arrêté."), false);
        }
        co_return;
    } catch (const AgentError &error) {
        problem = error.text();
    } catch (const std::system_error &error) {
        problem = systemRefusalText(error);
    }
    if (self) {
        self->end(shownWords(problem), true);
    }
}

void BenchPreview::show(const JudgeBench::Outcome &outcome) {
    m_rows.clear();
    for (const BenchVerdict &verdict : outcome.verdicts) {
        m_rows += QVariant::fromValue(rowOf(verdict.item, verdict.label, verdict.judgment));
    }
    const BenchFigures figures = benchFigures(outcome.verdicts);
    QStringList facts{counted(figures.compared, tr("sujet jugé"), tr("sujets jugés"))};
    if (figures.unanswered > 0) {
        facts += tr("%1 sans réponse").arg(figures.unanswered);
    }
    if (figures.meanAbsoluteError) {
        facts +=
            tr("écart moyen %1").arg(frenchLocale().toString(*figures.meanAbsoluteError, 'f', 1));
    }
    if (outcome.costUSD) {
        facts += vorle::costText(*outcome.costUSD);
    }
    end(facts.join(QStringLiteral(" · ")), false);
}

void BenchPreview::end(const QString &status, bool failed) {
    m_running = false;
    m_failed = failed;
    m_status = status;
    Q_EMIT changed();
}

} // namespace vorle
