// SPDX-License-Identifier: MIT
// Wall-clock times of everything side by side in one process:
//
//   times FOLDER [the options of Google Benchmark]
//
// FOLDER holds the documents in files of their names, as count prints them. Run it with random
// interleaving and with repetitions, and compare medians: what disturbs one then disturbs all. Run each
// document by itself, by a filter: a heap that has held large ones makes small ones up to twenty times
// slower.
//
// Only the call is timed, not what becomes of its result.

#include "benchmarks/readers.h"
#include "benchmarks/subjects.h"
#include "benchmarks/writers.h"
#include "json/varianttree.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <spawn.h>
#include <string>
#include <sys/wait.h>

extern char **environ;

namespace {

template<typename Call>
void timeManually(benchmark::State &state, Call call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
}

void add(const QByteArray &action, const QByteArray &folder, const QByteArray &document,
         const QByteArrayList &all)
{
    for (const QByteArray &who : all) {
        const QByteArray file = folder + "/" + document;
        const auto run = [action, file, who](benchmark::State &state) {
            const Subject subject = Subjects::prepare(action, file, who);
            for (auto _ : state) {
                if (subject.renew)
                    subject.renew();
                QVariant result;
                timeManually(state, [&]() { result = subject.run(); });
                VariantTree::dispose(result);
            }
        };
        const QByteArrayList name = { action, document, who };
        benchmark::RegisterBenchmark(name.join('/').constData(), run)->UseManualTime();
    }
}

void addLookUps(const QByteArray &file)
{
    for (const char *who : { "getAppConfig", "getter", "hash", "hash-and-key" }) {
        const Subject subject = Subjects::prepare("look-up", file, who);
        const auto run = [subject](benchmark::State &state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(subject.run());
        };
        benchmark::RegisterBenchmark((std::string("look-up/typical/") + who).c_str(), run);
    }
}

void startAndWait(benchmark::State &state, const std::string &program)
{
    char *arguments[] = { const_cast<char *>(program.c_str()), nullptr };
    pid_t process = 0;
    int status = 1;
    if (posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ) == 0)
        waitpid(process, &status, 0);
    if (status != 0)
        state.SkipWithError("the program does not start");
}

void addStarts(const std::string &folder)
{
    for (const char *what : { "empty", "rooms", "library" }) {
        const std::string program = folder + "/start-" + what;
        const auto run = [program](benchmark::State &state) {
            for (auto _ : state)
                timeManually(state, [&]() { startAndWait(state, program); });
        };
        benchmark::RegisterBenchmark((std::string("start/process/") + what).c_str(), run)
            ->UseManualTime()
            ->MinTime(0.3);
    }
}

void addAll(const QByteArray &folder, const std::string &programs)
{
    for (const char *document :
         { "typical", "applications-1000", "applications-1000-ascending", "object-10000",
           "object-100000", "object-100000-ascending", "integers-100000", "strings", "escapes",
           "doubles", "long-strings", "smallest" })
        add("read", folder, document, Readers::names());
    for (const char *document : { "typical", "applications-1000" }) {
        add("write", folder, document, Writers::names());
        add("flatten", folder, document, { "ours", "plain", "floor" });
        add("unflatten", folder, document, { "ours", "floor" });
    }
    addLookUps(folder + "/typical");
    addStarts(programs);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: times FOLDER [options of Google Benchmark]\n");
        return 2;
    }
    const std::string program = argv[0];
    addAll(argv[1], program.substr(0, program.find_last_of('/')));
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
