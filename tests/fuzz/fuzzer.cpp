// A libFuzzer program of the target that QUILT_FUZZ_TARGET names.

#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    StartTargets();
    QUILT_FUZZ_TARGET(data, size);
    return 0;
}
