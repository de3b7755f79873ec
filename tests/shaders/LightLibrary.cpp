#include "shaders/LightLibrary.h"

#include "TolenEffects/IParameter.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include "TolenCore/FastDelegate.h"

namespace Tolen::Tests {

namespace {

using Effects::IParameter;
using Effects::IShader;

/// Where the meter has its origin: away from the wall that shows the picture.
const Vector3f kMiddle(-40.0f, -40.0f, -40.0f);

const char* const kMeter = R"(
class Meter
{
    input ILighting lighting = NoLighting();
    input vec3 points[];
    input vec3 normals[];
    input bool isThin = false;

    void Shade()
    {
        int at = int(kl_PixelCoord.x);
        for (int k = 0; k < lighting.Count(); ++k)
        {
            vec3 way = vec3(0.0);
            vec3 light = lighting.Find(k, points[at], normals[at], way);
            float cosine = dot(normals[at], way);
            light *= isThin ? abs(cosine) : max(0.0, cosine);
            accumulate(0, light * lighting.Visibility(points[at], way));
        }
    }
})";

const std::map<std::string, std::string> kNulls = {
    {"ILight", "LightNullArray"},
    {"ILightFocus", "LightFocusNullArray"},
    {"ILightDecay", "LightDecayNullArray"},
    {"IEmission", "EmissionNullArray"},
    {"IProjectorMap", "ProjectorMapNullArray"},
    {"IShadow", "ShadowNullArray"},
    {"ITexture", "TextureBlack"},
};

/// Gives all arrays of values as many cells as there are lights, and notes the arrays of shaders.
struct Resize {
    bool Visit(const std::string& name, IParameter* parameter) {
        if (parameter->IsArray() && parameter->GetClass() == IParameter::kClass_Value) {
            EXPECT_TRUE(parameter->SetLength(length)) << name;
        } else if (parameter->IsArray()) {
            interfaces[name] = parameter->GetType();
        }
        return true;
    }

    int length;
    std::map<std::string, std::string> interfaces;
};

Vector3f MovedPoint(const Vector3f& point) {
    return {point.x + kMiddle.x, point.y + kMiddle.y, point.z + kMiddle.z};
}

} // namespace

LightLibrary::LightLibrary() {
    LoadFolder("shaders/lights");
    Load("meter", kMeter);
}

LightLibrary::Cell LightLibrary::Add(const std::string& className) {
    IShader*& shader = _shaders[className];
    if (shader == nullptr) {
        shader = Make(className);
    }
    Resize resize{++_counts[className], {}};
    auto visit = MakeDelegate(&resize, &Resize::Visit);
    EXPECT_TRUE(shader->VisitParameters(visit));
    const Cell cell = {shader, resize.length - 1};
    for (const auto& [input, interface] : resize.interfaces) {
        ConnectCell(cell, input, _GetNull(interface));
    }
    return cell;
}

LightLibrary::Cell LightLibrary::_GetNull(const std::string& interface) {
    const auto [at, isNew] = _nulls.try_emplace(interface);
    if (isNew) {
        at->second = Add(kNulls.at(interface));
    }
    return at->second;
}

void LightLibrary::ConnectCell(const Cell& cell, const std::string& input, const Cell& other) {
    IParameter* const parameter = cell.shader->GetParameter(input);
    ASSERT_NE(parameter, nullptr) << input;
    int position = 0;
    IShader* there = nullptr;
    while (position < parameter->GetLength() && parameter->Get(there, position) &&
           there != nullptr && there != other.shader) {
        ++position;
    }
    if (position == parameter->GetLength()) {
        EXPECT_TRUE(parameter->SetLength(position + 1));
    }
    if (there != other.shader) {
        EXPECT_TRUE(parameter->Set(other.shader, position)) << input;
    }
    SetCell(cell, input + "Ref", Vector2i(position, other.index));
}

LightLibrary::Cell LightLibrary::Place(const Cell& light, const Parts& parts,
                                       const Matrix44f& transform) {
    for (const auto& [input, part] : parts) {
        ConnectCell(light, input, part);
    }
    const Cell instance = Add("LightInstanceStandardArray");
    ConnectCell(instance, "light", light);
    SetCell(instance, "transform", Moved(transform));
    return instance;
}

