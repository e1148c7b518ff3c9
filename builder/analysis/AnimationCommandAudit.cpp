#include "analysis/AnimationCommandAudit.hpp"

#include <algorithm>
#include <array>
#include <fstream>
#include <span>

#include "analysis/ScriptPatterns.hpp"
#include "reader/ModelKeywords.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

// The calls that are verified as such, with their number of tokens, name included.
struct SafeCall {
    std::string_view name;
    std::size_t tokens;
};
constexpr std::array<SafeCall, 6> kSafeCalls = {{{"setglobalvar", 3},
                                                 {"getglobalvar", 2},
                                                 {"getlocalvar", 2},
                                                 {"setlocalvar", 3},
                                                 {"null", 1},
                                                 {"killentity", 2}}};

const SafeCall* findSafeCall(std::string_view name) {
    const auto* const call =
        std::find_if(kSafeCalls.begin(), kSafeCalls.end(),
                     [&](const SafeCall& c) { return equalsFolded(name, c.name); });
    return call == kSafeCalls.end() ? nullptr : call;
}

constexpr std::string_view kVerified = "verified ScriptVM call, bound to the following frame";
constexpr std::string_view kOutside =
    "helper/API or arguments outside the verified subset; runtime executes and logs any failure";
constexpr std::string_view kRequires = "helper compilation unit requires: ";
constexpr std::string_view kTooDense = "helper compilation unit requires: include-walk-limit";
constexpr std::string_view kCustomHelper =
    "custom helper function/arity or arguments still need behavioral validation; runtime executes "
    "and logs any failure";

// Takes forms off the front of a text; each form means one piece of the argument expressions.
class FormReader {
  public:
    explicit FormReader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool done() const { return rest_.empty(); }
    bool literal(std::string_view word) {
        if (rest_.substr(0, word.size()) != word) return false;
        rest_.remove_prefix(word.size());
        return true;
    }
    void spaces() {
        while (!rest_.empty() && isSpace(rest_.front())) rest_.remove_prefix(1);
    }
    // "(?:[^"\\]|\\.)*" and the same in single quotes.
    bool quoted() {
        if (rest_.empty() || (rest_.front() != '"' && rest_.front() != '\'')) return false;
        for (std::size_t i = 1; i < rest_.size(); ++i) {
            if (rest_[i] == '\\') {
                ++i;
                // The expression's dot takes no line end.
                if (i < rest_.size() && (rest_[i] == '\n' || rest_[i] == '\r')) return false;
            } else if (rest_[i] == rest_.front()) {
                rest_.remove_prefix(i + 1);
                return true;
            }
        }
        return false;
    }
    std::size_t digits() {
        std::size_t count = 0;
        while (count < rest_.size() && isDigit(rest_[count])) ++count;
        rest_.remove_prefix(count);
        return count;
    }
    // [+-]?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE][+-]?[0-9]+)?
    bool number() {
        if (!literal("+")) literal("-");
        const std::size_t whole = digits();
        std::size_t fraction = 0;
        if (literal(".")) fraction = digits();
        if (whole + fraction == 0) return false;
        if (literal("e") || literal("E")) {
            if (!literal("+")) literal("-");
            return digits() > 0;
        }
        return true;
    }
    // 0[xX][0-9A-Fa-f]+
    bool hexadecimal() {
        if (!literal("0x") && !literal("0X")) return false;
        std::size_t count = 0;
        while (count < rest_.size() && std::isxdigit(static_cast<unsigned char>(rest_[count])) != 0)
            ++count;
        rest_.remove_prefix(count);
        return count > 0;
    }

  private:
    std::string_view rest_;
};

template <typename Form>
bool matchesWhole(std::string_view text, Form form) {
    FormReader reader(text);
    return form(reader) && reader.done();
}

// Quotes must close, parentheses balance, no bracket or statement end stand outside a constant, and
// every call be a verified one.
bool hasVerifiedShape(std::string_view text) {
    std::string blanked(text);
    char quote = 0;
    int depth = 0;
    for (std::size_t i = 0; i < blanked.size(); ++i) {
        char& c = blanked[i];
        if (quote != 0) {
            if (c == '\\' && i + 1 < blanked.size()) {
                c = ' ';
                blanked[++i] = ' ';
            } else if (c == quote) {
                quote = 0;
            } else {
                c = ' ';
            }
            continue;
        }
        if (c == '"' || c == '\'') quote = c;
        if (c == '(') ++depth;
        if (c == ')' && --depth < 0) return false;
        if (std::string_view("{};[]").find(c) != std::string_view::npos) return false;
    }
    if (quote != 0 || depth != 0) return false;
    bool safe = true;
    forEachCall(blanked,
                [&](std::string_view name) { safe = safe && findSafeCall(name) != nullptr; });
    return safe;
}

// A call as scripts write it, to its name and its arguments.
void splitWholeCall(std::vector<std::string_view>& tokens) {
    const std::string_view call = tokens.front();
    const std::size_t open = call.find('(');
    std::vector<std::string_view> arguments;
    if (!splitCallArguments(call.substr(open + 1), arguments)) return;
    tokens.front() = call.substr(0, open);
    tokens.insert(tokens.end(), arguments.begin(), arguments.end());
}

}  // namespace

