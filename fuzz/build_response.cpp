#include "fuzz/targets/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tvrx::fuzz::fuzzBuildResponse(data, size);
}
