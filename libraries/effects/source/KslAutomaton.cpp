#include "KslAutomaton.h"

#include "KslAutomatonBuilder.h"

namespace Tolen::Effects {

KslAutomaton::KslAutomaton(std::span<const KslRule> rules) { KslAutomatonBuilder(*this, rules); }

} // namespace Tolen::Effects
