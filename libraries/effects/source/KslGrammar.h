#pragma once

#include "KslAutomaton.h"

#include <span>

namespace Tolen::Effects {

/// The rules of KLSL, that of the start symbol first.
std::span<const KslRule> GetKslRules();

/// The automaton of these rules, built when it is first asked for. Safe to ask for from several
/// threads; it never changes.
const KslAutomaton& GetKslAutomaton();

} // namespace Tolen::Effects
