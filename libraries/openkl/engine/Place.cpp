#include "engine/Place.h"

namespace Tolen::OpenKL {

namespace {

void AddScalarBases(const Type& type, std::vector<BaseType>& bases) {
    if (type.IsArray()) {
        for (int i = 0; i < type.arrayLength; ++i) {
            AddScalarBases(type.GetElement(), bases);
        }
    } else if (type.IsStruct()) {
        for (const StructField& field : type.structure->fields) {
            AddScalarBases(field.type, bases);
        }
    } else {
        bases.insert(bases.end(), static_cast<std::size_t>(type.CountScalars()), type.base);
    }
}

} // namespace

std::vector<BaseType> GetScalarBases(const Type& type) {
    std::vector<BaseType> bases;
    AddScalarBases(type, bases);
    return bases;
}

Values PlaceAccess::Load(const Place& place) {
    std::vector<BaseType> bases = GetScalarBases(place.type);
    Values values;
    if (place.isSwizzled) {
        for (std::uint8_t component : place.swizzle) {
            values.push_back(_LoadWord(place, place.offset + component, place.type.base));
        }
        return values;
    }
    for (std::uint32_t i = 0; i < bases.size(); ++i) {
        values.push_back(_LoadWord(place, place.offset + i, bases[i]));
    }
    return values;
}

void PlaceAccess::Store(const Place& place, const Values& values) {
    for (std::uint32_t i = 0; i < values.size(); ++i) {
        std::uint32_t position = place.isSwizzled ? place.swizzle[i] : i;
        _StoreWord(place, place.offset + position, values[i]);
    }
}

/// Booleans are 0 or 1 outside of the code and masks inside.
ValueId PlaceAccess::_FromStoredWord(ValueId word, BaseType base) {
    return base == kBase_Bool ? _builder.Do(Operation::INotEqual, word, _builder.Int(0)) : word;
}

ValueId PlaceAccess::_LoadFixed(const WordStore& store, std::uint32_t position, BaseType base) {
    std::uint32_t word = store.first + position;
    switch (store.kind) {
    case WordStore::kVariables:
        return _builder.LoadVariable(word);
    case WordStore::kArray:
        return _builder.LoadArray(store.first, _builder.Constant(position));
    case WordStore::kUniforms:
        return _FromStoredWord(_builder.LoadTable(kTable_Uniforms, word, _builder.Int(0)), base);
    case WordStore::kState:
        return _FromStoredWord(_builder.LoadTable(kTable_State, word, _builder.Int(0)), base);
    case WordStore::kInterpolated:
        return _FromStoredWord(_builder.Load(IrKind::LoadInterpolated, word), base);
    case WordStore::kRayAttributes:
        return _FromStoredWord(_builder.Load(IrKind::LoadRayAttribute, word), base);
    case WordStore::kValues:
        break;
    }
    return store.values[position];
}

ValueId PlaceAccess::_LoadWord(const Place& place, std::uint32_t position, BaseType base) {
    if (place.terms.empty()) {
        return _LoadFixed(*place.pStore, position, base);
    }
    switch (place.pStore->kind) {
    case WordStore::kArray:
        return _builder.LoadArray(place.pStore->first, _GetAddress(place, position));
    case WordStore::kUniforms:
        return _FromStoredWord(_builder.LoadTable(kTable_Uniforms, place.pStore->first + position,
                                                  _GetAddress(place, 0)),
                               base);
    case WordStore::kState:
        return _FromStoredWord(
            _builder.LoadTable(kTable_State, place.pStore->first + position, _GetAddress(place, 0)),
            base);
    default:
        return _LoadChosen(place, position, 0, base);
    }
}

/// Words that have no address: picks among all that the subscripts may mean.
ValueId PlaceAccess::_LoadChosen(const Place& place, std::uint32_t position, std::size_t term,
                                 BaseType base) {
    if (term == place.terms.size()) {
        return _LoadFixed(*place.pStore, position, base);
    }
    const Place::Term& subscript = place.terms[term];
    ValueId chosen = _LoadChosen(place, position, term + 1, base);
    for (std::uint32_t element = 1; element < subscript.count; ++element) {
        ValueId isFurther =
            _builder.Do(Operation::ILessEqual, _builder.Int(static_cast<std::int32_t>(element)),
                        subscript.index);
        ValueId other = _LoadChosen(place, position + element * subscript.stride, term + 1, base);
        chosen = _builder.Do(Operation::Select, isFurther, other, chosen);
    }
    return chosen;
}

void PlaceAccess::_StoreWord(const Place& place, std::uint32_t position, ValueId value) {
    const WordStore& store = *place.pStore;
    if (store.kind == WordStore::kArray) {
        _builder.StoreArray(store.first, _GetAddress(place, position), value);
    } else if (place.terms.empty()) {
        _builder.StoreVariable(store.first + position, value);
    } else {
        _StoreChosen(place, position, 0, kNone, value);
    }
}

void PlaceAccess::_StoreChosen(const Place& place, std::uint32_t position, std::size_t term,
                               ValueId condition, ValueId value) {
    if (term == place.terms.size()) {
        std::uint32_t variable = place.pStore->first + position;
        ValueId old = _builder.LoadVariable(variable);
        _builder.StoreVariable(variable, _builder.Do(Operation::Select, condition, value, old));
        return;
    }
    const Place::Term& subscript = place.terms[term];
    for (std::uint32_t element = 0; element < subscript.count; ++element) {
        ValueId isHere = _IsAt(subscript, element);
        ValueId both =
            condition == kNone ? isHere : _builder.Do(Operation::IAnd, condition, isHere);
        _StoreChosen(place, position + element * subscript.stride, term + 1, both, value);
    }
}

/// Whether a subscript means @p element; the outermost elements stand for all beyond them.
ValueId PlaceAccess::_IsAt(const Place::Term& term, std::uint32_t element) {
    ValueId number = _builder.Int(static_cast<std::int32_t>(element));
    if (term.count == 1) {
        return _builder.Mask(true);
    }
    if (element == 0) {
        return _builder.Do(Operation::ILessEqual, term.index, number);
    }
    if (element + 1 == term.count) {
        return _builder.Do(Operation::ILessEqual, number, term.index);
    }
    return _builder.Do(Operation::IEqual, term.index, number);
}

ValueId PlaceAccess::_GetAddress(const Place& place, std::uint32_t position) {
    ValueId address = kNone;
    for (const Place::Term& term : place.terms) {
        ValueId last = _builder.Int(static_cast<std::int32_t>(term.count) - 1);
        ValueId index = _builder.Do(Operation::IMax, term.index, _builder.Int(0));
        index = _builder.Do(Operation::IMin, index, last);
        index = _builder.Do(Operation::IMul, index,
                            _builder.Int(static_cast<std::int32_t>(term.stride)));
        address = address == kNone ? index : _builder.Do(Operation::IAdd, address, index);
    }
    ValueId fixed = _builder.Constant(position);
    if (address == kNone) {
        return fixed;
    }
    return position == 0 ? address : _builder.Do(Operation::IAdd, address, fixed);
}

} // namespace Tolen::OpenKL
