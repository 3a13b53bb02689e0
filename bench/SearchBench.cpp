#include "app/models/Decisions.h"
#include "app/models/ProgramBudget.h"
#include "app/triage/SearchFold.h"
#include "app/triage/SearchIndex.h"
#include "bench/ManyTopics.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <functional>
#include <vector>

/// What the window's models cost: the search over 10,000 topics whose read texts have 8,000 bytes,
/// beside one look at every byte searched; and a triage decision with every list open over 10,000
/// topics, beside the same decision without lists.
namespace vorle {
namespace {

/// Topics of every section, with the texts that were read or without.
QList<Topic> shelvedTopics(qsizetype count, bool texts) {
    QRandomGenerator random(2);
    QList<Topic> topics = manyTopics(count);
    for (qsizetype i = 0; i < count; ++i) {
        Topic &topic = topics[i];
        topic.dependency = QStringLiteral("vapeur-%1").arg(i % 400);
        topic.foundAt = topic.foundAt.addSecs(-60 * (i % 5'000));
        topic.status = static_cast<TopicStatus>(1 + random.bounded(5U));
        if (!texts) {
            topic.seenText.reset();
        }
    }
    // One word that one text holds.
    if (texts) {
        topics[count / 2].seenText->append(" wasmtime ");
    }
    return topics;
}

QList<TopicPtr> shared(QList<Topic> topics) {
    QList<TopicPtr> list;
    for (Topic &topic : topics) {
        list.append(std::make_shared<const Topic>(std::move(topic)));
    }
    return list;
}

double secondsOf(const std::function<void()> &job) {
    QElapsedTimer timer;
    timer.start();
    job();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// What a job takes from the processor, whatever else the machine does.
double cpuSecondsOf(const std::function<void()> &job) {
    const std::clock_t start = std::clock();
    job();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double quantile(std::vector<double> values, double part) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

constexpr qsizetype topicCount = 10'000;

const QList<TopicPtr> &topics() {
    static const QList<TopicPtr> list = shared(shelvedTopics(topicCount, true));
    return list;
}

const SearchIndex &index() {
    static const SearchIndex made = indexed({}, topics());
    return made;
}

/// Every byte that is searched, looked at once for one that is not there.
void lookAtAll() {
    for (const auto &entry : index()) {
        for (const QByteArray &field : entry->fields) {
            benchmark::DoNotOptimize(
                std::memchr(field.constData(), 1, static_cast<std::size_t>(field.size())));
        }
    }
}

void search(benchmark::State &state, const char *query) {
    const SearchAsk ask{.words = QString::fromUtf8(query), .section = {}, .rest = {}};
    std::vector<double> own;
    std::vector<double> bare;
    qsizetype hits = 0;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        bare.push_back(secondsOf(lookAtAll));
        own.push_back(secondsOf([&] { hits = searched(index(), ask).total; }));
        state.SetIterationTime(own.back());
    }
    state.counters["hits"] = static_cast<double>(hits);
    state.counters["median_ms"] = quantile(own, 0.5) * 1e3;
    state.counters["p95_ms"] = quantile(own, 0.95) * 1e3;
    state.counters["floor_ms"] = quantile(bare, 0.5) * 1e3;
    state.counters["times_floor"] = quantile(own, 0.5) / quantile(bare, 0.5);
}

/// Making the index, beside copying the texts it is made from.
void makeIndex(benchmark::State &state) {
    qsizetype bytes = 0;
    std::vector<double> own;
    std::vector<double> bare;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        bare.push_back(secondsOf([] {
            for (const TopicPtr &topic : topics()) {
                QByteArray copy = *topic->seenText;
                copy.detach();
                benchmark::DoNotOptimize(copy.constData());
            }
        }));
        SearchIndex made;
        own.push_back(secondsOf([&] { made = indexed({}, topics()); }));
        state.SetIterationTime(own.back());
        bytes = 0;
        for (const auto &entry : std::as_const(made)) {
            for (const QByteArray &field : entry->fields) {
                bytes += field.size();
            }
        }
    }
    state.counters["median_ms"] = quantile(own, 0.5) * 1e3;
    state.counters["times_floor"] = quantile(own, 0.5) / quantile(bare, 0.5);
    state.counters["index_MB"] = static_cast<double>(bytes) / 1e6;
}

/// Bringing the index up to date after one decision.
void refreshIndex(benchmark::State &state) {
    QList<TopicPtr> changed = topics();
    Topic topic = *changed[7];
    topic.status = TopicStatus::Reserve;
    changed[7] = std::make_shared<const Topic>(std::move(topic));
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        benchmark::DoNotOptimize(indexed(index(), changed));
    }
}

/// A decision and its undoing, with or without the four lists and the week's budget over the store.
void triage(benchmark::State &state) {
    const SystemClock clock;
    TopicStore store(QString(), Resources(), clock);
    store.add(shelvedTopics(10'000, false));
    QTemporaryDir folder;
    Preferences preferences(
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json"))));
    std::vector<std::unique_ptr<TopicListModel>> lists;
    std::unique_ptr<ProgramBudget> budget;
    double made = 0;
    if (state.range(0) != 0) {
        made = cpuSecondsOf([&] {
            for (Section section :
                 {Section::Inbox, Section::Program, Section::Reserve, Section::Library}) {
                lists.push_back(std::make_unique<TopicListModel>(store, section, clock));
            }
            budget = std::make_unique<ProgramBudget>(store, preferences, clock, *lists[1]);
        });
    }
    Decisions decisions(store);
    const QList<TopicPtr> all = store.topics();
    std::vector<double> taken;
    qsizetype next = 0;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        const QString id = all[next * 7919 % all.size()]->id.toString();
        taken.push_back(secondsOf([&] {
            switch (next % 4) {
            case 0:
                decisions.keep(id);
                break;
            case 1:
                decisions.later(id);
                break;
            case 2:
                decisions.done(id);
                break;
            default:
                decisions.undo();
            }
        }));
        ++next;
        state.SetIterationTime(taken.back());
    }
    state.counters["median_us"] = quantile(taken, 0.5) * 1e6;
    state.counters["p99_us"] = quantile(taken, 0.99) * 1e6;
    state.counters["made_ms"] = made * 1e3;
}

#define SEARCH(name, query)                                                                        \
    BENCHMARK_CAPTURE(search, name, query)                                                         \
        ->UseManualTime()                                                                          \
        ->Iterations(60)                                                                           \
        ->Unit(benchmark::kMillisecond)
SEARCH(one_text, "wasmtime");
SEARCH(every_title, "memoire");
SEARCH(every_text, "deployee");
SEARCH(inside_words, "ersion");
SEARCH(two_letters, "et");
SEARCH(nowhere, "kubernetes");
SEARCH(three_words, "vapeur fuite parser");
SEARCH(slip_of_the_hand, "kubernteses");
SEARCH(slip_in_every_title, "memiore");
SEARCH(slip_in_three_words, "vapeur fiute kubernteses");
BENCHMARK(makeIndex)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(refreshIndex)->Unit(benchmark::kMillisecond);
BENCHMARK(triage)->ArgName("lists")->Arg(0)->Arg(1)->UseManualTime()->Iterations(2'000)->Unit(
    benchmark::kMicrosecond);

} // namespace
} // namespace vorle

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
