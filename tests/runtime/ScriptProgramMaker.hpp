#pragma once

// Small programs made up of choices: valid, short-lived, and full of jumps out of places.

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

namespace port::script {

class ProgramMaker {
  public:
    ProgramMaker(std::function<unsigned()> choice, bool mends)
        : choice_(std::move(choice)), mends_(mends) {}

    // The body of a function and, behind its end, the functions f and g.
    std::string program() {
        std::string text = statements(3) + statements(2) + statements(3);
        text += "} mixed f(mixed a, int b) { if (b) int x = a; say(x); " + statements(2) +
                " return " + value(2) + "; }\n";
        text += "void g(c) { " + statements(2);
        return text;
    }

  private:
    std::size_t below(std::size_t count) { return choice_() % count; }
    template <std::size_t count>
    const char* oneOf(const char* const (&texts)[count]) {
        return texts[below(count)];
    }
    const char* name() { return oneOf({"a", "b", "c", "x", "y", "A"}); }

    // A name that may be stepped, also while another operand waits in it.
    std::string stepped() {
        const std::string text = name();
        const std::string behind = oneOf({"", "", "++", "--"});
        return below(4) ? text + behind : "(" + text + " - " + text + behind + ")";
    }

    std::string value(int depth) {
        const std::size_t kind = depth == 0 ? below(4) : below(14);
        const auto inner = [&] { return value(depth - 1); };
        switch (kind) {
            case 0:
                return oneOf({"0", "1", "2", "0x1F", "2.5", "true", "null()", "NULL", "\"\"", "'1'",
                              "\"long enough to live elsewhere\"", "array(2)", "\"}\""});
            case 1:
            case 2:
                return mends_ ? stepped() : name();
            case 3:
                return oneOf({"isempty(x)", "getlocalvar(\"a\")", "getglobalvar(\"b\")", "note()",
                              "forget()", "rand()"});
            case 4:
                return "(" + inner() + " ? " + inner() + " : " + inner() + ")";
            case 5:
                return oneOf({"!", "-", "~", "+"}) + inner();
            case 6:
            case 13:
                return "f(" + inner() + (below(2) ? ", " + inner() : "") + ")";
            case 7:
                return "say(" + inner() + ", " + inner() + ")";
            case 8:
                return "set" + std::string(oneOf({"local", "global"})) + "var(\"" + name() +
                       "\", " + inner() + ")";
            case 9:
                return "get(" + inner() + ", " + inner() + ")";
            default:
                return "(" + inner() + " " +
                       oneOf({"+",  "-",  "*", "/", "%", "&&", "||", "==", "!=", "<", ">",
                              "<=", ">=", "&", "|", "^", "<<", ">>", "+",  "&&", "||"}) +
                       " " + inner() + ")";
        }
    }

    std::string statements(int depth) {
        std::string text;
        for (std::size_t count = below(4); count > 0; --count) text += statement(depth) + "\n";
        return text;
    }

    std::string statement(int depth) {
        const std::size_t kind = depth == 0 ? below(7) : below(14);
        const auto body = [&] { return statement(depth - 1); };
        const std::string count = "n" + std::to_string(depth);
        switch (kind) {
            case 0:
            case 1:
                return (below(3) ? "" : "int ") + std::string(name()) + " " +
                       oneOf({"=", "=", "=", "+=", "-=", "*=", "/=", "%=", "|=", "<<="}) + " " +
                       value(2) + ";";
            case 2:
                if (mends_ && below(3) == 0) {
                    return "int " + std::string(name()) + ", " + name() + " = " + value(2) + ", " +
                           name() + ";";
                }
                return std::string(below(4) ? "" : "float ") + name() +
                       oneOf({"++;", "--;", ";", " += 1;"});
            case 3:
                return "say(" + value(2) + ");";
            case 4:
                return oneOf({"break;", "continue;", "return;", "return x + \"r\";", "break"});
            case 5:
                return oneOf({"f(a, b);", "f(x);", "g(y);"});
            case 6:
                return std::string("return ") + value(1) + ";";
            case 7:
                return "{ " + statements(depth - 1) + " }";
            case 8:
                return "if (" + value(2) + ") " + body() + " else " + body();
            case 9:
                return "if (" + value(2) + ") " + body();
            case 10:
                return count + " = 3; while (" + count + ") { " + count + "--; " + body() + " }";
            case 11:
                return count + " = 2; do { " + count + "--; " + body() + " } while (" + count +
                       " > 0 && " + value(1) + ");";
            case 12:
                return "for (int " + count + " = " + oneOf({"0", "0", "'1'"}) + "; " +
                       (below(2) ? count : "say(" + count + ")") + oneOf({" < 3; ", " < b; "}) +
                       count + "++) " + body();
            default: {
                std::string text = "switch (" + value(1) + ") { ";
                for (std::size_t cases = below(4); cases > 0; --cases) {
                    text += below(4) ? "case " + value(1) + ": " : std::string("default: ");
                    text += statements(depth - 1);
                    if (below(2)) text += "break; ";
                }
                return text + "}";
            }
        }
    }

    std::function<unsigned()> choice_;
    bool mends_;  // what a script that is taken as written breaks off at, too
};

// `choice()` yields any number; the same numbers make the same program.
inline std::string madeProgram(std::function<unsigned()> choice, bool mends = false) {
    return ProgramMaker(std::move(choice), mends).program();
}

}  // namespace port::script
