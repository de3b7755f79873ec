#pragma once

#include "engine/ValueMath.h"

#include <array>

namespace Tolen::OpenKL {

/// Where the words of a variable are.
struct WordStore {
    enum Kind : std::uint8_t {
        kVariables,     ///< IrVariables from first on
        kArray,         ///< elements of IrArray first
        kUniforms,      ///< words of the uniform table from first on; read-only, as all that follow
        kState,         ///< words of the state from first on
        kInterpolated,  ///< interpolated words from first on
        kRayAttributes, ///< incoming ray attribute words from first on
        kValues,        ///< the values themselves
    };
    Kind kind = kValues;
    std::uint32_t first = 0;
    Values values;
};

/// A variable or a part of one.
struct Place {
    /// A subscript whose value is not known.
    struct Term {
        ValueId index;
        std::uint32_t count;
        std::uint32_t stride; ///< words
    };

    const WordStore* pStore = nullptr;
    Type type; ///< of the whole; with a swizzle that of the vector
    std::uint32_t offset = 0;
    std::vector<Term> terms;
    bool isSwizzled = false;
    std::vector<std::uint8_t> swizzle;
};

/// The base type of every scalar of a value, in memory order.
std::vector<BaseType> GetScalarBases(const Type& type);

/// Reads and writes places.
class PlaceAccess {
public:
    explicit PlaceAccess(IrBuilder& builder) : _builder(builder) {}

    Values Load(const Place& place);
    void Store(const Place& place, const Values& values);

private:
    ValueId _LoadWord(const Place& place, std::uint32_t position, BaseType base);
    ValueId _LoadFixed(const WordStore& store, std::uint32_t position, BaseType base);
    ValueId _LoadChosen(const Place& place, std::uint32_t position, std::size_t term,
                        BaseType base);
    void _StoreWord(const Place& place, std::uint32_t position, ValueId value);
    void _StoreChosen(const Place& place, std::uint32_t position, std::size_t term,
                      ValueId condition, ValueId value);
    /// The sum of the subscripts, each brought into its range, and of @p position.
    ValueId _GetAddress(const Place& place, std::uint32_t position);
    ValueId _IsAt(const Place::Term& term, std::uint32_t element);
    ValueId _FromStoredWord(ValueId word, BaseType base);

    IrBuilder& _builder;
};

} // namespace Tolen::OpenKL
