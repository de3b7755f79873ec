#pragma once

#include "compiler/CheckContext.h"
#include "compiler/CompiledShader.h"
#include "compiler/DeclarationParser.h"
#include "compiler/ExpressionParser.h"
#include "compiler/StatementParser.h"
#include "compiler/TokenStream.h"

#include <cstddef>
#include <optional>
#include <unordered_set>
#include <vector>

namespace Tolen::OpenKL {

/// Reads a whole text into a CompiledShader. The bodies of functions are read last, so that code
/// sees every global and every function wherever they are declared.
class GlobalParser {
public:
    /// @param shader its stage and arena; takes the globals and functions
    GlobalParser(CheckContext& context, TokenStream& tokens, CompiledShader& shader);

    void Parse();

private:
    /// What stands ahead of the type of a global.
    struct Qualifiers {
        int line = 0;
        Storage storage = kStorage_Global;
        VaryingKind varyingKind = kVarying_Plain;
    };

    /// A body that is still to be read.
    struct PendingBody {
        Function* function;
        std::size_t position; ///< of its "{"
    };

    /// @return false when the tokens made no declaration
    bool _ParseDeclaration();
    bool _ParseQualifiers(Qualifiers& qualifiers);
    bool _ParseStruct(const Qualifiers& qualifiers);
    bool _ParseFields(std::vector<StructField>& fields);
    bool _ParseUniformBlock();
    bool _ParseVariables(const Qualifiers& qualifiers, const Type& type);
    bool _ParseVariable(const Qualifiers& qualifiers, const Type& type);
    void _DeclareGlobal(Variable* variable);
    bool _MergeGlobal(Variable* known, const Variable* again);
    bool _CheckStorage(const Variable& variable);

    bool _ParseFunction(const Qualifiers& qualifiers, const Type& returnType);
    bool _ParseParameters(std::vector<Variable*>& parameters);
    bool _ParseParameter(std::vector<Variable*>& parameters);
    Function* _DeclareFunction(const Token& name, const Type& returnType,
                               std::span<Variable* const> parameters, bool isDefinition);
    void _CheckEntry(const Function& function);
    void _ParseBody(const PendingBody& pending);

    CheckContext& _context;
    TokenStream& _tokens;
    CompiledShader& _shader;
    ExpressionParser _expressions;
    DeclarationParser _declarations;
    StatementParser _statements;
    BodyRecord _initializers;
    std::vector<PendingBody> _bodies;
    std::unordered_set<const Function*> _defined;
};

} // namespace Tolen::OpenKL
