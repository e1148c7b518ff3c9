#include "analysis/ScriptCheckReport.hpp"

#include "analysis/HtmlText.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {

std::string summaryOf(const ScriptCheckup& checkup) {
    std::string text = "Compiled " + counted(checkup.scripts, "script", "scripts") + " and " +
                       counted(checkup.commands, "animation command", "animation commands") + ": ";
    if (checkup.broken.empty()) {
        text += "none breaks off.";
    } else {
        if (checkup.cutShort) text += "more than ";
        text += counted(checkup.broken.size(), "place breaks off.", "places break off.");
    }
    if (checkup.unchecked > 0) {
        text += ' ' + counted(checkup.unchecked, "one was", "were") +
                " not compiled: the game has more than is looked at.";
    }
    return text;
}

std::string faultOf(const BrokenScript& broken) {
    std::string text;
    if (!broken.function.empty()) text += '`' + broken.function + "` ";
    if (broken.line > 0) {
        text += broken.token.empty() ? "breaks off at the end of the text"
                                     : "breaks off at `" + broken.token + '`';
        text += ": ";
    }
    text += broken.error;
    if (!broken.cure.empty()) text.append("; ").append(broken.cure);
    return text;
}

std::string costOf(const BrokenScript& broken) {
    if (broken.hooks + broken.commands == 0) return "nothing that the game runs comes there";
    std::string text;
    if (broken.hooks > 0) text += counted(broken.hooks, "hook", "hooks");
    if (broken.commands > 0) {
        if (!text.empty()) text += " and ";
        text += counted(broken.commands, "animation command", "animation commands");
    }
    return text + (broken.hooks + broken.commands == 1 ? " comes there" : " come there");
}

void writeScriptCheck(const ScriptCheckup& checkup, const std::filesystem::path& file) {
    OutputFile out(file);
    out << "SCRIPT CHECK\n" << summaryOf(checkup) << '\n';
    for (const BrokenScript& broken : checkup.broken) {
        out << '\n' << broken.file;
        if (broken.line > 0) out << ':' << broken.line;
        out << ' ' << faultOf(broken) << "\n    " << costOf(broken) << '\n';
        for (const ScriptCaller& caller : broken.callers) {
            out << "    " << caller.file;
            if (caller.line > 0) out << ':' << caller.line;
            out << ' ' << caller.keyword << '\n';
        }
        const std::uint64_t callers = broken.hooks + broken.commands;
        if (callers > broken.callers.size()) {
            out << "    and " << groupDigits(callers - broken.callers.size()) << " more\n";
        }
    }
    out.close();
}

}  // namespace tindrel
