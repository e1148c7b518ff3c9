#pragma once

// What is worked out from the tables at its first use and kept.

namespace port {

// A port's tables never change. A program that fills them anew, to try one small game after the
// other, counts this up.
inline unsigned tablesEdition = 0;

// What `workOut` makes of the tables as they are; every lambda has a value of its own, which lasts
// as long as the tables.
template <class WorkOut>
const auto& derivedFromTables(WorkOut workOut) {
    static auto value = workOut();
    static unsigned edition = tablesEdition;
    if (edition != tablesEdition) {
        value = workOut();
        edition = tablesEdition;
    }
    return value;
}

}  // namespace port
