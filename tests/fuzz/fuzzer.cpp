// The libFuzzer program: runs the target that FUZZ_TARGET names.

#include "tests/fuzz/targets.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    StartTargets();
    static const std::string name = std::getenv("FUZZ_TARGET");
    for (const Target& target : kTargets)
        if (target.name == name) target.run({reinterpret_cast<const char*>(data), size});
    return 0;
}
