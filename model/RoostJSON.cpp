#include "model/RoostJSON.h"

#include "model/JsonDecode.h"
#include "model/JsonEncode.h"
#include "model/RoostSnapshotFields.h"
#include "model/RoostStoreFileFields.h"

namespace roost::RoostJSON {

template std::expected<RoostSnapshot, JsonError> Decoder::decode<RoostSnapshot>(std::string) const;
template std::expected<RoostStoreFile, JsonError> Decoder::decode<RoostStoreFile>(std::string) const;
template std::string Encoder::encode<RoostSnapshot>(const RoostSnapshot&) const;
template std::string Encoder::encode<RoostStoreFile>(const RoostStoreFile&) const;

} // namespace roost::RoostJSON