IShader* LightLibrary::MakeLighting(const std::vector<Cell>& instances) {
    IShader* const lighting = Make("LightManagerArray");
    EXPECT_TRUE(lighting->GetParameter("lightsRef")->SetLength(static_cast<int>(instances.size())));
    for (std::size_t i = 0; i < instances.size(); ++i) {
        ConnectCell({lighting, static_cast<int>(i)}, "lights", instances[i]);
    }
    return lighting;
}

Matrix44f LightLibrary::MakeTransform(const Vector3f& x, const Vector3f& y, const Vector3f& z,
                                      const Vector3f& position) {
    const Vector3f* const columns[] = {&x, &y, &z, &position};
    Matrix44f transform;
    for (int i = 0; i < 4; ++i) {
        transform(0, i) = columns[i]->x;
        transform(1, i) = columns[i]->y;
        transform(2, i) = columns[i]->z;
    }
    return transform;
}

Vector3f LightLibrary::ToMeter(const Vector3f& point) {
    return {point.x - kMiddle.x, point.y - kMiddle.y, point.z - kMiddle.z};
}

Matrix44f LightLibrary::Moved(Matrix44f transform) {
    transform(0, 3) += kMiddle.x;
    transform(1, 3) += kMiddle.y;
    transform(2, 3) += kMiddle.z;
    return transform;
}

OpenKL::IPrimitive* LightLibrary::PutInTheWay(const OpenKL::Mesh& mesh,
                                              const Matrix44f& transform) {
    OpenKL::IPrimitive* const thing = context->CreatePrimitive();
    EXPECT_TRUE(OpenKL::SetMesh(*thing, mesh));
    thing->SetTransform(Moved(transform));
    return thing;
}

std::vector<ShaderLibrary::Pixel> LightLibrary::MeasureIrradiance(IShader* lighting,
                                                                  const std::vector<Spot>& spots,
                                                                  int samples, bool isThin) {
    IShader* const meter = Make("Meter");
    Set(meter, "isThin", isThin);
    Connect(meter, "lighting", lighting);
    for (const char* input : {"points", "normals"}) {
        EXPECT_TRUE(meter->GetParameter(input)->SetLength(static_cast<int>(spots.size())));
    }
    for (std::size_t i = 0; i < spots.size(); ++i) {
        SetCell({meter, static_cast<int>(i)}, "points", MovedPoint(spots[i].point));
        SetCell({meter, static_cast<int>(i)}, "normals", spots[i].normal);
    }
    const std::size_t rows = 16;
    const std::vector<Pixel> pixels =
        Measure(meter, static_cast<int>(spots.size()), static_cast<int>(rows), samples);
    std::vector<Pixel> means(spots.size(), Pixel{});
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            means[i % spots.size()][channel] += pixels[i][channel] / static_cast<float>(rows);
        }
    }
    return means;
}

double LightLibrary::MeasureAt(const Cell& instance, const Spot& spot, int samples) {
    return static_cast<double>(MeasureIrradiance(MakeLighting({instance}), {spot}, samples)[0][0]);
}

LightLibrary::Cell LightLibrary::MakeTexture(const Scene::Image& image, int filter) {
    IKLTexImage2D* const texels = context->CreateTexImage2D();
    EXPECT_TRUE(texels->Init(image.width, image.height, IKLTexImage2D::kFormat_RGBA32F, KL_REPEAT,
                             filter, filter, image.rgba.data(), false));
    IShader* const texture = Make("TextureImage");
    Set(texture, "image", texels->GetTexture());
    return {texture, 0};
}

LightLibrary::Cell LightLibrary::MakeTexture(int width, int height, const std::vector<float>& grays,
                                             int filter) {
    Scene::Image image{width, height, {}};
    for (const float gray : grays) {
        image.rgba.insert(image.rgba.end(), {gray, gray, gray, 1.0f});
    }
    return MakeTexture(image, filter);
}

} // namespace Tolen::Tests
