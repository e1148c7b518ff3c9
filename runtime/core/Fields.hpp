#pragma once

// A record lists its fields once, at its end:
//
//     struct Camera {
//         float x = 0;
//         bool fixed = false;
//         PORT_FIELDS(x, fixed)
//     };
//
// Whatever goes over all fields (hash, comparison, text) is made from that list by
// `Camera::visitFields(camera, visit)`, which calls visit("x", camera.x) and so on.
// PORT_DERIVED_FIELDS(Base, ...) visits those of its base first. listsAllFields<Camera>() tells
// whether the list is whole.

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#define PORT_VISIT_FIELD(name) visit(#name, self.name);

#define PORT_FIELDS(...)                                 \
    template <class Self, class Visit>                   \
    static void visitFields(Self& self, Visit&& visit) { \
        PORT_EACH(PORT_VISIT_FIELD, __VA_ARGS__)         \
    }                                                    \
    static constexpr std::size_t kListedFields = ::port::fields::countNames(#__VA_ARGS__);

#define PORT_DERIVED_FIELDS(Base, ...)                   \
    template <class Self, class Visit>                   \
    static void visitFields(Self& self, Visit&& visit) { \
        Base::visitFields(self, visit);                  \
        PORT_EACH(PORT_VISIT_FIELD, __VA_ARGS__)         \
    }                                                    \
    static constexpr std::size_t kListedFields = 1 + ::port::fields::countNames(#__VA_ARGS__);

// PORT_EACH(macro, a, b, ...): macro(a) macro(b) ..., for up to 342 of them.
#define PORT_EACH(macro, ...) __VA_OPT__(PORT_RESCAN(PORT_EACH_STEP(macro, __VA_ARGS__)))
#define PORT_EACH_STEP(macro, first, ...) \
    macro(first) __VA_OPT__(PORT_EACH_AGAIN PORT_PARENS(macro, __VA_ARGS__))
#define PORT_EACH_AGAIN() PORT_EACH_STEP
#define PORT_PARENS ()
#define PORT_RESCAN(...) PORT_RESCAN4(PORT_RESCAN4(PORT_RESCAN4(PORT_RESCAN4(__VA_ARGS__))))
#define PORT_RESCAN4(...) PORT_RESCAN3(PORT_RESCAN3(PORT_RESCAN3(PORT_RESCAN3(__VA_ARGS__))))
#define PORT_RESCAN3(...) PORT_RESCAN2(PORT_RESCAN2(PORT_RESCAN2(PORT_RESCAN2(__VA_ARGS__))))
#define PORT_RESCAN2(...) PORT_RESCAN1(PORT_RESCAN1(PORT_RESCAN1(PORT_RESCAN1(__VA_ARGS__))))
#define PORT_RESCAN1(...) __VA_ARGS__

namespace port {
namespace fields {

// Of a list with commas between them.
constexpr std::size_t countNames(std::string_view list) {
    std::size_t count = list.empty() ? 0 : 1;
    for (const char c : list) count += c == ',' ? 1 : 0;
    return count;
}

// Stands for a field of any type where only the number of fields counts.
struct Any {
    template <class Type>
    operator Type() const;
};

template <class Record, std::size_t... Each>
constexpr bool takes(std::index_sequence<Each...>) {
    return requires {
        Record{(static_cast<void>(Each), Any{})...};
    };
}

// The largest number of values that the braces of an aggregate take; a base counts as one.
template <class Record, std::size_t Count = 0>
constexpr std::size_t count() {
    if constexpr (takes<Record>(std::make_index_sequence<Count + 1>())) {
        return count<Record, Count + 1>();
    } else {
        return Count;
    }
}

}  // namespace fields

template <class Record>
concept HasFields = requires {
    Record::kListedFields;
};

// Arrays among the fields must be std::array, which the braces take as one.
template <HasFields Record>
constexpr bool listsAllFields() {
    return fields::count<Record>() == Record::kListedFields;
}

}  // namespace port
