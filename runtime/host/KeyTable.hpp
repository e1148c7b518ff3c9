#pragma once

// Tables of rows that are found by a key. They are sorted when they are compiled, so that they can
// be written in the order in which they are best read.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "HostCall.hpp"
#include "TextFields.hpp"

namespace port {

template <class Row, std::size_t Count, class Key>
[[nodiscard]] constexpr std::array<Row, Count> sortedTable(std::array<Row, Count> rows, Key key) {
    std::ranges::sort(rows, {}, key);
    return rows;
}

// The row of that key in a sorted table; null for none.
template <class Row, std::size_t Count, class Key>
[[nodiscard]] const Row* findRow(const std::array<Row, Count>& rows, Key key,
                                 std::string_view wanted) {
    const auto found = std::ranges::lower_bound(rows, wanted, {}, key);
    return found != rows.end() && (*found).*key == wanted ? &*found : nullptr;
}

// A key as a script spells it, in the lower case of the tables and without an allocation. One that
// is longer than all keys of tables matches none.
class FoldedKey {
  public:
    explicit FoldedKey(std::string_view text) {
        if (text.size() > text_.size()) return;
        size_ = text.size();
        std::ranges::transform(text, text_.begin(), [](char c) { return foldAscii(c); });
    }
    operator std::string_view() const { return {text_.data(), size_}; }
    bool operator==(std::string_view key) const { return std::string_view(*this) == key; }

  private:
    std::array<char, 48> text_;
    std::size_t size_ = 0;
};

// How a row of a table came about: as games are answered in any case, or to meet what their scripts
// ask besides. Rows of the second kind are not there where a game is taken to the letter.
enum Reading : bool { PLAIN, MENDED };

// The row that argument `index` of a call names: as it was found when the call was compiled, or
// looked up now. Null for none.
template <class Row, std::size_t Count, class Key>
[[nodiscard]] const Row* namedRow(const std::array<Row, Count>& rows, Key key, HostCall& call,
                                  std::size_t index) {
    const bool known = call.row != HostTarget::kNoRow;
    const Row* row = known ? &rows[call.row] : findRow(rows, key, FoldedKey(call.text(index)));
    if constexpr (requires { row->mended; }) {
        if (row && row->mended && call.tick.config.asWritten) return nullptr;
    }
    return row;
}

// Finds that row when the call is compiled, if the argument is known by then.
template <class Row, std::size_t Count, class Key>
ScriptValue resolveRow(const std::array<Row, Count>& rows, Key key, HostCall& call,
                       std::size_t index) {
    const Row* row = findRow(rows, key, FoldedKey(call.text(index)));
    if (row) call.row = static_cast<std::size_t>(row - rows.data());
    return {};
}

}  // namespace port
