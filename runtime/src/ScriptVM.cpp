#include "ScriptVM.hpp"

#include <type_traits>

namespace port {

// Scripts tell the kinds of a value apart by the order of the alternatives.
static_assert(std::is_same_v<std::variant_alternative_t<1, ScriptValue>, double>);
static_assert(std::is_same_v<std::variant_alternative_t<4, ScriptValue>, std::uintptr_t>);

}  // namespace port
