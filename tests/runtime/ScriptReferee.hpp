#pragma once

// The language once more, as a walk over the tokens that parses and acts at the same time: slow and
// literal, and nothing of it is shared with the compiler or the stack machine. Both must agree, on
// scripts that are mended and on those that are taken as they are written.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "NamedHost.hpp"
#include "ScriptBuiltins.hpp"
#include "ScriptExec.hpp"
#include "ScriptLexer.hpp"
#include "ScriptPreprocessor.hpp"
#include "ScriptVM.hpp"
#include "ScriptValue.hpp"

namespace port::script {

class Referee {
  public:
    // It or the machine ran into a limit that says nothing about the language.
    struct Undecided {};

    Referee(const std::vector<Tok>& tokens, ScriptHost& host, ScriptContext& context,
            ScriptVariables& globals, UnansweredNames& unsupported, bool asWritten)
        : tokens_(tokens),
          asWritten_(asWritten),
          host_(host),
          context_(context),
          globals_(globals),
          unsupported_(unsupported),
          sink_(library_, globals, steps_, random_) {}

    // Nothing if there is no such function.
    std::optional<ScriptValue> call(std::string_view name, std::vector<ScriptValue> args) {
        Definition found;
        if (!find(name, found)) return std::nullopt;
        if (scopes_.size() == 64) throw std::runtime_error("script recursion limit exceeded");
        Values scope;
        for (std::size_t i = 0; i < found.params.size(); ++i) {
            if (found.params[i].empty()) continue;
            scope[found.params[i]] = i < args.size() ? args[i] : ScriptValue();
        }
        const Inside inside{*this, pos_};
        scopes_.push_back(std::move(scope));
        pos_ = found.body;
        try {
            block(true);
        } catch (const ReturnSignal& signal) {
            return signal.value;
        }
        return ScriptValue();
    }

  private:
    using Values = std::map<std::string, ScriptValue>;
    struct ReturnSignal {
        ScriptValue value;
    };
    struct Definition {
        std::size_t body = 0;
        std::vector<std::string> params;
    };
    struct Inside {
        Referee& referee;
        std::size_t pos;
        ~Inside() {
            referee.scopes_.pop_back();
            referee.pos_ = pos;
        }
    };
    struct Deeper {
        explicit Deeper(Referee& referee) : depth(referee.depth_) {
            if (++depth > 800 || --referee.fuel_ < 0) {
                --depth;
                throw Undecided();
            }
        }
        ~Deeper() { --depth; }
        int& depth;
    };

    // --- Tokens

    const Tok& token(std::size_t ahead = 0) const {
        return tokens_[std::min(pos_ + ahead, tokens_.size() - 1)];
    }
    bool symbol(std::string_view text, std::size_t ahead = 0) const {
        return token(ahead).k == TK::Sym && token(ahead).s == text;
    }
    bool keyword(std::string_view text) const {
        return token().k == TK::Id && lower(token().s) == text;
    }
    bool accept(std::string_view text) {
        const bool met = symbol(text);
        if (met) ++pos_;
        return met;
    }
    void need(std::string_view text) {
        if (accept(text)) return;
        throw std::runtime_error("expected " + std::string(text) + " near '" +
                                 std::string(token().s) + "'");
    }
    // Whatever the kind.
    bool spelled(std::size_t at, std::string_view text) const {
        return tokens_[std::min(at, tokens_.size() - 1)].s == text;
    }

    bool find(std::string_view wanted, Definition& found) const {
        const std::size_t end = tokens_.size() - 1;
        for (std::size_t i = 0; i < end; ++i) {
            if (spelled(i, "{")) {
                int depth = 0;
                for (; i < end; ++i) {
                    if (spelled(i, "{")) ++depth;
                    if (spelled(i, "}") && --depth == 0) break;
                }
                continue;
            }
            if (tokens_[i].k != TK::Id || !isTypeName(tokens_[i].s) || i + 2 >= end) continue;
            const Tok& name = tokens_[i + 1];
            const Tok& open = tokens_[i + 2];
            if (name.k != TK::Id || lower(name.s) != lower(wanted)) continue;
            if (open.k != TK::Sym || open.s != "(") continue;
            found.params.assign(1, "");
            int depth = 1;
            std::size_t at = i + 3;
            for (; at < end; ++at) {
                const Tok& part = tokens_[at];
                const bool sign = part.k == TK::Sym;
                if (sign && part.s == "(") ++depth;
                if (sign && part.s == ")" && --depth == 0) break;
                if (sign && part.s == "," && depth == 1) found.params.emplace_back();
                if (part.k == TK::Id && !isTypeName(part.s)) found.params.back() = part.s;
            }
            found.body = at + 1;
            if (at < end && spelled(at + 1, "{")) return true;
        }
        return false;
    }

