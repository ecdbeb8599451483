#include "bench/Benchmarks.h"
#include "bench/Fixtures.h"
#include "bench/NlohmannPeer.h"
#include "bench/RapidjsonPeer.h"
#include "bench/SimdjsonPeer.h"
#include "model/RealFileSystem.h"
#include "model/WidgetStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace roost::bench {

namespace {

/// A store in a folder of its own that goes when it goes, holding the file of `profiles` profiles.
class Bench {
public:
    explicit Bench(int profiles) : contents_{storeFileOf(profiles)}
    {
        if (!store_.write(contents_)) {
            throw std::runtime_error{"the temporary folder cannot be written"};
        }
    }

    RoostStoreFile read() const { return store_.read().value(); }

    RoostStoreFile readWithSimdjson()
    {
        const simdjson::padded_string bytes = simdjson::padded_string::load(store_.file().string());
        return simdjsonPeer::decodeStoreFile(parser_, bytes);
    }

    RoostStoreFile readWithNlohmann() const
    {
        std::ifstream file{store_.file(), std::ios::binary};
        const std::string bytes{std::istreambuf_iterator{file}, {}};
        return nlohmannPeer::decodeStoreFile(bytes);
    }

    bool write() const { return store_.write(contents_).has_value(); }

    bool writeWithRapidjson()
    {
        return !replaceFile(files_, store_.file(), rapidjsonPeer::encode(contents_));
    }

    bool writeWithNlohmann() { return !replaceFile(files_, store_.file(), nlohmannPeer::encode(contents_)); }

private:
    QTemporaryDir folder_;
    RealFileSystem files_;
    WidgetStore store_{files_, folder_.path().toStdString()};
    RoostStoreFile contents_;
    simdjson::ondemand::parser parser_;
};

template <class Round>
auto* measure(const std::string& name, int profiles, Round round)
{
    const auto run = [profiles, round](benchmark::State& state) {
        Bench bench{profiles};
        for (auto again : state) {
            static_cast<void>(again);
            auto result = (bench.*round)();
            benchmark::DoNotOptimize(result);
        }
        state.SetItemsProcessed(state.iterations() * profiles);
    };
    return benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMicrosecond);
}

} // namespace

void registerStoreBenchmarks()
{
    for (const int profiles : {1, 100, 10'000}) {
        const std::string what = "/file of " + std::to_string(profiles) + "/";
        measure("read" + what + "roost", profiles, &Bench::read);
        measure("read" + what + "simdjson", profiles, &Bench::readWithSimdjson);
        measure("read" + what + "nlohmann", profiles, &Bench::readWithNlohmann);
        // A write waits for the disk, so its time is the one on the wall.
        measure("write" + what + "roost", profiles, &Bench::write)->UseRealTime();
        measure("write" + what + "rapidjson", profiles, &Bench::writeWithRapidjson)->UseRealTime();
        measure("write" + what + "nlohmann", profiles, &Bench::writeWithNlohmann)->UseRealTime();
    }
}

} // namespace roost::bench
