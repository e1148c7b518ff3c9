#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "Require.hpp"
#include "ScriptProgramMaker.hpp"
#include "ScriptReferee.hpp"

using tindrel::fuzz::require;
using namespace port::script;

// Arrays that hold each other are never freed, as scripts may make them.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

namespace {

void compare(const std::string& text, bool asWritten) {
    port::ScriptVM vm;
    referee::Witness host;
    vm.setRoot("/nonexistent", asWritten);
    vm.setHost(&host);
    const Outcome first = byMachine(vm, host, text);
    const bool draws = text.find("rand") != text.npos;  // a second run draws other numbers
    const Outcome second = byMachine(vm, host, text);
    require(draws || !first.decided || !second.decided || first == second,
            "a run does not depend on those before");
    if (!first.decided) return;
    const Outcome expected = byReferee(text, asWritten);
    if (!expected.decided || first == expected) return;
    std::fprintf(stderr, "%s\n-- machine: %s\n%s-- referee: %s\n%s", text.c_str(),
                 first.error.c_str(), first.story.c_str(), expected.error.c_str(),
                 expected.story.c_str());
    require(false, "the machine does what a walk over the tokens does");
}

}  // namespace

// The bytes as the text of a script, and as the choices that make up one without errors.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool asWritten = size % 2 == 1;
    compare(std::string(reinterpret_cast<const char*>(data), size), asWritten);
    std::size_t next = 0;
    compare(madeProgram([&] { return next < size ? data[next++] : 0U; }, true), asWritten);
    return 0;
}
