#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "Require.hpp"
#include "ScriptCode.hpp"
#include "ScriptLimits.hpp"
#include "ScriptPreprocessor.hpp"

using tindrel::fuzz::require;
using namespace port::script;

// The preprocessor with the lexer and the search for functions. No file is found below the root.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string source(reinterpret_cast<const char*>(data), size);
    ScriptSources sources("/nonexistent");
    PreprocessorState state;
    // A quarter of the way to the limit: enough to reach it, and cheap enough to run often.
    state.produced = kMaxExpandedText - (std::size_t{1} << 20U);
    const std::string text = preprocessScript(sources, "/nonexistent/main.c", source, state);
    require(state.produced <= kMaxExpandedText, "the expanded text is bounded");
    require(!state.active.empty(), "the outermost condition is never closed");

    Names names;
    Program program(lex(text), names);
    require(program.tokens.list.back().k == TK::End, "the tokens end");
    for (std::size_t i = 0; i + 1 < program.tokens.list.size(); ++i) {
        require(program.tokens.list[i].k != TK::End, "only the last token ends");
    }
    // In one game to the letter, in the next as meant.
    const bool asWritten = text.size() % 2 != 0;
    for (Function& function : program.functions) {
        compile(function, nullptr, asWritten);
        for (const Instr& instr : function.code) {
            const bool jumps = instr.op >= Op::Jump && instr.op <= Op::JumpIfTrue;
            require(!jumps || instr.wide() < function.code.size(), "a jump stays in its function");
        }
    }
    return 0;
}