    // --- Variables

    void store(const std::string& name, ScriptValue value, bool declared) {
        if (!scopes_.empty() && (declared || scopes_.back().contains(name))) {
            scopes_.back()[name] = std::move(value);
        } else {
            context_.local[name] = std::move(value);
        }
    }
    ScriptValue get(const std::string& name) const {
        if (!scopes_.empty()) {
            const auto own = scopes_.back().find(name);
            if (own != scopes_.back().end()) return own->second;
        }
        const auto local = context_.local.find(name);
        if (local != context_.local.end()) return local->second;
        const auto global = globals_.find(name);
        if (global != globals_.end()) return global->second;
        if (lower(name) == "null") return std::uintptr_t{0};
        return 0.0;
    }

    // --- Statements

    void block(bool exec) {
        need("{");
        while (!symbol("}") && token().k != TK::End) statement(exec);
        need("}");
    }

    void statement(bool exec) {
        const Deeper deeper(*this);
        if (symbol("{")) return block(exec);
        if (keyword("switch")) return switchStatement(exec);
        if (keyword("do")) return doStatement(exec);
        if (keyword("if")) return ifStatement(exec);
        if (keyword("while")) return whileStatement(exec);
        if (keyword("for")) return forStatement(exec);
        if (keyword("break") || keyword("continue")) {
            const bool breaks = keyword("break");
            ++pos_;
            accept(";");
            if (exec && breaks) throw BreakSignal();
            if (exec) throw ContinueSignal();
            return;
        }
        if (keyword("return")) {
            ++pos_;
            ScriptValue value;
            if (!symbol(";")) value = expr(exec, 0);
            accept(";");
            if (exec) throw ReturnSignal{value};
            return;
        }
        simple(exec);
        accept(";");
    }

    ScriptValue condition(bool exec) {
        need("(");
        ScriptValue value = expr(exec, 0);
        need(")");
        return value;
    }

    void ifStatement(bool exec) {
        ++pos_;
        const bool met = truth(condition(exec));
        statement(exec && met);
        if (!keyword("else")) return;
        ++pos_;
        statement(exec && !met);
    }

    // False once a break ends the loop.
    bool body(std::size_t at) {
        pos_ = at;
        try {
            statement(true);
        } catch (const BreakSignal&) {
            return false;
        } catch (const ContinueSignal&) {
        }
        return true;
    }

    void doStatement(bool exec) {
        const std::size_t start = ++pos_;
        statement(false);
        if (!keyword("while")) throw std::runtime_error("expected while after do");
        const std::size_t test = ++pos_;
        condition(false);
        accept(";");
        const std::size_t end = pos_;
        for (int round = 0; exec && round < 100000; ++round) {
            if (!body(start)) break;
            pos_ = test;
            if (!truth(condition(true))) break;
        }
        pos_ = end;
    }

    void whileStatement(bool exec) {
        const std::size_t test = ++pos_;
        const bool met = truth(condition(exec));
        const std::size_t start = pos_;
        statement(false);
        const std::size_t end = pos_;
        for (int round = 0; exec && met && round < 100000; ++round) {
            if (!body(start)) break;
            pos_ = test;
            if (!truth(condition(true))) break;
        }
        pos_ = end;
    }

    void forStatement(bool exec) {
        ++pos_;
        need("(");
        clause(exec, ";");
        const std::size_t test = pos_;
        const bool tested = !symbol(";");
        const bool met = !tested || truth(expr(exec, 0));
        need(";");
        const std::size_t step = pos_;
        clause(false, ")");
        const std::size_t start = pos_;
        statement(false);
        const std::size_t end = pos_;
        for (int round = 0; exec && met && round < 100000; ++round) {
            pos_ = test;
            if (tested && !truth(expr(true, 0))) break;
            if (!body(start)) break;
            pos_ = step;
            clause(true, ")");
        }
        pos_ = end;
    }

