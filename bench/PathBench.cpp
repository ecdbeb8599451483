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
#include <vector>

namespace roost::bench {

namespace {

constexpr std::size_t megabyte = 1'000'000;
/// Qt's renderer reads no more than about 170 KB of a path and leaves out the rest.
constexpr std::size_t everyoneReads = 50'000;

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

std::size_t bytesOf(const std::vector<std::string>& paths)
{
    std::size_t bytes = 0;
    for (const std::string& data : paths) {
        bytes += data.size();
    }
    return bytes;
}

std::size_t roostLoad(const std::vector<std::string>& paths)
{
    std::size_t elements = 0;
    for (const std::string& data : paths) {
        elements += SVGPath::Parser{data}.run().size();
    }
    return elements;
}

template <class Work>
void measure(const std::string& name, const std::vector<std::string>& paths, Work work)
{
    const auto run = [bytes = bytesOf(paths), work](benchmark::State& state) {
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
    const std::string data = pathData(everyoneReads);
    const std::string document = svgDocument({data});
    const Bounds ours = roostBounds(data);
    return ours.width > 0 && agree(ours, qtSvgPeer::bounds(document)) &&
           agree(ours, librsvgPeer::bounds(document));
}

void registerPathBenchmarks()
{
    using Paths = std::vector<std::string>;
    const auto drawing = std::make_shared<const Paths>(megabyte / everyoneReads, pathData(everyoneReads));
    const auto document = std::make_shared<const std::string>(svgDocument(*drawing));
    const std::string name = "path/1 MB in 20/";
    measure(name + "roost", *drawing, [drawing] { return roostLoad(*drawing); });
    measure(name + "QSvgRenderer", *drawing, [document] { return qtSvgPeer::load(*document); });
    measure(name + "librsvg", *drawing, [document] { return librsvgPeer::load(*document); });

    // By ourselves, whether the length of a single path matters.
    for (const std::size_t megabytes : {1U, 10U}) {
        const auto path = std::make_shared<const Paths>(1, pathData(megabytes * megabyte));
        measure("path/" + std::to_string(megabytes) + " MB in 1/roost", *path,
                [path] { return roostLoad(*path); });
    }
}

} // namespace roost::bench
