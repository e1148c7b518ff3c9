#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "Pilot.hpp"
#include "Recording.hpp"

namespace port {

// Plays a recording, and holds the run against its hashes. Leaves no trace of its own.
class Replay final : public Pilot {
  public:
    explicit Replay(Recording recording) : recording_(std::move(recording)) {}

    void configure(RuntimeConfig& config) const override;
    bool start(Game& game) override;
    TickInput next(const Game& game) override;
    bool goesOn(const Game& game) override;
    int result(const Game& game) override;

  private:
    // The one that was continued in this pass.
    [[nodiscard]] std::optional<SavedGame> findSave() const;

    Recording recording_;
    std::uint64_t pass_ = 0;
    std::size_t nextChange_ = 0, nextHash_ = 0;
    TickInput input_;
    bool differs_ = false;
};

}  // namespace port