    void clause(bool exec, std::string_view terminator) {
        if (!symbol(terminator)) simple(exec);
        need(terminator);
    }

    void simple(bool exec) {
        const bool declared = token().k == TK::Id && isTypeName(token().s);
        if (declared) ++pos_;
        part(exec, declared);
        while (declared && !asWritten_ && accept(",")) part(exec, true);
    }

    void part(bool exec, bool declared) {
        const std::string name(token().s);
        const std::string op(token(1).k == TK::Sym ? token(1).s : "");
        static const std::vector<std::string> kAssignments = {
            "=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="};
        const bool named = token().k == TK::Id;
        if (named &&
            std::find(kAssignments.begin(), kAssignments.end(), op) != kAssignments.end()) {
            pos_ += 2;
            ScriptValue value = expr(exec, 0);
            if (!exec) return;
            if (op != "=") {
                value = arithmeticOf(op.substr(0, op.size() - 1), num(get(name)), num(value));
            }
            store(name, value, declared);
        } else if (named && (op == "++" || op == "--")) {
            pos_ += 2;
            if (exec) store(name, num(get(name)) + (op == "++" ? 1.0 : -1.0), declared);
        } else if (named && declared && op != "(") {
            ++pos_;
            if (exec) store(name, 0.0, true);
        } else {
            expr(exec, 0);
        }
    }

    void switchStatement(bool exec) {
        ++pos_;
        const ScriptValue key = condition(exec);
        need("{");
        std::optional<std::size_t> target;
        std::optional<std::size_t> otherwise;
        for (int depth = 1;; ++pos_) {
            if (token().k == TK::End) need("}");
            if (spelled(pos_, "{")) ++depth;
            if (spelled(pos_, "}") && --depth == 0) break;
            const bool label = depth == 1 && keyword("case");
            if (!label && !(depth == 1 && keyword("default"))) continue;
            ++pos_;
            ScriptValue value;
            if (label) value = expr(exec, 0);
            need(":");
            --pos_;
            if (!label) otherwise = pos_ + 1;
            if (label && !target && exec && eq(key, value)) target = pos_ + 1;
        }
        const std::size_t end = pos_;
        if (!target) target = otherwise;
        try {
            if (exec && target) pos_ = *target;
            while (pos_ < end) {
                const bool label = keyword("case");
                if (!label && !keyword("default")) {
                    statement(true);
                    continue;
                }
                ++pos_;
                if (label) expr(false, 0);
                need(":");
            }
        } catch (const BreakSignal&) {
        }
        pos_ = end + 1;
    }

    // --- Expressions

    static int level(const Tok& token) {
        static const std::map<std::string_view, int> kLevels = {
            {"||", 1}, {"&&", 2}, {"|", 3}, {"^", 4},  {"&", 5},  {"==", 6},
            {"!=", 6}, {"<", 7},  {">", 7}, {"<=", 7}, {">=", 7}, {"<<", 8},
            {">>", 8}, {"+", 9},  {"-", 9}, {"*", 10}, {"/", 10}, {"%", 10}};
        const auto found = kLevels.find(token.s);
        return token.k != TK::Sym || found == kLevels.end() ? 0 : found->second;
    }

    ScriptValue expr(bool exec, int least) {
        ScriptValue left = unary(exec);
        for (int tight = level(token()); tight != 0 && tight >= least; tight = level(token())) {
            const std::string op(token().s);
            ++pos_;
            if (op == "&&" || op == "||") {
                const bool first = truth(left);
                const bool decided = first == (op == "||");
                const bool second = truth(expr(exec && !decided, tight + 1));
                left = decided ? first : second;
            } else {
                const ScriptValue right = expr(exec, tight + 1);
                if (exec) left = applied(op, left, right);
            }
        }
        if (least == 0 && accept("?")) {
            const bool met = truth(left);
            const ScriptValue first = expr(exec && met, 0);
            need(":");
            const ScriptValue second = expr(exec && !met, 0);
            left = met ? first : second;
        }
        return exec ? left : ScriptValue(0.0);
    }

