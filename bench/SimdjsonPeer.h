#pragma once

#include "model/RoostStoreFile.h"

#include <simdjson.h>

/// The same records read by hand with simdjson's on-demand cursor, the way its manual shows: one parser that
/// is used again and again, a text that was padded beforehand, the keys compared where they stand. Only what
/// is asked for is looked at. Anything but a well-formed document throws.
namespace roost::bench::simdjsonPeer {

RoostSnapshot decodeSnapshot(simdjson::ondemand::parser& parser, const simdjson::padded_string& bytes);
RoostStoreFile decodeStoreFile(simdjson::ondemand::parser& parser, const simdjson::padded_string& bytes);

} // namespace roost::bench::simdjsonPeer