bool isVerifiedArgument(std::string_view text) {
    const auto nameOf = [](FormReader& r) {
        if (!r.literal("getlocalvar(") && !r.literal("getglobalvar(")) return false;
        r.spaces();
        if (!r.quoted()) return false;
        r.spaces();
        return r.literal(")");
    };
    const auto nullCall = [](FormReader& r) {
        if (!r.literal("null(")) return false;
        r.spaces();
        return r.literal(")");
    };
    return text == "true" || text == "false" || text == "null" ||
           matchesWhole(text, [](FormReader& r) { return r.quoted(); }) ||
           matchesWhole(text, [](FormReader& r) { return r.number(); }) ||
           matchesWhole(text, [](FormReader& r) { return r.hexadecimal(); }) ||
           matchesWhole(text, nullCall) || matchesWhole(text, nameOf);
}

void AnimationCommandAuditor::readContext(const TextFile& file, const std::filesystem::path& path) {
    if (contextPath_.native() == path.native()) return;
    contextPath_ = path;
    const std::vector<TextLine>& lines = file.lines();
    context_.assign(lines.size(), {});
    std::string_view helper;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        context_[i].helper = helper;
        if (lines[i].key == "animationscript" && !lines[i].args.empty()) helper = lines[i].args[0];
    }
    bool frameFollows = false;
    for (std::size_t i = lines.size(); i-- > 0;) {
        context_[i].frameFollows = frameFollows;
        if (lines[i].key == "frame") frameFollows = true;
        if (lines[i].key == "anim" || lines[i].key == "animation") frameFollows = false;
    }
}

AnimationCommandAuditor::Helper& AnimationCommandAuditor::helperOf(std::string_view name) {
    const auto known = helpers_.find(name);
    if (known != helpers_.end()) return known->second;
    Helper& helper = helpers_[std::string(name)];
    switch (scanner_.findScript(name, {}, helper.file)) {
        case ScriptScanner::Lookup::kUnsafe:
            helper.fault = "unsafe helper path";
            return helper;
        case ScriptScanner::Lookup::kMissing:
            helper.fault = "helper file missing or basename is ambiguous";
            return helper;
        case ScriptScanner::Lookup::kFound:
            break;
    }
    if (!std::ifstream(helper.file).is_open()) {
        helper.fault = "helper file missing";
        return helper;
    }
    ScriptReport report = scanner_.scanScriptSource(helper.file);
    if (report.clean()) return helper;
    helper.fault = std::string(kRequires) + report.joinedNames(", ");
    helper.report = std::make_shared<const ScriptReport>(std::move(report));
    return helper;
}

std::string_view AnimationCommandAuditor::verdict(std::span<const std::string_view> tokens,
                                                  std::string_view text, const Context& context,
                                                  CompatStatus& status) {
    if (!context.frameFollows) return "no following animation frame; command cannot execute";
    if (tokens.empty()) return "empty command";
    const std::string_view name = tokens.front();
    if (!isIdentifier(name)) return "invalid function name";

    Helper* const helper = context.helper.empty() ? nullptr : &helperOf(context.helper);
    if (helper != nullptr && !helper->fault.empty()) return helper->fault;

    const std::span<const std::string_view> arguments = tokens.subspan(1);
    const bool argumentsVerified =
        std::all_of(arguments.begin(), arguments.end(), isVerifiedArgument);
    if (const SafeCall* const call = findSafeCall(name)) {
        if (tokens.size() != call->tokens || !argumentsVerified || !hasVerifiedShape(text)) {
            return kOutside;
        }
    } else if (helper != nullptr) {
        const ScriptScanner::ParameterCounts* const known = scanner_.parameterCounts(helper->file);
        if (known == nullptr) return kTooDense;
        const auto function = known->find(toLower(name));
        if (function == known->end() || function->second != arguments.size() ||
            !argumentsVerified) {
            return kCustomHelper;
        }
        if (!hasVerifiedShape(text)) return kOutside;
    } else {
        return kOutside;
    }
    status = CompatStatus::kSupported;
    return kVerified;
}

AnimationCommandAudit AnimationCommandAuditor::audit(const TextFile& file, std::size_t index,
                                                     const std::filesystem::path& path,
                                                     const SourceFile& source) {
    readContext(file, path);
    const TextLine& line = file.lines()[index];
    const Context& context = context_[index];
    AnimationCommandAudit record;
    record.file = &source;
    record.line = line.line;
    std::vector<std::string_view> tokens(line.args.begin(), line.args.end());
    if (!file.reading().asWritten() && isWholeCall(tokens)) splitWholeCall(tokens);
    record.command = joinTokens(tokens, 0, tokens.size());
    record.helper = context.helper;
    record.message = record.command;
    if (!record.helper.empty()) record.message += "; helper=" + record.helper;
    record.message += "; ";
    const std::string_view said = verdict(tokens, record.command, context, record.status);
    record.message += said;
    if (said.starts_with(kRequires)) record.helperReport = helperOf(context.helper).report;
    return record;
}

}  // namespace tindrel
