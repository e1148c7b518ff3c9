#pragma once

// The names that a function declares, for its compiler. A name is sure in a place if it is declared
// there whatever way has led to it; elsewhere the run has to tell.

#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace port::script {

class ScriptLocals {
  public:
    // `maybes`: what doubted() gave for an earlier attempt.
    explicit ScriptLocals(std::vector<std::int32_t> maybes) : maybes_(std::move(maybes)) {}

    // The register of a name, and of one that is sure here; null where there is none.
    [[nodiscard]] const std::uint16_t* find(std::int32_t name) const;
    [[nodiscard]] const std::uint16_t* sure(std::int32_t name) const;
    // Gives a parameter, which is sure everywhere, or another name its register.
    void bind(std::int32_t name, std::uint16_t place) { locals_[name] = {place, true}; }
    void declare(std::int32_t name, std::uint16_t place);
    // How many others there are.
    [[nodiscard]] std::size_t declared() const { return declared_; }

    // From here on a name that has a register is sure; false if it was.
    bool ensure(std::int32_t name);
    // To be kept where ways part; where they meet again, what became sure since then need not be.
    [[nodiscard]] std::size_t mark() const { return trail_.size(); }
    void unsure(std::size_t mark);

    // Notes that a name is used where it is not sure.
    void doubt(std::int32_t name) { doubted_.insert(name); }
    // Those of them that have a register, sorted.
    [[nodiscard]] std::vector<std::int32_t> doubted() const;

    [[nodiscard]] const std::vector<std::int32_t>& maybes() const { return maybes_; }
    // Where among those a name stands; -1 if it does not.
    [[nodiscard]] std::int32_t maybe(std::int32_t name) const;

  private:
    struct Local {
        std::uint16_t place = 0;
        bool sure = false;
    };

    std::vector<std::int32_t> maybes_;  // sorted
    std::unordered_map<std::int32_t, Local> locals_;
    std::size_t declared_ = 0;
    std::vector<std::int32_t> trail_;  // names in the order in which they became sure
    std::set<std::int32_t> doubted_;
};

}  // namespace port::script
