#include "judging/JudgeBench.h"

#include <QCoreApplication>

#include <cmath>
#include <memory>
#include <numeric>

namespace vorle {

namespace {

constexpr qsizetype previewWindow = 15;
constexpr qsizetype previewItems = 10;
constexpr qsizetype worstShown = 5;
constexpr qsizetype maxConcurrentCalls = 2;

constexpr std::array benchNames{"bench-web", "bench-commune", "bench-svt"};

QString translated(const char *text) { return QCoreApplication::translate("JudgeBench", text); }

JudgeCandidate candidateOf(const BenchItem &item) {
    JudgeCandidate candidate;
    candidate.id = item.id;
    candidate.title = item.title;
    candidate.url = item.origin;
    candidate.kind = item.kind.value_or(ItemKind::Article);
    candidate.level = item.readLevel;
    candidate.note = item.note;
    candidate.content = item.content;
    return candidate;
}

JudgeContextSource sourceOf(const BenchProfile &profile) {
    JudgeContextSource source;
    source.profile.job = profile.job;
    source.profile.language = profile.language;
    source.profile.tools = profile.tools;
    for (const auto &project : profile.projects) {
        source.profile.projects += {project.name, project.description, {}, {}};
    }
    for (const auto &interest : profile.interests) {
        source.profile.interests += {interest.topic, interest.weight};
    }
    for (const QString &line : profile.reflexes) {
        source.reflexes.emplaceBack().instruction = line;
    }
    return source;
}

QDate newestDay(const QList<BenchItem> &items) {
    QDate newest;
    for (const BenchItem &item : items) {
        newest = std::max(newest, item.collectedAt.date());
    }
    return newest;
}

QList<QList<JudgeCandidate>> batchesOf(const QList<BenchItem> &items) {
    QList<JudgeCandidate> waiting;
    for (const BenchItem &item : items) {
        waiting += candidateOf(item);
    }
    QList<QList<JudgeCandidate>> batches;
    while (!waiting.isEmpty()) {
        const qsizetype size = nextBatchSize(waiting);
        batches += waiting.first(size);
        waiting.remove(0, size);
    }
    return batches;
}

/// The rank of each value, 1 for the least; equal values share the mean of their ranks.
QList<double> ranksOf(const QList<double> &values) {
    QList<qsizetype> order(values.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [&](qsizetype a, qsizetype b) { return values[a] < values[b]; });
    QList<double> ranks(values.size());
    for (qsizetype first = 0; first < order.size();) {
        qsizetype past = first;
        while (past < order.size() && values[order[past]] == values[order[first]]) {
            ++past;
        }
        for (qsizetype i = first; i < past; ++i) {
            ranks[order[i]] = static_cast<double>(first + 1 + past) / 2;
        }
        first = past;
    }
    return ranks;
}

/// Pearson's correlation of the ranks.
std::optional<double> rankCorrelation(const QList<double> &left, const QList<double> &right) {
    const QList<double> a = ranksOf(left);
    const QList<double> b = ranksOf(right);
    const double mean = static_cast<double>(a.size() + 1) / 2; // of ranks, whatever the ties
    double together = 0;
    double spreadA = 0;
    double spreadB = 0;
    for (qsizetype i = 0; i < a.size(); ++i) {
        together += (a[i] - mean) * (b[i] - mean);
        spreadA += (a[i] - mean) * (a[i] - mean);
        spreadB += (b[i] - mean) * (b[i] - mean);
    }
    if (spreadA == 0 || spreadB == 0) {
        return std::nullopt;
    }
    return together / std::sqrt(spreadA * spreadB);
}

void add(std::optional<double> &total, std::optional<double> cost) {
    if (cost) {
        total = total.value_or(0) + *cost;
    }
}

} // namespace

QList<Bench> loadBenches(const Resources &resources) {
    QList<Bench> benches;
    for (const char *name : benchNames) {
        const auto data = resources.data(QString::fromLatin1(name), QStringLiteral("json"));
        try {
            benches += json::decode<Bench>(data.value_or(QByteArray()));
        } catch (const json::DecodeError &) {
            throw AgentError::missingInstruction();
        }
    }
    return benches;
}

qsizetype callsOf(const Bench &bench) { return batchesOf(bench.items).size(); }

Bench previewOf(Bench bench) {
    QList<BenchItem> chosen;
    for (qsizetype i = 0; i < std::min(previewWindow, bench.items.size()); ++i) {
        if (chosen.size() < previewItems && bench.labels.contains(bench.items[i].id)) {
            chosen += bench.items[i];
        }
    }
    bench.items = std::move(chosen);
    return bench;
}

QString previewTitle() { return translated("Aperçu du jugement v2"); }

QString previewSubtitle() {
    return translated("10 sujets du banc d’essai, jugés par la dernière consigne. Tes vrais "
                      "sujets ne sont pas touchés.");
}

QString leavePreviewText() { return translated("Revenir à mes sujets"); }

std::optional<double> BenchVerdict::gap() const {
    return label && judgment ? std::optional(judgment->relevance - label->score) : std::nullopt;
}

BenchFigures benchFigures(const QList<BenchVerdict> &verdicts) {
    BenchFigures figures;
    QList<double> expected;
    QList<double> judged;
    double error = 0;
    qsizetype near = 0;
    for (qsizetype i = 0; i < verdicts.size(); ++i) {
        figures.unanswered += verdicts[i].judgment ? 0 : 1;
        const auto gap = verdicts[i].gap();
        if (!gap) {
            continue;
        }
        expected += verdicts[i].label->score;
        judged += verdicts[i].judgment->relevance;
        error += std::abs(*gap);
        near += std::abs(*gap) <= 1 ? 1 : 0;
        if (*gap != 0) {
            figures.worst += i;
        }
    }
    const auto wider = [&](qsizetype a, qsizetype b) {
        return std::abs(*verdicts[a].gap()) > std::abs(*verdicts[b].gap());
    };
    std::stable_sort(figures.worst.begin(), figures.worst.end(), wider);
    figures.worst.resize(std::min(worstShown, figures.worst.size()));
    figures.compared = expected.size();
    if (figures.compared > 0) {
        const auto count = static_cast<double>(figures.compared);
        figures.meanAbsoluteError = error / count;
        figures.withinOne = static_cast<double>(near) / count;
        figures.rankCorrelation = rankCorrelation(expected, judged);
    }
    return figures;
}

Task<> JudgeBench::judgeBatch(Session &session, qsizetype index) {
    const QList<JudgeCandidate> &batch = session.batches[index];
    try {
        const auto verdicts =
            co_await Judge(*m_asker).judge(session.context, batch, session.cancel);
        session.judgments.insert(verdicts.byId);
        add(session.costUSD, verdicts.spent.costUSD);
    } catch (const AgentError &error) {
        add(session.costUSD, error.spent().costUSD);
        throw;
    }
    session.done += batch.size();
    session.progress(session.done);
}

Task<JudgeBench::Outcome> JudgeBench::judge(Bench bench, Progress progress, CancelToken cancel) {
    Session session{std::make_shared<const JudgeContext>(
                        judgeContext(sourceOf(bench.profile), newestDay(bench.items))),
                    batchesOf(bench.items),
                    std::move(progress),
                    cancel,
                    {},
                    {},
                    0};
    Outcome outcome;
    try {
        co_await forEachBounded(session.batches.size(), maxConcurrentCalls,
                                [&](qsizetype index) { return judgeBatch(session, index); });
    } catch (const Cancelled &) {
        throw;
    } catch (...) {
        outcome.failure = std::current_exception();
    }
    outcome.costUSD = session.costUSD;
    for (const BenchItem &item : std::as_const(bench.items)) {
        BenchVerdict verdict{item, std::nullopt, std::nullopt};
        if (bench.labels.contains(item.id)) {
            verdict.label = bench.labels[item.id];
        }
        if (const auto found = session.judgments.constFind(item.id);
            found != session.judgments.cend()) {
            verdict.judgment = *found;
        }
        outcome.verdicts += std::move(verdict);
    }
    co_return outcome;
}

} // namespace vorle
