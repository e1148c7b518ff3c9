// Numbers and texts. Angles are in radians; a function that misses arguments gives 0.

#include <algorithm>
#include <cmath>

#include "HostFunctions.hpp"

namespace port::host {
namespace {

using Function1 = double (*)(double);
using Function2 = double (*)(double, double);

ScriptValue applied(const HostCall& call, Function1 function) {
    return call.has(0) ? function(call.number(0)) : 0.0;
}

ScriptValue applied(const HostCall& call, Function2 function) {
    return call.has(1) ? function(call.number(0), call.number(1)) : 0.0;
}

// One of three that make up a colour.
double channel(const HostCall& call, std::size_t index) {
    return std::clamp(call.integer(index), 0, 255);
}

}  // namespace

ScriptValue sine(HostCall& call) {
    return applied(call, Function1(std::sin));
}

ScriptValue cosine(HostCall& call) {
    return applied(call, Function1(std::cos));
}

ScriptValue squareRoot(HostCall& call) {
    return applied(call, [](double value) { return value > 0 ? std::sqrt(value) : 0.0; });
}

ScriptValue arcTangent(HostCall& call) {
    return applied(call, Function1(std::atan));
}

ScriptValue arcTangent2(HostCall& call) {
    return applied(call, Function2(std::atan2));
}

ScriptValue power(HostCall& call) {
    return applied(call, Function2(std::pow));
}

ScriptValue magnitude(HostCall& call) {
    return applied(call, Function1(std::fabs));
}

ScriptValue roundedDown(HostCall& call) {
    return applied(call, Function1(std::floor));
}

ScriptValue roundedUp(HostCall& call) {
    return applied(call, Function1(std::ceil));
}

ScriptValue withoutFraction(HostCall& call) {
    return applied(call, Function1(std::trunc));
}

ScriptValue roundedToNearest(HostCall& call) {
    return applied(call, Function1(std::round));
}

ScriptValue textLength(HostCall& call) {
    return static_cast<double>(call.text(0).size());
}

ScriptValue rgbColor(HostCall& call) {
    return channel(call, 0) * 65536 + channel(call, 1) * 256 + channel(call, 2);
}

}  // namespace port::host
