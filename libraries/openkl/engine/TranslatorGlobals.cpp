#include "engine/Translator.h"

#include <cstddef>

namespace Tolen::OpenKL {

namespace {

/// Arrays of more words than this are addressed, even where every subscript is known.
constexpr int kMaxSeparateWords = 64;

} // namespace

WordStore Translator::_MakeStore(const Type& type, bool isDynamic) {
    auto words = static_cast<std::uint32_t>(type.CountScalars());
    bool hasArray = isDynamic || (type.IsArray() || type.IsStruct());
    WordStore store;
    if (isDynamic || (hasArray && words > kMaxSeparateWords)) {
        store.kind = WordStore::kArray;
        store.first = _builder.AddArray(words);
    } else {
        store.kind = WordStore::kVariables;
        store.first = _builder.AddVariables(words);
    }
    return store;
}

void Translator::_Fill(const WordStore& store, const Type& type, const Values& values) {
    Place place;
    place.pStore = &store;
    place.type = type;
    _access.Store(place, values);
}

void Translator::_FillWithZeros(const WordStore& store, const Type& type) {
    auto words = static_cast<std::uint32_t>(type.CountScalars());
    if (store.kind == WordStore::kArray) {
        _builder.FillArray(store.first, _builder.Int(0));
        return;
    }
    for (std::uint32_t i = 0; i < words; ++i) {
        _builder.StoreVariable(store.first + i, _builder.Int(0));
    }
}

Values Translator::_LoadLanes(std::initializer_list<LaneInput> inputs, Entry entry) {
    Values values;
    for (LaneInput input : inputs) {
        values.push_back(entry == Entry::Setup
                             ? _builder.Int(0)
                             : _builder.Load(IrKind::LoadLane, static_cast<std::uint32_t>(input)));
    }
    return values;
}

WordStore Translator::_MakeBuiltin(BuiltinVariable builtin, Entry entry) {
    WordStore store;
    auto lanes = [&](std::initializer_list<LaneInput> inputs) {
        store.values = _LoadLanes(inputs, entry);
    };
    auto masks = [&](LaneInput input) {
        lanes({input});
        store.values = _math.Convert(kBase_Int, kBase_Bool, store.values);
    };
    auto constants = [&](std::size_t byte, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            store.values.push_back(
                _builder.Load(IrKind::LoadConstant, static_cast<std::uint32_t>(byte / 4) + i));
        }
    };
    switch (builtin) {
    case kVariable_PrimitiveTransformMatrix:
        constants(offsetof(BatchConstants, transform), 16);
        break;
    case kVariable_PrimitiveTransformMatrixInverseTranspose:
        constants(offsetof(BatchConstants, transformInverseTranspose), 16);
        break;
    case kVariable_Resolution:
        constants(offsetof(BatchConstants, resolution), 2);
        break;
    case kVariable_SampleCount:
        constants(offsetof(BatchConstants, sampleCount), 1);
        break;
    case kVariable_Time:
        constants(offsetof(BatchConstants, time), 1);
        break;
    case kVariable_PixelCoord:
        lanes({kLaneInput_PixelCoordX, kLaneInput_PixelCoordY});
        break;
    case kVariable_SampleIndex:
        lanes({kLaneInput_SampleIndex});
        break;
    case kVariable_RayOrigin:
        lanes({kLaneInput_RayOriginX, kLaneInput_RayOriginY, kLaneInput_RayOriginZ});
        break;
    case kVariable_RayDirection:
        lanes({kLaneInput_RayDirectionX, kLaneInput_RayDirectionY, kLaneInput_RayDirectionZ});
        break;
    case kVariable_RayDepth:
        lanes({kLaneInput_RayDepth});
        break;
    case kVariable_RayClass:
        lanes({kLaneInput_RayClass});
        break;
    case kVariable_HitDistance:
        lanes({kLaneInput_HitDistance});
        break;
    case kVariable_HitPosition:
        lanes({kLaneInput_HitPositionX, kLaneInput_HitPositionY, kLaneInput_HitPositionZ});
        break;
    case kVariable_HitNormal:
        lanes({kLaneInput_HitNormalX, kLaneInput_HitNormalY, kLaneInput_HitNormalZ});
        break;
    case kVariable_HitFront:
        masks(kLaneInput_HitFront);
        break;
    case kVariable_HitBarycentric:
        lanes({kLaneInput_HitBarycentricX, kLaneInput_HitBarycentricY});
        break;
    case kVariable_HitPrimitive:
        lanes({kLaneInput_HitPrimitive});
        break;
    case kVariable_Missed:
        masks(kLaneInput_Missed);
        break;
    case kVariable_Position:
    case kVariable_OutputRayCount:
    case kVariable_None:
        break;
    }
    return store;
}

