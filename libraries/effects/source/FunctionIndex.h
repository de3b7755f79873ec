#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace Tolen::Effects {

class FunctionDefinition;
class Module;

/// The functions of a module that stand outside of classes, by name. It shows the module as it was
/// when the index was made.
class FunctionIndex {
public:
    explicit FunctionIndex(const Module* module);

    /// All definitions of a name in source order, borrowed; empty for an unknown name.
    const std::vector<FunctionDefinition*>& Find(const std::string& name) const;

private:
    std::unordered_map<std::string, std::vector<FunctionDefinition*>> _definitions;
};

} // namespace Tolen::Effects
