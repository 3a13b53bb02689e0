#include "judging/Learning.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <vector>

/// Learning over the decided topics of a store, in turns with its floor: one plain pass over the
/// same topics that reads the same fields and counts nothing. Most of either is memory.
namespace vorle {
namespace {

template <class T>
T oneOf(QRandomGenerator &random, std::initializer_list<T> values) {
    return values.begin()[random.bounded(static_cast<quint32>(values.size()))];
}

QList<Topic> decidedTopics(qsizetype count) {
    QRandomGenerator random(1);
    const QDateTime start(QDate(2026, 1, 5), QTime(8, 0), Qt::UTC);
    QList<Topic> topics;
    for (qsizetype i = 0; i < count; ++i) {
        Topic topic;
        topic.id = QUuid::createUuid();
        topic.title = QStringLiteral("Vapeur %1 corrige une fuite de mémoire au démarrage").arg(i);
        topic.score = static_cast<int>(random.bounded(11U));
        topic.project = QString::fromUtf16(oneOf(random, {u"Tiravue", u"Cavatine", u"Orme"}));
        topic.minutes = oneOf(random, {5, 15, 30, 60, 120});
        topic.kind = json::rawText(static_cast<ItemKind>(random.bounded(8U)));
        topic.summary = QString(300, u's');
        topic.why = QString(200, u'w');
        topic.seenText = QByteArray(8'000, 't');
        topic.status = oneOf(random, {TopicStatus::Program, TopicStatus::Reserve, TopicStatus::Done,
                                      TopicStatus::Dismissed});
        topic.postponedCount = static_cast<int>(random.bounded(2U));
        topic.foundAt = start;
        topic.triagedAt = start.addSecs(i * 60);
        if (random.bounded(3U) == 0) {
            topic.dependency = QStringLiteral("vapeur");
            topic.newVersion = QStringLiteral("8.0.0");
        }
        if (random.bounded(10U) == 0) {
            topic.correction = Correction{8, {}, {}, start};
        }
        topics.append(std::move(topic));
    }
    return topics;
}

Settings settingsWith(int tools) {
    Settings settings;
    settings.projects = {{QStringLiteral("Tiravue"), {}}, {QStringLiteral("Cavatine"), {}}};
    settings.reflexesSince = QDateTime(QDate(2026, 1, 1), QTime(8, 0), Qt::UTC);
    for (int i = 0; i < tools; ++i) {
        settings.addedTools += QStringLiteral("Vapotool %1").arg(i);
    }
    return settings;
}

/// Touches what the rules look at.
qint64 plainPass(const QList<TopicPtr> &topics) {
    qint64 sum = 0;
    for (const TopicPtr &pointer : topics) {
        const Topic &topic = *pointer;
        sum += int(topic.status) + topic.minutes + topic.postponedCount;
        sum += topic.triagedAt->toMSecsSinceEpoch() + topic.kind->back().unicode();
        sum += topic.project->back().unicode() + (topic.correction ? 1 : 0);
        if (!topic.dependency) {
            sum += topic.currentVersion || topic.newVersion ? 1 : 0;
            for (const QChar c : topic.title) {
                sum += c.unicode();
            }
        }
    }
    return sum;
}

double secondsOf(const std::function<void()> &job) {
    QElapsedTimer timer;
    timer.start();
    job();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double quantile(std::vector<double> values, double part) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void learning(benchmark::State &state) {
    const SystemClock clock;
    TopicStore store(QString(), Resources(), clock);
    store.add(decidedTopics(state.range(0)));
    const QList<TopicPtr> topics = store.topics();
    const Settings settings = settingsWith(static_cast<int>(state.range(1)));
    if (learn(topics, settings).decisions != state.range(0)) {
        state.SkipWithError("not all decisions were counted");
    }
    std::vector<double> own;
    std::vector<double> floor;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        floor.push_back(secondsOf([&] { benchmark::DoNotOptimize(plainPass(topics)); }));
        own.push_back(secondsOf([&] { benchmark::DoNotOptimize(learn(topics, settings)); }));
        state.SetIterationTime(own.back());
    }
    // A job of a millisecond is often interrupted: the tenth beside the median says by how much.
    state.counters["median_ms"] = quantile(own, 0.5) * 1e3;
    state.counters["tenth_ms"] = quantile(own, 0.1) * 1e3;
    state.counters["floor_tenth_ms"] = quantile(floor, 0.1) * 1e3;
    state.counters["times_floor"] = quantile(own, 0.1) / quantile(floor, 0.1);
}

BENCHMARK(learning)
    ->ArgNames({"decisions", "tools"})
    ->Args({1'000, 10})
    ->Args({10'000, 0})
    ->Args({10'000, 10})
    ->Args({10'000, 1'000})
    ->UseManualTime()
    ->Iterations(301)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vorle

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
