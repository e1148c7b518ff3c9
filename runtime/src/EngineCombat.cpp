// Who hits whom, and what it does.

#include "Engine.hpp"

namespace port {

// Nobody attacks yet.
void Engine::resolveCombat() {}

}  // namespace port
