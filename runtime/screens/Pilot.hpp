#pragma once

#include "Game.hpp"

namespace port {

// Who plays a run in place of the devices: a recording or a bot.
class Pilot {
  public:
    virtual ~Pilot() = default;
    // What of the settings is not this machine's.
    virtual void configure(RuntimeConfig&) const {}
    // Begins the game. False, said on the error stream, when this game cannot be played so.
    [[nodiscard]] virtual bool start(Game& game) = 0;
    // The input of the next pass.
    [[nodiscard]] virtual TickInput next(const Game& game) = 0;
    // After a pass: whether the run goes on.
    [[nodiscard]] virtual bool goesOn(const Game& game) = 0;
    // At the end of the run, whoever ended it: what came of it, said on the standard output or the
    // error stream, as an ExitCode.
    [[nodiscard]] virtual int result(const Game& game) = 0;
};

}  // namespace port
