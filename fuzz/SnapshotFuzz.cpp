#include "fuzz/JsonLaws.h"
#include "model/RoostSnapshotFields.h"

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    roost::fuzz::checkLaws<roost::RoostSnapshot>({data, size});
    return 0;
}
