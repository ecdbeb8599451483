#include "bench/Benchmarks.h"
#include "bench/PathPeers.h"
#include "present/SVGPath.h"
#include "views/PainterPath.h"

#include <benchmark/benchmark.h>

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

namespace roost::bench {

namespace {

constexpr std::size_t megabyte = 1'000'000;

/// About `bytes` of path data as drawing programs export them: relative curves and lines with two decimals,
/// some arcs, and a subpath now and then. Always the same.
std::string pathData(std::size_t bytes)
{
    std::mt19937_64 random{1};
    std::string data;
    const auto number = [&](int end) {
        const int hundredths = std::uniform_int_distribution{-end, end}(random);
        data += hundredths < 0 ? "-" : " ";
        data += std::to_string(std::abs(hundredths) / 100) + "." +
                std::to_string(std::abs(hundredths) % 100 + 100).substr(1);
    };
    const auto command = [&](char letter, int numbers) {
        data += letter;
        for (int i = 0; i < numbers; ++i) {
            number(900);
        }
    };
    while (data.size() < bytes) {
        data += "M" + std::to_string(data.size() % 499) + " " + std::to_string(data.size() % 491);
        for (int i = 0; i < 20; ++i) {
            command('c', 6);
            command('s', 4);
            command('l', 4);
            command('q', 4);
            data += "h3v-2.5a4 5 30 01";
            number(900);
            number(900);
        }
        data += 'z';
    }
    return data;
}

/// Our part beside the peers': the whole document, of which we read the attribute alone.
Bounds roostBounds(const std::string& data)
{
    const QRectF bounds = painterPath(SVGPath::Parser{data}.run()).boundingRect();
    return {bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

bool agree(const Bounds& one, const Bounds& other)
{
    // librsvg measures curves by the lines that it draws them with.
    constexpr double near = 0.5;
    return std::abs(one.x - other.x) < near && std::abs(one.y - other.y) < near &&
           std::abs(one.width - other.width) < near && std::abs(one.height - other.height) < near;
}

template <class Work>
void measure(const std::string& name, std::size_t bytes, Work work)
{
    const auto run = [bytes, work](benchmark::State& state) {
        for (auto again : state) {
            static_cast<void>(again);
            benchmark::DoNotOptimize(work());
        }
        state.SetItemsProcessed(state.iterations());
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMicrosecond);
}

} // namespace

bool pathPeersAgree()
{
    const std::string data = pathData(megabyte / 10);
    const std::string document = svgDocument(data);
    const Bounds ours = roostBounds(data);
    return ours.width > 0 && agree(ours, qtSvgPeer::bounds(document)) &&
           agree(ours, librsvgPeer::bounds(document));
}

void registerPathBenchmarks()
{
    for (const std::size_t megabytes : {1U, 10U}) {
        const auto data = std::make_shared<const std::string>(pathData(megabytes * megabyte));
        const std::string name = "path/" + std::to_string(megabytes) + " MB/";
        measure(name + "roost", data->size(), [data] { return SVGPath::Parser{*data}.run().size(); });
        if (megabytes > 1) {
            continue; // The peers' XML readers take no attributes of this length.
        }
        const auto document = std::make_shared<const std::string>(svgDocument(*data));
        measure(name + "QSvgRenderer", data->size(), [document] { return qtSvgPeer::load(*document); });
        measure(name + "librsvg", data->size(), [document] { return librsvgPeer::load(*document); });
    }
}

} // namespace roost::bench
