#include "bench/Benchmarks.h"
#include "bench/RatioReporter.h"

#include <benchmark/benchmark.h>

#include <iostream>
#include <string>
#include <vector>

/// Measures, and prints the ratios. Takes the flags of Google Benchmark.
int main(int argc, char** argv)
{
    // In turns and several times, so that a busy moment of the machine hits no one contender alone. Given
    // flags come later and so win.
    std::vector<std::string> arguments{argv[0], "--benchmark_enable_random_interleaving=true",
                                       "--benchmark_repetitions=5", "--benchmark_min_time=0.2"};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    int count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);

    if (!roost::bench::peersAgree()) {
        std::cerr << "The peers do not read the same records or write the same bytes.\n";
        return 1;
    }
    if (!roost::bench::formatPeersAgree()) {
        std::cerr << "The peers do not write the same texts.\n";
        return 1;
    }
    if (!roost::bench::pathPeersAgree()) {
        std::cerr << "The peers do not draw the same path.\n";
        return 1;
    }
    roost::bench::registerJsonBenchmarks();
    roost::bench::registerPathBenchmarks();
    roost::bench::registerStoreBenchmarks();
    roost::bench::registerFormatBenchmarks();
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
        return 2;
    }
    roost::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.failed() ? 1 : 0;
}
