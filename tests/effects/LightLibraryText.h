#pragma once

#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

/// All classes that a light manager asks for, small: lights have an intensity and a decay, decays a
/// rate; what stands in the world has a light and a dimmer. All others have a value.
class LightLibraryText {
public:
    /// @param without the name of a class that is left out
    static std::string Make(const std::string& without = "") {
        std::string text = R"(
interface ILighting { float Sum(); }
interface ILightInstance { float Get(int cell); }
interface ILight { float Get(int cell); }
interface ILightFocus { float Get(int cell); }
interface ILightDecay { float Get(int cell); }
interface IEmission { float Get(int cell); }
interface IProjectorMap { float Get(int cell); }
interface IShadow { float Get(int cell); }
interface IIntegrator2 { float Get(); }
interface IIntegrator3 { float Get(); }
interface IIntegrator6 { float Get(); }
interface ITexture { float Get(); }
)";
        const auto add = [&](const std::string& name, const std::string& type,
                             const std::string& body) {
            if (name != without) {
                text += "class " + name + " : " + type + " {" + body + "}\n";
            }
        };
        for (const std::string& name : GetLights()) {
            add(name, "ILight", R"(
    input float intensity[] = 1.0;
    input vec3 color[];
    input ILightDecay decay[];
    input ivec2 decayRef[] = ivec2(-1);
    input float scale = 1.0;
    float Get(int cell) {
        ivec2 at = decayRef[cell];
        return intensity[cell] * color[cell].x * scale * decay[at.x].Get(at.y);
    }
)");
        }
        add("LightInstanceStandardArray", "ILightInstance", R"(
    input ILight light[];
    input ivec2 lightRef[];
    input float dimmer[] = 1.0;
    float Get(int cell) {
        ivec2 at = lightRef[cell];
        return dimmer[cell] * light[at.x].Get(at.y);
    }
)");
        add("LightManagerArray", "ILighting", R"(
    input ILightInstance lights[];
    input ivec2 lightsRef[];
    float Sum() {
        float sum = 0.0;
        for (int i = 0; i < lightsRef.length; ++i) {
            ivec2 at = lightsRef[i];
            sum += lights[at.x].Get(at.y);
        }
        return sum;
    }
)");
        const std::string valued = R"(
    input float rate[] = 1.0;
    float Get(int cell) { return rate[cell]; }
)";
        for (const auto& [type, names] : GetParts()) {
            for (const std::string& name : names) {
                add(name, type, valued);
            }
        }
        const std::string nothing = "\n    float Get(int cell) { return 0.0; }\n";
        add("LightInstanceNullArray", "ILightInstance", nothing);
        add("LightNullArray", "ILight", nothing);
        for (const char* type : {"Integrator2", "Integrator3", "Integrator6"}) {
            add(type + std::string("Null"), std::string("I") + type,
                "\n    float Get() { return 0.5; }\n");
        }
        add("TextureBlack", "ITexture", "\n    float Get() { return 0.0; }\n");
        add("TextureWhite", "ITexture", "\n    float Get() { return 1.0; }\n");
        return text + R"(
class Root {
    input ILighting lighting;
    void Shade() { accumulate(o_color, vec3(lighting.Sum())); }
}
)";
    }

    static std::vector<std::string> GetLights() {
        return {"LightPointArray",          "LightDirectArray",
                "LightAmbientArray",        "LightLinearArray",
                "LightPlanarAreaArray",     "LightPlanarAreaFacingArray",
                "LightSphereAreaBruteArray", "LightSphereAreaImportanceArray",
                "LightDome_ConstantArray",  "LightDomeArray",
                "LightPortalRectArray",     "LightCylindricalArray",
                "LightCylindricalCappedArray"};
    }

    struct Kind {
        std::string type;
        std::vector<std::string> names;
    };
    static std::vector<Kind> GetParts() {
        return {{"ILightFocus",
                 {"LightFocusNullArray", "LightFocusConeArray", "LightFocusPyramidArray",
                  "LightFocusCylinderArray", "LightFocusBoxArray", "LightFocusDiscAreaArray",
                  "LightFocusRectAreaArray"}},
                {"ILightDecay",
                 {"LightDecayNullArray", "LightDecayDoubleArray", "LightDecayInverseArray",
                  "LightDecayInvSquareArray", "LightDecayNearFarArray"}},
                {"IEmission",
                 {"EmissionNullArray", "EmissionSurfaceDiffuseArray", "EmissionLinearDiffuseArray",
                  "EmissionGoniophotometricArray"}},
                {"IProjectorMap",
                 {"ProjectorMapNullArray", "ProjectorMapConeArray", "ProjectorMapOmniArray",
                  "ProjectorMapDirectBoxArray", "ProjectorMapDirectCylinderArray"}},
                {"IShadow",
                 {"ShadowNullArray", "ShadowSharpArray", "ShadowBlurredArray",
                  "ShadowAreaPlanarArray", "ShadowAreaPlanarAngularArray",
                  "ShadowAreaSphereBruteArray", "ShadowAreaBoxArray"}}};
    }
};

} // namespace Tolen::Effects::Tests
