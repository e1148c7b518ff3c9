#pragma once

// How values and rows of the generated tables and of their JSON reports are spelled. Everything is
// appended to a text, and nothing depends on the locale.

#include <charconv>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace tindrel {

// Appends `text`, each byte of `escaped` in it written with a backslash (tab, line feed and
// carriage return as letters).
void appendEscaped(std::string& out, std::string_view text, std::string_view escaped);

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
    char digits[24];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, end);
}

// The spellings of the two tables.
struct CharacterSpelling {
    static constexpr std::string_view kEscaped = "\t\n\r\"\\";
    static void appendFloat(std::string& out, float value) { appendFixedFloat(out, value); }
};
struct StageSpelling {
    static constexpr std::string_view kEscaped = "\n\"\\";
    static void appendFloat(std::string& out, float value) { appendShortFloat(out, value); }
};
// The JSON report beside a table: its escapes, but floats of its own.
template <class Table>
struct JsonSpelling {
    static constexpr std::string_view kEscaped = Table::kEscaped;
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
        appendEscaped(out, value, Spelling::kEscaped);
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

    // The members of one field, in a row of their own.
    template <class... T>
    Row& nested(std::string_view separator, const T&... values) {
        separate();
        Row(out_, separator).fields(values...).close();
        return *this;
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
