#pragma once

#include "model/RoostStoreFile.h"

#include <string>
#include <string_view>

/// The same records read and written by hand with nlohmann-json, as one would without the model's tables. The
/// bytes must be those of a well-formed document: anything else throws.
namespace roost::bench::nlohmannPeer {

RoostSnapshot decodeSnapshot(std::string_view bytes);
RoostStoreFile decodeStoreFile(std::string_view bytes);

std::string encode(const RoostSnapshot& snapshot);
std::string encode(const RoostStoreFile& file);

} // namespace roost::bench::nlohmannPeer
