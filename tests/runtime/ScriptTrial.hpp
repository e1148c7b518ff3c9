#pragma once

// Small scripts and what they say: a host whose function say() notes its arguments.

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "NamedHost.hpp"
#include "ScriptVM.hpp"
#include "ScriptValue.hpp"
#include "TempFolder.hpp"

namespace port::script {

// A value with its kind: 1, 'text', true, @7 (a handle), [array], nil.
inline std::string spelled(const ScriptValue& value) {
    if (value.index() == 0) return "nil";
    if (value.index() == 2) return "'" + str(value) + "'";
    if (value.index() == 3) return truth(value) ? "true" : "false";
    if (value.index() == 4) return "@" + str(value);
    return str(value);
}

class Listener : public NamedHost {
  public:
    bool answer(const std::string& name, std::span<const ScriptValue> args, ScriptContext& context,
                UnansweredNames& unsupported, ScriptValue& result) override {
        if (name != "say") return other(name, args, context, unsupported, result);
        for (const ScriptValue& arg : args) {
            if (!said.empty()) said += ' ';
            said += spelled(arg);
        }
        if (!args.empty()) result = args[0];
        return true;
    }
    virtual bool other(const std::string&, std::span<const ScriptValue>, ScriptContext&,
                       UnansweredNames&, ScriptValue&) {
        return false;
    }

    std::string said;
};

// A game of scripts, one machine and one actor.
class Trial {
  public:
    Trial() {
        vm.setRoot(folder.path());
        vm.setHost(&host);
    }

    // Runs a whole script, as a file of its own.
    ScriptRunResult script(std::string_view text, std::string_view function = "main") {
        const std::string name = "trial" + std::to_string(count_++) + ".c";
        folder.write(name, text);
        return vm.runFile(name, context, function);
    }
    // The body of a main function.
    ScriptRunResult body(std::string_view text) {
        return script("void main() {\n" + std::string(text) + "\n}\n");
    }

    tindrel::test::TempFolder folder;
    ScriptVM vm;
    Listener host;
    ScriptContext context;

  private:
    int count_ = 0;
};

// A body or a whole script, what it says, and the error that ends it.
struct ScriptCase {
    const char* text;
    const char* said;
    const char* error = "";
};

// Runs each row in a trial of its own, to the letter. A row that defines main itself is a whole
// script.
inline void expectScripts(std::span<const ScriptCase> rows) {
    for (const ScriptCase& row : rows) {
        SCOPED_TRACE(row.text);
        Trial trial;
        trial.vm.setRoot(trial.folder.path(), true);
        const bool whole = std::string_view(row.text).find("main(") != std::string_view::npos;
        const ScriptRunResult result = whole ? trial.script(row.text) : trial.body(row.text);
        EXPECT_EQ(trial.host.said, row.said);
        EXPECT_EQ(result.error, row.error);
        EXPECT_EQ(result.ok, std::string_view(row.error).empty());
    }
}

}  // namespace port::script
