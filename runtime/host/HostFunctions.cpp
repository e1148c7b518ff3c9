#include "HostFunctions.hpp"

#include "KeyTable.hpp"

namespace port {
namespace {

enum Screening { SCREENED, UNSCREENED, MENDED };

constexpr auto kFunctions = sortedTable(std::to_array<HostFunction>({
#define HOST_FUNCTION(name, needs, function, screening) \
    {#name, needs, host::function, (screening) == MENDED},
#include "HostFunctions.def"
#undef HOST_FUNCTION
                                        }),
                                        &HostFunction::name);

}  // namespace

std::span<const HostFunction> hostFunctions() {
    return kFunctions;
}

const HostFunction* findHostFunction(std::string_view loweredName) {
    return findRow(kFunctions, &HostFunction::name, loweredName);
}

}  // namespace port
