#pragma once

#include "shaders/ShaderLibrary.h"

#include "scene/ImageFile.h"

#include "TolenOpenKL/Mesh.h"

#include "TolenCore/Matrix.h"
#include "TolenCore/Vector.h"

#include <map>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// A place that is lit.
struct Spot {
    Vector3f point;
    Vector3f normal;
};

/// shaders/lights, with a meter for light. There is one shader for each class of lights, as a
/// light manager has it; here its cells are counted and connected by hand.
class LightLibrary : public ShaderLibrary {
protected:
    /// A cell of such a shader.
    struct Cell {
        Effects::IShader* shader = nullptr;
        int index = 0;
    };

    LightLibrary();

    /// The next cell of the class, with all values as they are by default. Its inputs with
    /// companions get the shaders that do nothing.
    Cell Add(const std::string& className);
    template <class T>
    void SetCell(const Cell& cell, const std::string& input, const T& value) {
        EXPECT_TRUE(cell.shader->SetParameter(nullptr, input, value, cell.index)) << input;
    }
    /// Connects what an input with a companion asks for.
    void ConnectCell(const Cell& cell, const std::string& input, const Cell& other);
    /// A light with parts, each under the name of its input, that stands at a place and, without
    /// one, in the middle of what the meter sees.
    using Parts = std::map<std::string, Cell>;
    Cell Place(const Cell& light, const Parts& parts = {},
               const Matrix44f& transform = Matrix44f());
    /// A manager of such instances.
    Effects::IShader* MakeLighting(const std::vector<Cell>& instances);

    /// A rotation from the axes x, y, z and a translation.
    static Matrix44f MakeTransform(const Vector3f& x, const Vector3f& y, const Vector3f& z,
                                   const Vector3f& position);
    /// From where the meter has its origin to the world.
    static Matrix44f Moved(Matrix44f transform);
    /// From the world to where the meter has its origin.
    static Vector3f ToMeter(const Vector3f& point);
    /// In the space of the lights.
    OpenKL::IPrimitive* PutInTheWay(const OpenKL::Mesh& mesh, const Matrix44f& transform);

    /// The irradiance of some places, W/m^2, each the mean of 16 times as many samples.
    /// @param isThin counts the light from behind as well
    std::vector<Pixel> MeasureIrradiance(Effects::IShader* lighting, const std::vector<Spot>& spots,
                                         int samples, bool isThin = false);
    /// Red at one place, by a light in the middle.
    double MeasureAt(const Cell& instance, const Spot& spot, int samples = 256);

    /// A texture of an image, or of grays, one row after the other from the lowest.
    Cell MakeTexture(const Scene::Image& image, int filter);
    Cell MakeTexture(int width, int height, const std::vector<float>& grays, int filter);

private:
    /// A cell of the class that does nothing.
    Cell _GetNull(const std::string& interface);

    std::map<std::string, Effects::IShader*> _shaders;
    std::map<std::string, int> _counts;
    std::map<std::string, Cell> _nulls;
};

} // namespace Tolen::Tests
