// Two figures of the workspace tree: the wall time of loadEntries over 50 spaces with 20 ms of
// latency on every request, against the ideal of one spaces request and one round of two requests
// per space; and the time of entry(forListID) over 5,000 cached entries, against a plain scan of
// one flat array.
#include "bench/SandboxClient.h"
#include "core/auth/StaticTokenAuth.h"
#include "core/hierarchy/HierarchyStore.h"
#include "support/RunTask.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <algorithm>
#include <cstdio>

namespace {
constexpr int spaceCount = 50;
constexpr int latencyMs = 20;
constexpr int loadRuns = 7;
constexpr int entryCount = 5000;
constexpr int lookups = 20000;
const QString token = QStringLiteral("pk_bench_tree");
const QString workspaceID = QStringLiteral("88001");

QJsonObject benchSeed() {
    QJsonArray spaces;
    for (int index = 0; index < spaceCount; ++index) {
        const QString id = QString::number(88200 + index);
        spaces.append(QJsonObject{
            {"id", id},
            {"name", QStringLiteral("Space %1").arg(index)},
            {"lists", QJsonArray{QJsonObject{{"id", id + u'0'}, {"name", "List"}}}},
            {"folders",
             QJsonArray{QJsonObject{{"id", id + u'1'},
                                    {"name", "Folder"},
                                    {"lists", QJsonArray{QJsonObject{{"id", id + u'2'}, {"name", "In folder"}}}}}}}});
    }
    return {
        {"users", QJsonArray{QJsonObject{{"id", 88}, {"username", "Bench"}, {"token", token}}}},
        {"workspaces", QJsonArray{QJsonObject{
                           {"id", workspaceID}, {"name", "Bench"}, {"members", QJsonArray{88}}, {"spaces", spaces}}}}};
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int benchLoadEntries() {
    SandboxClient service;
    if (!service.start(benchSeed(), token)) {
        return 1;
    }
    SandboxProcess& sandbox = service.sandbox;
    HierarchyStore store(*service.client);
    runTask(store.loadEntries(workspaceID, true)); // warm-up: connections opened
    // The baseline without injected latency shows what the sandbox and the machine cost.
    for (const int latency : {0, latencyMs}) {
        if (latency > 0 && !sandbox.addFault({.path = "/api/v2/**", .times = -1, .delayMs = latency})) {
            return 1;
        }
        QList<double> times;
        for (int run = 0; run < loadRuns; ++run) {
            QElapsedTimer timer;
            timer.start();
            runTask(store.loadEntries(workspaceID, true));
            times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
        if (store.lastError() || store.entriesByWorkspace().value(workspaceID).size() != 2 * spaceCount) {
            std::fprintf(stderr, "loadEntries failed: %s\n", qPrintable(store.lastError().value_or(QString())));
            return 1;
        }
        const double ideal = (spaceCount + 1) * latency;
        std::printf("loadEntries, %d spaces, %d ms per request: median %.0f ms (min %.0f, max %.0f) over %d runs; "
                    "ideal %.0f ms (%d x %d ms + one spaces request)\n",
                    spaceCount, latency, median(times), *std::min_element(times.begin(), times.end()),
                    *std::max_element(times.begin(), times.end()), loadRuns, ideal, spaceCount, latency);
    }
    return 0;
}

void benchEntryLookup() {
    StaticTokenAuth auth(token);
    QNetworkAccessManager session;
    const NorvaneClient client(auth, &session, nullptr, QUrl(QStringLiteral("http://127.0.0.1:1/api/v2")));
    HierarchyStore store(client);
    HierarchyStore::EntriesByWorkspace byWorkspace;
    QList<ListEntry> flat;
    for (int index = 0; index < entryCount; ++index) {
        const QString workspace = QString::number(index % 5);
        ListEntry entry{workspace,
                        QStringLiteral("s"),
                        QStringLiteral("Space"),
                        std::nullopt,
                        std::nullopt,
                        NVList{QString::number(100000 + index), QStringLiteral("List"), std::nullopt, std::nullopt},
                        {}};
        byWorkspace[workspace].append(entry);
        flat.append(entry);
    }
    store.setEntriesByWorkspace(byWorkspace);
    QStringList wanted;
    for (int index = 0; index < lookups; ++index) {
        wanted.append(QString::number(100000 + QRandomGenerator::global()->bounded(entryCount)));
    }
    int found = 0;
    QElapsedTimer timer;
    timer.start();
    for (const QString& id : wanted) {
        found += store.entry(id) ? 1 : 0;
    }
    const double storeNs = static_cast<double>(timer.nsecsElapsed()) / lookups;
    timer.restart();
    for (const QString& id : wanted) {
        const auto hit =
            std::find_if(flat.cbegin(), flat.cend(), [&id](const ListEntry& entry) { return entry.list.id == id; });
        found += hit != flat.cend() ? 1 : 0;
    }
    const double scanNs = static_cast<double>(timer.nsecsElapsed()) / lookups;
    std::printf("entry(forListID), %d entries in 5 workspaces: %.1f us per lookup; flat-array scan baseline %.1f us; "
                "ratio %.2f (%d found)\n",
                entryCount, storeNs / 1000, scanNs / 1000, storeNs / scanNs, found);
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchEntryLookup();
    return benchLoadEntries();
}
