#include "CompileProblems.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/Console.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Effects {

namespace {

using Inputs = std::vector<std::pair<std::string, IParameter*>>;

Inputs _GetInputs(IShader* shader) {
    Inputs inputs;
    auto collect = [&inputs](const std::string& name, IParameter* parameter) {
        inputs.emplace_back(name, parameter);
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
    shader->VisitParameters(visit);
    return inputs;
}

/// One shader on the way down: its inputs, and where the walk stands among them.
struct Place {
    Inputs inputs;
    std::size_t input = 0;
    int element = 0;
};

std::string _GetPath(const std::vector<Place>& places) {
    std::string path;
    for (const Place& place : places) {
        const auto& [name, parameter] = place.inputs[place.input];
        path += (path.empty() ? "" : ".") + name;
        if (parameter != nullptr && parameter->IsArray()) {
            path += "[" + std::to_string(place.element) + "]";
        }
    }
    return path;
}

bool _Report(const char* format, const std::vector<Place>& places) {
    ConsolePrint("%s%s\n", format, _GetPath(places).c_str());
    return false;
}

} // namespace

bool CheckCompileProblems(IShader* root) {
    // Shaders with several users are looked at once; the way down is a list, as graphs may be deep.
    std::set<IShader*> seen{root};
    std::vector<Place> places;
    places.push_back({_GetInputs(root)});
    while (!places.empty()) {
        Place& place = places.back();
        if (place.input == place.inputs.size()) {
            places.pop_back();
            if (!places.empty()) {
                ++places.back().element;
            }
            continue;
        }
        IParameter* const parameter = place.inputs[place.input].second;
        if (parameter == nullptr) {
            return _Report("IParameter is NULL for ", places);
        }
        const int count = parameter->IsArray() ? parameter->GetLength() : 1;
        if (parameter->GetClass() != IParameter::kClass_Interface || place.element >= count) {
            ++place.input;
            place.element = 0;
            continue;
        }
        IShader* shader = nullptr;
        if (!parameter->Get(shader, place.element) || shader == nullptr) {
            return _Report("Interface input doesn't have a shader attached for ", places);
        }
        if (shader->GetPrototype() == nullptr) {
            return _Report("shader doesn't have a prototype for ", places);
        }
        if (seen.insert(shader).second) {
            places.push_back({_GetInputs(shader)});
        } else {
            ++place.element;
        }
    }
    return true;
}

} // namespace Tolen::Effects
