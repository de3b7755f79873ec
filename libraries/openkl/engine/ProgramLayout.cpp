#include "engine/ProgramLayout.h"

#include "compiler/LinkedProgram.h"

namespace Tolen::OpenKL {

namespace {

KernelVariable MakeVariable(std::string_view name, const Type& type, int location, int firstWord) {
    KernelVariable variable;
    variable.name = name;
    variable.location = location;
    variable.firstWord = firstWord;
    variable.wordCount = type.CountScalars();
    variable.elementWords = type.IsArray() ? type.GetElement().CountScalars() : variable.wordCount;
    return variable;
}

/// One variable behind the other; locations are the places in the table.
template <class Table>
int Append(const Table& table, std::vector<KernelVariable>& variables) {
    int words = 0;
    for (const auto& entry : table) {
        int location = static_cast<int>(variables.size());
        variables.push_back(MakeVariable(entry.name, entry.type, location, words));
        words += variables.back().wordCount;
    }
    return words;
}

} // namespace

bool IsKeptInState(const LinkedStage& stage, int storage) {
    switch (storage) {
    case kStorage_Global:
    case kStorage_Const:
    case kStorage_Static:
        return true;
    case kStorage_RayAttribute:
        // No ray brings the values that a frame starts with.
        return stage.stage == kStage_Frame;
    default:
        return false;
    }
}

KernelLayout MakeLayout(const LinkedProgram& program, const LinkedStage& stage,
                        std::vector<int>& globalWords) {
    KernelLayout layout;
    layout.uniformWords = Append(program.uniforms, layout.uniforms);
    Append(program.blocks, layout.blocks);
    layout.attributeWords = Append(program.attributes, layout.attributes);
    layout.rayAttributeWords = Append(program.rayAttributes, layout.rayAttributes);
    layout.varyingWords = program.varyingScalarCount;
    for (const LinkedVarying& varying : program.varyings) {
        int location = static_cast<int>(layout.varyings.size());
        layout.varyings.push_back(
            MakeVariable(varying.name, varying.type, location, varying.scalarOffset));
    }
    layout.stateWords = kRayCountWords;
    for (const LinkedGlobal& global : stage.globals) {
        bool isKept = IsKeptInState(stage, global.storage);
        globalWords.push_back(isKept ? layout.stateWords : -1);
        layout.stateWords += isKept ? global.type.CountScalars() : 0;
    }
    return layout;
}

} // namespace Tolen::OpenKL
