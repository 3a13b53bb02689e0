#include "bench/ManyTopics.h"
#include "core/TopicStore.h"
#include "storage/DurableFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

/// The topics file at 1,000 and 10,000 topics of 8,000 characters: loading, saving with one topic
/// changed, and what a triage key costs the main thread. Each job runs in turns with its floor
/// (the bare disk and parser work on the same bytes) and with a peer (the platform's JSON), since
/// an absolute figure means little on a shared machine; medians are compared.
namespace vorle {
namespace {

/// A topics file in a folder of its own.
struct Workspace {
    explicit Workspace(qsizetype count) {
        TopicStore store(file, Resources(), clock);
        store.add(manyTopics(count));
        store.flush();
    }
    QTemporaryDir dir{QStringLiteral("./bench-store-XXXXXX")};
    QString file = dir.filePath(QStringLiteral("topics.json"));
    SystemClock clock;
};

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

/// Runs the three in turns and compares their medians.
void compare(benchmark::State &state, const std::function<void()> &ours,
             const std::function<void()> &floor, const std::function<void()> &peer) {
    std::vector<double> own;
    std::vector<double> bare;
    std::vector<double> other;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        bare.push_back(secondsOf(floor));
        own.push_back(secondsOf(ours));
        other.push_back(secondsOf(peer));
        state.SetIterationTime(own.back());
    }
    state.counters["median_ms"] = quantile(own, 0.5) * 1e3;
    state.counters["floor_ms"] = quantile(bare, 0.5) * 1e3;
    state.counters["peer_ms"] = quantile(other, 0.5) * 1e3;
    state.counters["times_floor"] = quantile(own, 0.5) / quantile(bare, 0.5);
    state.counters["peer_times_ours"] = quantile(other, 0.5) / quantile(own, 0.5);
}

void load(benchmark::State &state) {
    const Workspace workspace(state.range(0));
    compare(
        state,
        [&] {
            const TopicStore store(workspace.file, Resources(), workspace.clock);
            if (store.count() != state.range(0)) {
                state.SkipWithError("not all topics were loaded");
            }
        },
        [&] {
            const auto bytes = readWhole(workspace.file);
            simdjson::dom::parser parser;
            const simdjson::padded_string_view view(bytes->constData(),
                                                    static_cast<std::size_t>(bytes->size()),
                                                    static_cast<std::size_t>(bytes->capacity()));
            benchmark::DoNotOptimize(parser.parse(view).error());
        },
        [&] {
            QFile file(workspace.file);
            if (file.open(QIODevice::ReadOnly)) {
                benchmark::DoNotOptimize(QJsonDocument::fromJson(file.readAll()));
            }
        });
}

void writeBare(const QString &path, const QByteArray &bytes) {
    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporary = name + ".tmp";
    const int file = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (qsizetype done = 0; done < bytes.size();) {
        done += std::max<ssize_t>(0, ::write(file, bytes.constData() + done,
                                             static_cast<std::size_t>(bytes.size() - done)));
    }
    ::fsync(file);
    ::close(file);
    ::rename(temporary.constData(), name.constData());
}

void saveOneChanged(benchmark::State &state) {
    const Workspace workspace(state.range(0));
    TopicStore store(workspace.file, Resources(), workspace.clock);
    const auto topics = store.topics();
    const QByteArray bytes = *readWhole(workspace.file);
    const auto document = QJsonDocument::fromJson(bytes);
    qsizetype next = 0;
    store.save();
    store.flush(); // what was loaded is encoded once
    compare(
        state,
        [&] {
            store.keep(topics[next++ % topics.size()]->id);
            if (!store.flush()) {
                state.SkipWithError("the save failed");
            }
        },
        [&] { writeBare(workspace.dir.filePath(QStringLiteral("bare.json")), bytes); },
        [&] {
            QSaveFile file(workspace.dir.filePath(QStringLiteral("peer.json")));
            if (file.open(QIODevice::WriteOnly)) {
                file.write(document.toJson());
                file.commit();
            }
        });
}

/// The first save after a start also encodes what was loaded, unless it was prepared.
void saveFirst(benchmark::State &state) {
    const Workspace workspace(state.range(0));
    const QByteArray bytes = *readWhole(workspace.file);
    std::vector<double> own;
    std::vector<double> bare;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        TopicStore store(workspace.file, Resources(), workspace.clock);
        if (state.range(1) != 0) {
            store.prepareSaves();
            store.flush();
        }
        bare.push_back(secondsOf(
            [&] { writeBare(workspace.dir.filePath(QStringLiteral("bare.json")), bytes); }));
        own.push_back(secondsOf([&] {
            store.save();
            store.flush();
        }));
        state.SetIterationTime(own.back());
    }
    state.counters["median_ms"] = quantile(own, 0.5) * 1e3;
    state.counters["times_floor"] = quantile(own, 0.5) / quantile(bare, 0.5);
}

/// What one triage decision takes from the main thread, the disk busy with the one before.
void triageKey(benchmark::State &state) {
    const Workspace workspace(state.range(0));
    TopicStore store(workspace.file, Resources(), workspace.clock);
    const auto topics = store.topics();
    std::vector<double> taken;
    qsizetype next = 0;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        const QUuid id = topics[next++ * 7919 % topics.size()]->id;
        taken.push_back(secondsOf([&] { store.keep(id); }));
        state.SetIterationTime(taken.back());
        ::usleep(2'000);
    }
    state.counters["median_us"] = quantile(taken, 0.5) * 1e6;
    state.counters["p99_us"] = quantile(taken, 0.99) * 1e6;
}

/// A burst of keys, until all of it is on disk.
void burstOf20(benchmark::State &state) {
    const Workspace workspace(state.range(0));
    TopicStore store(workspace.file, Resources(), workspace.clock);
    const auto topics = store.topics();
    store.save();
    store.flush();
    qsizetype next = 0;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        state.SetIterationTime(secondsOf([&] {
            for (int key = 0; key < 20; ++key) {
                store.keep(topics[next++ % topics.size()]->id);
            }
            store.flush();
        }));
    }
}

BENCHMARK(load)->Arg(1'000)->Arg(10'000)->UseManualTime()->Iterations(9)->Unit(
    benchmark::kMillisecond);
BENCHMARK(saveOneChanged)
    ->Arg(1'000)
    ->Arg(10'000)
    ->UseManualTime()
    ->Iterations(31)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(saveFirst)
    ->ArgNames({"topics", "prepared"})
    ->Args({10'000, 0})
    ->Args({10'000, 1})
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(triageKey)->Arg(1'000)->Arg(10'000)->UseManualTime()->Iterations(300)->Unit(
    benchmark::kMicrosecond);
BENCHMARK(burstOf20)->Arg(10'000)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vorle

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
