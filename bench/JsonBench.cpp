#include "bench/Benchmarks.h"
#include "bench/Fixtures.h"
#include "bench/NlohmannPeer.h"
#include "bench/RapidjsonPeer.h"
#include "bench/SimdjsonPeer.h"
#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "model/RoostStoreFileFields.h"

#include <benchmark/benchmark.h>

#include <string>

namespace roost::bench {

namespace {

/// The ways of both records under one name, so that each benchmark is written once.
template <class Record>
struct Ways;

template <>
struct Ways<RoostSnapshot> {
    static RoostSnapshot make(int) { return snapshotOf(0); }
    static constexpr auto nlohmann = nlohmannPeer::decodeSnapshot;
    static constexpr auto simdjson = simdjsonPeer::decodeSnapshot;
};

template <>
struct Ways<RoostStoreFile> {
    static RoostStoreFile make(int profiles) { return storeFileOf(profiles); }
    static constexpr auto nlohmann = nlohmannPeer::decodeStoreFile;
    static constexpr auto simdjson = simdjsonPeer::decodeStoreFile;
};

template <class Record>
Record decoded(const std::string& bytes)
{
    return RoostJSON::decoder().decode<Record>(bytes).value();
}

template <class Record>
bool agree(const Record& record)
{
    const std::string bytes = RoostJSON::encoder().encode(record);
    ::simdjson::ondemand::parser parser;
    return decoded<Record>(bytes) == record && Ways<Record>::nlohmann(bytes) == record &&
           Ways<Record>::simdjson(parser, ::simdjson::padded_string{bytes}) == record &&
           nlohmannPeer::encode(record) == bytes && rapidjsonPeer::encode(record) == bytes;
}

/// Registers `work`, which gets a record made before the clock starts and gives one round of the work.
template <class Record, class Prepare>
void measure(const std::string& name, int profiles, Prepare prepare)
{
    const auto run = [profiles, prepare](benchmark::State& state) {
        auto round = prepare(Ways<Record>::make(profiles));
        for (auto again : state) {
            static_cast<void>(again);
            auto result = round();
            benchmark::DoNotOptimize(result);
        }
        state.SetItemsProcessed(state.iterations() * profiles);
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMicrosecond);
}

template <class Record>
void registerFor(const std::string& what, int profiles)
{
    const std::string decode = "decode/" + what + "/";
    measure<Record>(decode + "roost", profiles, [](const Record& record) {
        return [bytes = RoostJSON::encoder().encode(record)] {
            // The decoder consumes its document. This one has the room behind it that a read file has.
            std::string document;
            document.reserve(bytes.size() + ::simdjson::SIMDJSON_PADDING);
            document += bytes;
            return RoostJSON::decoder().decode<Record>(std::move(document)).value();
        };
    });
    measure<Record>(decode + "simdjson", profiles, [](const Record& record) {
        return [bytes = std::make_shared<::simdjson::padded_string>(RoostJSON::encoder().encode(record)),
                parser = std::make_shared<::simdjson::ondemand::parser>()] {
            return Ways<Record>::simdjson(*parser, *bytes);
        };
    });
    measure<Record>(decode + "nlohmann", profiles, [](const Record& record) {
        return [bytes = RoostJSON::encoder().encode(record)] { return Ways<Record>::nlohmann(bytes); };
    });

    const std::string encode = "encode/" + what + "/";
    measure<Record>(encode + "roost", profiles, [](Record&& record) {
        return [record = std::move(record)] { return RoostJSON::encoder().encode(record); };
    });
    measure<Record>(encode + "rapidjson", profiles, [](Record&& record) {
        return [record = std::move(record)] { return rapidjsonPeer::encode(record); };
    });
    measure<Record>(encode + "nlohmann", profiles, [](Record&& record) {
        return [record = std::move(record)] { return nlohmannPeer::encode(record); };
    });
}

} // namespace

bool peersAgree()
{
    constexpr int several = 3;
    return agree(snapshotOf(0)) && agree(storeFileOf(several));
}

void registerJsonBenchmarks()
{
    registerFor<RoostSnapshot>("snapshot", 1);
    for (const int profiles : {1, 100, 10'000}) {
        registerFor<RoostStoreFile>("file of " + std::to_string(profiles), profiles);
    }
}

} // namespace roost::bench