/// Built-ins are loaded once, at the start; what nothing uses is dropped later.
void Translator::_MakeBuiltins(Entry entry) {
    for (int i = 0; i < kVariable_Count; ++i) {
        _builtins[i] = _MakeBuiltin(static_cast<BuiltinVariable>(i), entry);
    }
    if (_stage.stage == kStage_Vertex) {
        WordStore& position = _builtins[kVariable_Position];
        Type type = MakeVector(kBase_Float, 4);
        position = _MakeStore(type, false);
        _FillWithZeros(position, type);
    } else {
        _MakeRayCount(entry);
    }
}

void Translator::_MakeRayCount(Entry entry) {
    bool isWritten = entry == Entry::Setup;
    for (const Variable* variable : _usage.written) {
        isWritten |= variable->builtin == kVariable_OutputRayCount;
    }
    WordStore& store = _builtins[kVariable_OutputRayCount];
    if (!isWritten) {
        store.kind = WordStore::kState;
        return;
    }
    bool isFrame = _stage.stage == kStage_Frame;
    Type type = kInt;
    type.arrayLength = isFrame ? 0 : kRayCountWords;
    store = _MakeStore(type, !isFrame);
    Values values;
    for (std::uint32_t i = 0; i < (isFrame ? 1u : kRayCountWords); ++i) {
        values.push_back(entry == Entry::Setup
                             ? _builder.Int(1)
                             : _builder.LoadTable(kTable_State, i, _builder.Int(0)));
    }
    _Fill(store, type, values);
}

void Translator::_MakeGlobals(Entry entry) {
    std::vector<bool> isWritten(_stage.globals.size());
    std::vector<bool> isDynamic(_stage.globals.size());
    auto mark = [&](const std::unordered_set<const Variable*>& variables,
                    std::vector<bool>& marks) {
        for (const Variable* variable : variables) {
            if (auto entryOf = _stage.globalOf.find(variable); entryOf != _stage.globalOf.end()) {
                marks[entryOf->second] = true;
            }
        }
    };
    mark(_usage.written, isWritten);
    mark(_usage.dynamicallyIndexed, isDynamic);
    // An initialiser may use the globals ahead of it.
    for (std::size_t i = 0; i < _stage.globals.size(); ++i) {
        _globals.emplace_back();
        _MakeGlobal(entry, i, isWritten[i], isDynamic[i]);
    }
}

void Translator::_MakeGlobal(Entry entry, std::size_t index, bool isWritten, bool isDynamic) {
    const LinkedGlobal& global = _stage.globals[index];
    WordStore& store = _globals[index];
    bool isSetup = entry == Entry::Setup;
    auto readOnly = [&](WordStore::Kind kind, int first) {
        store.kind = kind;
        store.first = static_cast<std::uint32_t>(first);
    };
    auto variableFrom = [&](WordStore::Kind kind, int first) {
        WordStore source;
        source.kind = kind;
        source.first = static_cast<std::uint32_t>(first);
        Place place;
        place.pStore = &source;
        place.type = global.type;
        store = _MakeStore(global.type, isDynamic);
        _Fill(store, global.type, _access.Load(place));
    };
    auto variable = [&]() {
        store = _MakeStore(global.type, isDynamic);
        if (global.initializer != nullptr && isSetup) {
            _Fill(store, global.type, _Evaluate(*global.initializer));
        } else {
            _FillWithZeros(store, global.type);
        }
    };
    auto at = static_cast<std::size_t>(global.index);
    switch (global.storage) {
    case kStorage_Uniform:
    case kStorage_MutableUniform:
        readOnly(WordStore::kUniforms, _layout.uniforms[at].firstWord);
        break;
    case kStorage_Attribute:
        if (isSetup) {
            variable();
        } else {
            readOnly(WordStore::kInterpolated, _layout.attributes[at].firstWord);
        }
        break;
    case kStorage_Varying:
        // One that no vertex shader gives is read by nothing.
        if (isSetup || _stage.stage == kStage_Vertex || global.index < 0) {
            variable();
        } else if (isWritten) {
            variableFrom(WordStore::kInterpolated, _layout.varyings[at].firstWord);
        } else {
            readOnly(WordStore::kInterpolated, _layout.varyings[at].firstWord);
        }
        break;
    case kStorage_RayAttribute: {
        bool isFrame = _stage.stage == kStage_Frame;
        auto kind = isFrame ? WordStore::kState : WordStore::kRayAttributes;
        int first = isFrame ? _globalWords[index] : _layout.rayAttributes[at].firstWord;
        if (isSetup) {
            variable();
        } else if (isWritten) {
            variableFrom(kind, first);
        } else {
            readOnly(kind, first);
        }
        break;
    }
    case kStorage_Global:
    case kStorage_Const:
    case kStorage_Static:
        if (isSetup) {
            variable();
        } else if (isWritten) {
            variableFrom(WordStore::kState, _globalWords[index]);
        } else {
            readOnly(WordStore::kState, _globalWords[index]);
        }
        break;
    default:
        break;
    }
}

