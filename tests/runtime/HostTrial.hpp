#pragma once

// Calls of scripts on a world that a test makes up.

#include <string>
#include <vector>

#include "EntityTrial.hpp"
#include "Host.hpp"
#include "HostFunctions.hpp"

namespace port {

struct HostTrial : EntityTrial, HostServices {
    bool inPlay = true;
    Host host{*this, tick};
    ScriptContext context;
    std::vector<std::string> tags;  // of the last call

    HostTrial() {
        root = folder.path();
        dataRoot = std::filesystem::path(TRIAL_PORT) / "assets" / "openbor-data";
        isPlaying = [this] { return inPlay; };
        effects.open(dataRoot);
        scripts.machine().setHost(&host);
    }

    // Makes the call as a script of `context`.
    template <class... Args>
    ScriptValue call(const char* name, const Args&... args) {
        const std::vector<ScriptValue> list{ScriptValue(args)...};
        UnansweredNames unsupported;
        ScriptValue result;
        quietly([&] { result = host.callScriptFunction(name, list, context, unsupported); });
        tags = unsupported.names();
        return result;
    }
    // Text arguments stand as literals.
    static ScriptValue text(const char* words) { return ScriptText(words); }

    // As what a call that says nothing in particular gives.
    static inline const ScriptValue kEmpty{};
    // As the script of this actor.
    void be(const Actor& actor) { context = actor.scriptCtx; }
    // The game's own scripts look below the test's folder.
    void script(const std::string& file, const std::string& body) {
        folder.write("data/" + file, "void main(){" + body + "}");
        scripts.open(folder.path(), folder.path() / "data", &host);
        scripts.machine().globals().try_emplace("hooks", std::string());
    }
    using Tags = std::vector<std::string>;
};

}  // namespace port
