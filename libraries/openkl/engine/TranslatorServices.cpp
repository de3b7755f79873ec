#include "engine/Translator.h"

#include <limits>

namespace Tolen::OpenKL {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

} // namespace

Values Translator::_CallService(const BuiltinCallExpression& call) {
    std::vector<Values> arguments;
    for (const Expression* argument : call.arguments) {
        arguments.push_back(_Evaluate(*argument));
    }
    if (_IsStopped()) {
        return Values(static_cast<std::size_t>(call.type.CountScalars()), _builder.Int(0));
    }
    auto flat = [&]() {
        Values values;
        for (const Values& argument : arguments) {
            values.insert(values.end(), argument.begin(), argument.end());
        }
        return values;
    };
    switch (call.function) {
    case kFunction_Texture2D:
        return _CallTexture(arguments);
    case kFunction_TextureSize: {
        ValueId level = arguments.size() > 1 ? arguments[1][0] : _builder.Int(0);
        ValueId size = _builder.CallService(Service::TextureSize, {arguments[0][0], level});
        return {_builder.GetResult(size, 0), _builder.GetResult(size, 1)};
    }
    case kFunction_SpawnRay:
        return _CallSpawn(arguments);
    case kFunction_Accumulate:
        if (_entry == Entry::Main) {
            _builder.CallService(Service::Accumulate, flat());
        }
        return {};
    case kFunction_Occluded:
        if (_entry == Entry::Setup) {
            return {_builder.Mask(false)};
        }
        return {_builder.GetResult(_builder.CallService(Service::Occluded, flat()), 0)};
    case kFunction_TraceDistance:
        if (_entry == Entry::Setup) {
            return {_builder.Float(-1.0f)};
        }
        return {_builder.GetResult(_builder.CallService(Service::TraceDistance, flat()), 0)};
    case kFunction_DiscardRay:
        _builder.CallService(Service::Discard, {});
        _builder.AddExit(NodeKind::Kill, 0);
        return {};
    default:
        return {};
    }
}

Values Translator::_CallSpawn(const std::vector<Values>& arguments) {
    if (_entry == Entry::Setup) {
        return {};
    }
    Values values = arguments[0];
    values.insert(values.end(), arguments[1].begin(), arguments[1].end());
    values.push_back(arguments.size() > 2 ? arguments[2][0] : _builder.Float(kInfinity));
    values.push_back(arguments.size() > 3 ? arguments[3][0] : _builder.Int(0));
    values.push_back(arguments.size() > 4 ? arguments[4][0] : _builder.Int(0));
    Values incoming = _LoadLanes({kLaneInput_RayClass, kLaneInput_RandomSeed}, _entry);
    values.insert(values.end(), incoming.begin(), incoming.end());
    Values carried = _GetRayAttributes();
    values.insert(values.end(), carried.begin(), carried.end());
    _builder.CallService(Service::Spawn, values);
    return {};
}

Values Translator::_CallTexture(const std::vector<Values>& arguments) {
    ValueId bias = arguments.size() > 2 ? arguments[2][0] : _builder.Float(0.0f);
    ValueId footprint = _LoadLanes({kLaneInput_TextureFootprint}, _entry)[0];
    ValueId texels =
        _builder.CallService(Service::SampleTexture,
                             {arguments[0][0], arguments[1][0], arguments[1][1], bias, footprint});
    Values result;
    for (std::uint32_t i = 0; i < 4; ++i) {
        result.push_back(_builder.GetResult(texels, i));
    }
    return result;
}

Values Translator::_CallRandom(bool isPair) {
    Values sequence = _LoadLanes({kLaneInput_RandomSeed, kLaneInput_SampleIndex}, _entry);
    ValueId call = _builder.LoadVariable(_randomCalls);
    _builder.StoreVariable(_randomCalls, _builder.Do(Operation::IAdd, call, _builder.Int(1)));
    if (!isPair) {
        return {_builder.Do(Operation::Random, sequence[0], sequence[1], call)};
    }
    return {_builder.Do(Operation::RandomPairX, sequence[0], sequence[1], call),
            _builder.Do(Operation::RandomPairY, sequence[0], sequence[1], call)};
}

/// The fraction keeps the sign, also where it is 0, and infinities have none.
Values Translator::_CallModf(const BuiltinCallExpression& call) {
    Values values = _Evaluate(*call.arguments[0]);
    Place whole = _MakePlace(*call.arguments[1]);
    Values wholes = _math.Map(Operation::FTrunc, values);
    _access.Store(whole, wholes);
    Values fractions = _math.Map(Operation::FSub, values, wholes);
    return _math.Map(Operation::Select, _math.Map(Operation::FIsInf, values),
                     {_builder.Float(0.0f)}, fractions);
}

} // namespace Tolen::OpenKL