    static ScriptValue applied(const std::string& op, const ScriptValue& a, const ScriptValue& b) {
        if (op == "==") return eq(a, b);
        if (op == "!=") return !eq(a, b);
        if (op == "<") return num(a) < num(b);
        if (op == ">") return num(a) > num(b);
        if (op == "<=") return num(a) <= num(b);
        if (op == ">=") return num(a) >= num(b);
        if (op == "+" && (a.index() == 2 || b.index() == 2)) {
            std::string text = str(a) + str(b);
            if (text.size() > 100'000) throw Undecided();
            return text;
        }
        return arithmeticOf(op, num(a), num(b));
    }

    static double arithmeticOf(const std::string& op, double a, double b) {
        if (op == "+") return a + b;
        if (op == "-") return a - b;
        if (op == "*") return a * b;
        if (op == "/") return b == 0.0 ? 0.0 : a / b;
        const std::int64_t x = integer(a);
        const std::int64_t y = integer(b);
        if (op == "%") return static_cast<double>(x % std::max<std::int64_t>(1, y));
        if (op == "&") return static_cast<double>(x & y);
        if (op == "|") return static_cast<double>(x | y);
        if (op == "^") return static_cast<double>(x ^ y);
        if (op == ">>") return static_cast<double>(x >> (y & 63));
        const auto bits = static_cast<std::uint64_t>(x) << (y & 63);
        return static_cast<double>(static_cast<std::int64_t>(bits));
    }

    ScriptValue unary(bool exec) {
        const Deeper deeper(*this);
        for (const char* op : {"!", "~", "-", "+"}) {
            if (!accept(op)) continue;
            const ScriptValue value = unary(exec);
            if (*op == '!') return !truth(value);
            if (*op == '~') return static_cast<double>(~integer(num(value)));
            return *op == '-' ? -num(value) : num(value);
        }
        return primary(exec);
    }

    ScriptValue primary(bool exec) {
        const Tok first = token();
        if (accept("(")) {
            ScriptValue value = expr(exec, 0);
            need(")");
            return value;
        }
        ++pos_;
        if (first.k == TK::Num) return literalNumber(std::string(first.s));
        if (first.k == TK::Str) return std::string(first.s);
        if (first.k == TK::Id && accept("(")) return called(exec, std::string(first.s));
        const std::string folded = lower(first.s);
        if (first.k == TK::Id && (folded == "true" || folded == "false")) return folded == "true";
        if (first.k == TK::Id) return stepped(exec, std::string(first.s));
        --pos_;
        throw std::runtime_error("unexpected token " + std::string(first.s));
    }

    // The value of a name, which a "++" or "--" behind it steps, unless that stands in front of
    // another operand.
    ScriptValue stepped(bool exec, const std::string& name) {
        const ScriptValue before = get(name);
        const bool steps = symbol("++") || symbol("--");
        const bool operand = token(1).k == TK::Id || token(1).k == TK::Num ||
                             token(1).k == TK::Str || symbol("(", 1);
        if (asWritten_ || !steps || operand) return before;
        const double by = accept("++") ? 1.0 : -1.0;
        if (by < 0) need("--");
        if (exec) store(name, num(before) + by, false);
        return before;
    }

    ScriptValue called(bool exec, const std::string& name) {
        std::vector<ScriptValue> args;
        if (!symbol(")")) {
            do {
                args.push_back(expr(exec, 0));
            } while (accept(","));
        }
        need(")");
        if (!exec) return 0.0;
        // The language's own functions are the machine's: they see no more than their arguments.
        ScriptValue result;
        const Builtin* builtin = findBuiltin(lower(name), args.size());
        BuiltinCall call{sink_, context_, globals_, random_, args, result};
        if (builtin != nullptr && builtin->run(call)) return result;
        if (const auto user = this->call(name, args)) return *user;
        return host_.callScriptFunction(name, args, context_, unsupported_);
    }

    const std::vector<Tok>& tokens_;
    bool asWritten_;
    ScriptHost& host_;
    ScriptContext& context_;
    ScriptVariables& globals_;
    UnansweredNames& unsupported_;
    std::size_t pos_ = 0;
    std::vector<Values> scopes_;
    int depth_ = 0;
    int fuel_ = 50'000;
    // What the language's own functions take their steps from.
    ScriptLibrary library_{"/nonexistent", nullptr};
    std::int64_t steps_ = 1'000'000;
    std::mt19937 random_{0x0B0B0B};
    Exec sink_;
};

// What a run did: its calls, its report and the variables that it left.
struct Outcome {
    bool decided = true;
    std::string error;
    std::string story;
    bool operator==(const Outcome&) const = default;
};

namespace referee {

inline std::string told(const ScriptValue& value) {
    const auto* array = std::get_if<ScriptArrayPtr>(&value);
    return std::to_string(value.index()) + ":" + str(value) +
           (array != nullptr && *array ? std::to_string((*array)->indexed.size()) : "");
}

// Writes down every call, and forgets variables so that nothing may be remembered across one.
struct Witness : NamedHost {
    bool answer(const std::string& name, std::span<const ScriptValue> args, ScriptContext& context,
                UnansweredNames&, ScriptValue& result) override {
        story += name + "(";
        for (const ScriptValue& arg : args) story += told(arg) + ",";
        story += ")\n";
        if (name == "forget") context.local.clear();
        if (args.empty()) return false;
        result = args.back();
        return true;
    }
    std::string story;
};

// Runs work(context, unsupported) and completes the story by what it left behind.
template <typename Work>
Outcome observed(Witness& host, const ScriptVariables& globals, Work work) {
    Outcome outcome;
    ScriptContext context;
    UnansweredNames unsupported;
    try {
        outcome.error = work(context, unsupported);
    } catch (const BreakSignal&) {
        outcome.error = "break";
        unsupported = {};  // the machine's report is lost with its result
    } catch (const ContinueSignal&) {
        outcome.error = "continue";
        unsupported = {};
    } catch (const Referee::Undecided&) {
        outcome.decided = false;
    }
    outcome.story = std::move(host.story);
    for (const std::string& name : unsupported.all()) outcome.story += "? " + name + "\n";
    for (const auto* variables : {&std::as_const(context.local), &globals}) {
        const std::map<std::string, ScriptValue> sorted(variables->begin(), variables->end());
        for (const auto& [name, value] : sorted) outcome.story += name + "=" + told(value) + "\n";
        outcome.story += "--\n";
    }
    return outcome;
}

}  // namespace referee

// `text` as the command of a frame, with `host` as the machine's. It may end its function to define
// others.
inline Outcome byMachine(ScriptVM& vm, referee::Witness& host, const std::string& text) {
    vm.globals().clear();
    vm.setSteps(50'000);
    Outcome outcome = referee::observed(
        host, vm.globals(), [&](ScriptContext& context, UnansweredNames& unsupported) {
            ScriptRunResult result = vm.runAnimationCommand("", text, context);
            unsupported = std::move(result.unsupported);
            return result.error;
        });
    for (const char* limit : {"limit exceeded", "too l", "too many"}) {
        if (outcome.error.find(limit) != std::string::npos) outcome.decided = false;
    }
    if (outcome.error == "script recursion limit exceeded") outcome.decided = true;
    return outcome;
}

inline Outcome byReferee(const std::string& text, bool asWritten) {
    const std::string frame = "__tindrel_animation_frame";
    ScriptSources sources("/nonexistent", asWritten);
    PreprocessorState state;
    const Tokens tokens = lex(preprocessScript(
        sources, "/nonexistent/frame.c", "\nvoid " + frame + "(){\n" + text + "\n}\n", state));
    referee::Witness host;
    ScriptVariables globals;
    return referee::observed(
        host, globals, [&](ScriptContext& context, UnansweredNames& unsupported) -> std::string {
            unsupported = UnansweredNames(
                std::make_shared<const std::vector<std::string>>(state.unsupported));
            Referee referee(tokens.list, host, context, globals, unsupported, asWritten);
            try {
                if (!referee.call(frame, {})) return "generated animation function not found";
            } catch (const std::exception& error) {
                if (std::string_view(error.what()).find("too large") != std::string_view::npos) {
                    throw Referee::Undecided();
                }
                return error.what();
            }
            return {};
        });
}

}  // namespace port::script