/// Stores a variable in the words from @p first on.
void Translator::_StoreWords(IrKind kind, std::uint32_t first, const WordStore& source,
                             const Type& type) {
    Place place;
    place.pStore = &source;
    place.type = type;
    const std::vector<BaseType> bases = GetScalarBases(type);
    const Values values = _access.Load(place);
    for (std::uint32_t i = 0; i < values.size(); ++i) {
        ValueId value = values[i];
        if (bases[i] == kBase_Bool) {
            value = _builder.Do(Operation::MaskToI, value);
        }
        _builder.Store(kind, first + i, value);
    }
}

void Translator::_StoreState() {
    const auto store = [this](const WordStore& source, const Type& type, std::uint32_t word) {
        _StoreWords(IrKind::StoreState, word, source, type);
    };
    if (_stage.stage == kStage_Frame) {
        store(_builtins[kVariable_OutputRayCount], kInt, 0);
    } else if (_stage.stage != kStage_Vertex) {
        Type type = kInt;
        type.arrayLength = kRayCountWords;
        store(_builtins[kVariable_OutputRayCount], type, 0);
    }
    for (std::size_t i = 0; i < _stage.globals.size(); ++i) {
        if (_globalWords[i] >= 0) {
            store(_globals[i], _stage.globals[i].type, static_cast<std::uint32_t>(_globalWords[i]));
        }
    }
}

/// The rows of the vertex stage: the position, then the record of varyings.
void Translator::_StoreOutputs() {
    const auto store = [this](const WordStore& source, const Type& type, std::uint32_t row) {
        _StoreWords(IrKind::StoreOutput, row, source, type);
    };
    store(_builtins[kVariable_Position], MakeVector(kBase_Float, 4), 0);
    for (std::size_t i = 0; i < _stage.globals.size(); ++i) {
        const LinkedGlobal& global = _stage.globals[i];
        if (global.storage == kStorage_Varying && global.index >= 0) {
            auto at = static_cast<std::size_t>(global.index);
            store(_globals[i], global.type,
                  4 + static_cast<std::uint32_t>(_layout.varyings[at].firstWord));
        }
    }
}

/// The values that a ray takes with it, in the order of the program's table.
Values Translator::_GetRayAttributes() {
    Values words(static_cast<std::size_t>(_layout.rayAttributeWords), _builder.Int(0));
    for (std::size_t i = 0; i < _stage.globals.size(); ++i) {
        const LinkedGlobal& global = _stage.globals[i];
        if (global.storage != kStorage_RayAttribute || global.index < 0) {
            continue;
        }
        Place place;
        place.pStore = &_globals[i];
        place.type = global.type;
        std::vector<BaseType> bases = GetScalarBases(global.type);
        Values values = _access.Load(place);
        auto first = static_cast<std::size_t>(
            _layout.rayAttributes[static_cast<std::size_t>(global.index)].firstWord);
        for (std::size_t k = 0; k < values.size(); ++k) {
            words[first + k] =
                bases[k] == kBase_Bool ? _builder.Do(Operation::MaskToI, values[k]) : values[k];
        }
    }
    return words;
}

/// Hands the ray attributes on to the program that runs next on the ray.
void Translator::_PassRayAttributes() {
    const Values words = _GetRayAttributes();
    for (std::size_t i = 0; i < words.size(); ++i) {
        _builder.Store(IrKind::StoreOutput, static_cast<std::uint32_t>(i), words[i]);
    }
}

} // namespace Tolen::OpenKL
