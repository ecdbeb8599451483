#pragma once

#include "model/RoostStoreFile.h"

#include <string>

/// The same records written by hand with rapidjson's `Writer`.
namespace roost::bench::rapidjsonPeer {

std::string encode(const RoostSnapshot& snapshot);
std::string encode(const RoostStoreFile& file);

} // namespace roost::bench::rapidjsonPeer
