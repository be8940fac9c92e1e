// Benchmarks in pairs: ours and a peer's on the same data in the same run, and a table of their ratios
// at the end. The medians of the processor time are compared, so that what else the machine does counts little.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

class Pairs {
public:
    struct Work {
        double cells = 0;   // cells, or rows where a work is about rows, that one run handles
        double bytes = 0;   // bytes that one run handles
        int iterations = 0; // 0: as many as the time needs
    };

    // Each run does the whole work once; `check` runs each side once before it is timed and tells what is wrong.
    void Add(const std::string& name, Work work, std::function<void()> ours, std::function<void()> peer,
             std::string peerName)
    {
        rows_.push_back({name, peerName, work});
        Register(name + "/ours", work, std::move(ours));
        if (peer)
            Register(name + "/" + peerName, work, std::move(peer));
    }

    // Leaves a part of a run that is being timed out of its time: making what it works on, or giving its result up.
    template <class Body>
    static void Untimed(Body body)
    {
        if (timed)
            timed->PauseTiming();
        body();
        if (timed)
            timed->ResumeTiming();
    }

    int Run(int argc, char** argv)
    {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return 1;
        Collector collector;
        benchmark::RunSpecifiedBenchmarks(&collector);
        int width = 0;
        for (const Row& row : rows_)
            width = std::max(width, static_cast<int>(row.name.size()));
        std::printf("\n%-*s %10s %9s %9s  %-10s %8s\n", width, "", "ms", "MB/s", "ns/cell", "peer", "ratio");
        for (const Row& row : rows_) {
            const auto ours = collector.medians.find(row.name + "/ours");
            if (ours == collector.medians.end())
                continue;
            std::printf("%-*s %10.2f", width, row.name.c_str(), ours->second * 1e3);
            Print(" %9.0f", row.work.bytes / ours->second / 1e6);
            Print(" %9.1f", row.work.cells > 0 ? ours->second / row.work.cells * 1e9 : 0);
            const auto peer = collector.medians.find(row.name + "/" + row.peer);
            if (peer != collector.medians.end())
                std::printf("  %-10s %7.2fx", row.peer.c_str(), peer->second / ours->second);
            std::printf("\n");
        }
        return 0;
    }

private:
    struct Row {
        std::string name;
        std::string peer;
        Work work;
    };

    class Collector : public benchmark::BenchmarkReporter {
    public:
        bool ReportContext(const Context& context) override
        {
            PrintBasicContext(&std::cerr, context);
            return true;
        }
        void ReportRuns(const std::vector<Run>& runs) override
        {
            for (const Run& run : runs) {
                if (run.aggregate_name == "median")
                    medians[run.run_name.function_name] = run.GetAdjustedCPUTime() / 1e3;
            }
        }
        std::map<std::string, double> medians; // seconds
    };

    static void Print(const char* format, double value)
    {
        if (value > 0)
            std::printf(format, value);
        else
            std::printf("%10s", "");
    }

    static void Register(const std::string& name, Work work, std::function<void()> run)
    {
        auto* registered = benchmark::RegisterBenchmark(name.c_str(), [run](benchmark::State& state) {
            timed = &state;
            for (auto _ : state)
                run();
            timed = nullptr;
        });
        registered->Unit(benchmark::kMillisecond)->Repetitions(5);
        if (work.iterations > 0)
            registered->Iterations(work.iterations);
        else
            registered->MinTime(0.1);
    }

    static inline benchmark::State* timed = nullptr;

    std::vector<Row> rows_;
};

inline void Require(bool good, const char* what)
{
    if (!good) {
        std::fprintf(stderr, "wrong result: %s\n", what);
        std::exit(1);
    }
}
