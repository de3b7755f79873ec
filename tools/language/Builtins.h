#pragma once

#include <string>
#include <vector>

namespace Tolen::Language {

/// A name that the language or the stages give without a declaration.
struct Builtin {
    enum Kind { kKind_Keyword, kKind_Type, kKind_Function, kKind_Variable };

    Kind kind = kKind_Function;
    std::string name;
    /// As a reader would like to see them, such as "vec3 reflect(vec3 incident, vec3 normal)";
    /// "vec", "ivec", "bvec" and "mat" stand for every size of these. Functions have one or more,
    /// variables one, others none.
    std::vector<std::string> signatures;
    std::string stages;        ///< such as "frame, ray and prefix"; empty: all of them
    std::string documentation; ///< one or two sentences
};

/// All of them, by name. Made once; the reference stays.
const std::vector<Builtin>& GetBuiltins();
/// @return null when there is none
const Builtin* FindBuiltin(const std::string& name);

} // namespace Tolen::Language
