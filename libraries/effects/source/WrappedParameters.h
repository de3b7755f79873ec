#pragma once

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/LifeToken.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace Tolen::Effects {

/// The parameters of a view of a shader, by name: those shown as they are and those with a wrapper
/// in front. A name stands in one of the two.
///
/// @tparam Wrapper an IParameterWrapper
template <class Wrapper>
class WrappedParameters {
public:
    using Plain = std::map<std::string, IParameter*>;

    /// Takes all parameters of @p shader as they are.
    void Copy(IShader* shader) {
        auto add = [this](const std::string& name, IParameter* parameter) {
            _plain[name] = parameter;
            return true;
        };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(add);
        shader->VisitParameters(visit);
    }

    const Plain& GetPlain() const { return _plain; }
    void SetPlain(Plain plain) { _plain = std::move(plain); }
    void Remove(const std::string& name) { _plain.erase(name); }
    void Add(const std::string& name, std::unique_ptr<Wrapper> wrapper) {
        _wrappers[name] = std::move(wrapper);
    }

    /// The values that go with the shaders of input @p name.
    /// @return null when there are none
    IParameter* FindCompanion(const std::string& name) const {
        const auto found = _plain.find(name + "Ref");
        return found != _plain.end() && found->second->GetClass() == IParameter::kClass_Value
                   ? found->second
                   : nullptr;
    }

    IParameter* Find(const std::string& name) const {
        if (const auto found = _wrappers.find(name); found != _wrappers.end()) {
            return found->second.get();
        }
        const auto found = _plain.find(name);
        return found == _plain.end() ? nullptr : found->second;
    }

    /// Visits the wrappers, then the others, up to the first that @p visit answers false for.
    bool Visit(FastDelegate2<const std::string&, IParameter*, bool>& visit) const {
        const auto parameter = [&visit](const std::string& name, IParameter* plain) {
            return visit(name, plain);
        };
        const auto wrapper = [&visit](const std::string& name, const auto& wrapped) {
            return visit(name, wrapped.get());
        };
        const LifeToken::Watch alive = _life.GetWatch();
        return _Walk(_wrappers, alive, wrapper) && alive && _Walk(_plain, alive, parameter);
    }

    /// Calls @p visit with the wrappers in the order of their names, up to the first false.
    template <class Call>
    bool ForEachWrapper(Call call) const {
        return _Walk(_wrappers, _life.GetWatch(),
                     [&call](const std::string&, const auto& wrapper) { return call(*wrapper); });
    }

    /// Forgets what belongs to the real shader; wrappers stay.
    void Detach() {
        for (auto& [name, wrapper] : _wrappers) {
            wrapper->Detach();
        }
        _plain.clear();
    }

    void Clear() {
        // Out of the table first: who hears of a wrapper's end may look here.
        const auto wrappers = std::move(_wrappers);
        _wrappers.clear();
        _plain.clear();
    }

private:
    /// Callbacks may change the table or destroy it.
    template <class Map, class Call>
    static bool _Walk(const Map& map, const LifeToken::Watch& alive, const Call& call) {
        for (auto it = map.begin(); it != map.end();) {
            const std::string name = it->first;
            if (!call(name, it->second) || !alive) {
                return false;
            }
            it = map.upper_bound(name);
        }
        return true;
    }

    std::map<std::string, std::unique_ptr<Wrapper>> _wrappers;
    Plain _plain; ///< borrowed
    LifeToken _life;
};

} // namespace Tolen::Effects
