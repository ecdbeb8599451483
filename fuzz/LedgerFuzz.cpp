#include "fuzz/JsonLaws.h"
#include "notify/AnnouncedLedgerFields.h"

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    roost::fuzz::checkLaws<roost::AnnouncedLedger>({data, size});
    return 0;
}
