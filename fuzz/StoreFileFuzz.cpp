#include "fuzz/JsonLaws.h"
#include "model/RoostStoreFileFields.h"

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    roost::fuzz::checkLaws<roost::RoostStoreFile>({data, size});
    return 0;
}
