#pragma once

// How values and rows of the generated tables and of their JSON reports are spelled. Everything is
// appended to a text, and nothing depends on the locale.

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tindrel {

// How each byte of a text is written: as it is, behind a backslash (tab, line feed and carriage
// return as letters), or as a number in the form of the language.
enum class Escape : std::uint8_t { kNone, kBackslash, kOctal, kUnicode };
using Escapes = std::array<Escape, 256>;

// `backslash` lists the bytes behind a backslash; other control bytes are written by `control`,
// except those of `raw`.
constexpr Escapes escapes(std::string_view backslash, Escape control, std::string_view raw = {}) {
    Escapes all{};
    for (std::size_t c = 0; c < 0x20; ++c) all[c] = control;
    for (const char c : raw) all[static_cast<unsigned char>(c)] = Escape::kNone;
    for (const char c : backslash) all[static_cast<unsigned char>(c)] = Escape::kBackslash;
    return all;
}

void appendEscaped(std::string& out, std::string_view text, const Escapes& escapes);

// Fixed, at most three decimals and at least one: "1.5f", "2.0f".
void appendFixedFloat(std::string& out, float value);
// Up to eight digits: "0.5f", "1.0f", "1e+08f".
void appendShortFloat(std::string& out, float value);
// Nine digits, trailing zeros kept: "12.5000000f".
void appendShapeFloat(std::string& out, float value);
// Up to six digits without a suffix, as JSON wants it: "0.5", "1".
void appendJsonFloat(std::string& out, float value);

template <std::integral T>
void appendInteger(std::string& out, T value) {
    // Most numbers of a game are one digit.
    if (value >= 0 && value <= 9) {
        out += static_cast<char>('0' + value);
        return;
    }
    char digits[24];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, end);
}

// The spellings of the two tables. Compilers warn of raw control bytes, or drop them.
struct CharacterSpelling {
    static constexpr Escapes kEscapes = escapes("\t\n\r\"\\", Escape::kOctal);
    static void appendFloat(std::string& out, float value) { appendFixedFloat(out, value); }
};
struct StageSpelling {
    static constexpr Escapes kEscapes = escapes("\n\"\\", Escape::kOctal, "\t\r");
    static void appendFloat(std::string& out, float value) { appendShortFloat(out, value); }
};
// The JSON reports beside the tables.
struct JsonSpelling {
    static constexpr Escapes kEscapes = escapes("\t\n\r\"\\", Escape::kUnicode);
    static void appendFloat(std::string& out, float value) { appendJsonFloat(out, value); }
};

// Text that stands as it is: an array's name, a nested row.
struct Verbatim {
    std::string_view text;
};

template <class Spelling, class T>
void appendValue(std::string& out, const T& value) {
    if constexpr (std::same_as<T, Verbatim>) {
        out += value.text;
    } else if constexpr (std::same_as<T, bool>) {
        out += value ? "true" : "false";
    } else if constexpr (std::integral<T>) {
        appendInteger(out, value);
    } else if constexpr (std::same_as<T, float>) {
        Spelling::appendFloat(out, value);
    } else {
        out += '"';
        appendEscaped(out, value, Spelling::kEscapes);
        out += '"';
    }
}

// Values between braces. The separator stands between all of them, nested rows included.
template <class Spelling>
class Row {
  public:
    Row(std::string& out, std::string_view separator) : out_(out), separator_(separator) {
        out_ += '{';
    }

    template <class... T>
    Row& fields(const T&... values) {
        (field(values), ...);
        return *this;
    }

    // One field, written by `append()`.
    template <class Append>
    Row& nested(Append append) {
        separate();
        append();
        return *this;
    }

    // An array, by its name, and its length.
    Row& listed(std::string_view prefix, std::string_view name, std::size_t count) {
        return nested([&] { out_.append(prefix).append(name); }).fields(count);
    }

    void close() { out_ += '}'; }

  private:
    template <class T>
    void field(const T& value) {
        separate();
        appendValue<Spelling>(out_, value);
    }

    void separate() {
        if (!first_) out_ += separator_;
        first_ = false;
    }

    std::string& out_;
    std::string_view separator_;
    bool first_ = true;
};

// The elements, each written by `appendElement(element)`, with commas between them.
template <class List, class Append>
void appendList(std::string& out, const List& list, Append appendElement) {
    bool first = true;
    for (const auto& element : list) {
        if (!first) out += ',';
        first = false;
        appendElement(element);
    }
}

// One JSON object without blanks. Lists and nested objects are written by the caller behind name().
template <class Spelling>
class JsonObject {
  public:
    explicit JsonObject(std::string& out) : out_(out) { out_ += '{'; }

    JsonObject& name(std::string_view name) {
        if (!first_) out_ += ',';
        first_ = false;
        out_ += '"';
        out_ += name;
        out_ += "\":";
        return *this;
    }

    template <class T>
    JsonObject& add(std::string_view key, const T& value) {
        name(key);
        appendValue<Spelling>(out_, value);
        return *this;
    }

    template <class... T>
    JsonObject& addList(std::string_view key, const T&... values) {
        name(key);
        out_ += '[';
        bool first = true;
        ((out_ += first ? "" : ",", first = false, appendValue<Spelling>(out_, values)), ...);
        out_ += ']';
        return *this;
    }

    template <class List, class Append>
    JsonObject& addEach(std::string_view key, const List& list, Append appendElement) {
        name(key);
        out_ += '[';
        appendList(out_, list, appendElement);
        out_ += ']';
        return *this;
    }

    void close() { out_ += '}'; }

  private:
    std::string& out_;
    bool first_ = true;
};

}  // namespace tindrel
