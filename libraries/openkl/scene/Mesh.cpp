#include "TolenOpenKL/Mesh.h"

#include "TolenOpenKL/IPrimitive.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace Tolen::OpenKL {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

void AddVertex(Mesh& mesh, const Vector3f& position, const Vector3f& normal,
               const Vector2f& coord) {
    mesh.positions.push_back(position);
    mesh.normals.push_back(normal);
    mesh.coords.push_back(coord);
}

/// Adds the two triangles of four vertices that go counter-clockwise.
void AddQuad(Mesh& mesh, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    mesh.indices.insert(mesh.indices.end(), {a, b, c, a, c, d});
}

Vector3f Combine(const Vector3f& center, const Vector3f& u, float s, const Vector3f& v, float t) {
    return {center.x + u.x * s + v.x * t, center.y + u.y * s + v.y * t,
            center.z + u.z * s + v.z * t};
}

/// Adds a rectangle around @p center that reaches @p u and @p v to each side.
void AddRectangle(Mesh& mesh, const Vector3f& center, const Vector3f& u, const Vector3f& v,
                  const Vector3f& normal) {
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    AddVertex(mesh, Combine(center, u, -1.0f, v, -1.0f), normal, {0.0f, 0.0f});
    AddVertex(mesh, Combine(center, u, 1.0f, v, -1.0f), normal, {1.0f, 0.0f});
    AddVertex(mesh, Combine(center, u, 1.0f, v, 1.0f), normal, {1.0f, 1.0f});
    AddVertex(mesh, Combine(center, u, -1.0f, v, 1.0f), normal, {0.0f, 1.0f});
    AddQuad(mesh, first, first + 1, first + 2, first + 3);
}

template <class V>
bool SetVectors(IPrimitive& primitive, const char* name, const std::vector<V>& vectors) {
    // Vectors are packed floats.
    return vectors.empty() ||
           primitive.SetAttribute(name, static_cast<int>(sizeof(V) / sizeof(float)),
                                  &vectors.front().x, vectors.size());
}

} // namespace

Mesh MakePlane(float width, float height) {
    Mesh mesh;
    AddRectangle(mesh, {}, {width / 2.0f, 0.0f, 0.0f}, {0.0f, height / 2.0f, 0.0f},
                 {0.0f, 0.0f, 1.0f});
    return mesh;
}

Mesh MakeBox(const Vector3f& size) {
    const Vector3f x(size.x / 2.0f, 0.0f, 0.0f);
    const Vector3f y(0.0f, size.y / 2.0f, 0.0f);
    const Vector3f z(0.0f, 0.0f, size.z / 2.0f);
    const auto negate = [](const Vector3f& v) { return Vector3f(-v.x, -v.y, -v.z); };
    Mesh mesh;
    AddRectangle(mesh, x, negate(z), y, {1.0f, 0.0f, 0.0f});
    AddRectangle(mesh, negate(x), z, y, {-1.0f, 0.0f, 0.0f});
    AddRectangle(mesh, y, x, negate(z), {0.0f, 1.0f, 0.0f});
    AddRectangle(mesh, negate(y), x, z, {0.0f, -1.0f, 0.0f});
    AddRectangle(mesh, z, x, y, {0.0f, 0.0f, 1.0f});
    AddRectangle(mesh, negate(z), negate(x), y, {0.0f, 0.0f, -1.0f});
    return mesh;
}

Mesh MakeSphere(float radius, int segments, int rings) {
    segments = std::max(segments, 3);
    rings = std::max(rings, 2);
    Mesh mesh;
    for (int ring = 0; ring <= rings; ++ring) {
        const float t = static_cast<float>(ring) / static_cast<float>(rings);
        // From the lower pole up; the poles are exact, so that the surface closes.
        const float height = -std::cos(kPi * t);
        const float width = ring == 0 || ring == rings ? 0.0f : std::sin(kPi * t);
        for (int segment = 0; segment <= segments; ++segment) {
            const float s = static_cast<float>(segment) / static_cast<float>(segments);
            const float angle = segment == segments ? 0.0f : 2.0f * kPi * s;
            const Vector3f normal(width * std::cos(angle), height, -width * std::sin(angle));
            AddVertex(mesh, {normal.x * radius, normal.y * radius, normal.z * radius}, normal,
                      {s, t});
        }
    }
    const auto stride = static_cast<std::uint32_t>(segments) + 1;
    for (std::uint32_t ring = 0; ring < static_cast<std::uint32_t>(rings); ++ring) {
        for (std::uint32_t segment = 0; segment + 1 < stride; ++segment) {
            const std::uint32_t low = ring * stride + segment;
            AddQuad(mesh, low, low + 1, low + stride + 1, low + stride);
        }
    }
    return mesh;
}

Mesh MakeDisc(float radius, int segments) {
    segments = std::max(segments, 3);
    const Vector3f normal(0.0f, 0.0f, 1.0f);
    Mesh mesh;
    AddVertex(mesh, {}, normal, {0.5f, 0.5f});
    for (int segment = 0; segment < segments; ++segment) {
        const float angle = 2.0f * kPi * static_cast<float>(segment) / static_cast<float>(segments);
        const float x = std::cos(angle);
        const float y = std::sin(angle);
        AddVertex(mesh, {radius * x, radius * y, 0.0f}, normal, {0.5f + 0.5f * x, 0.5f + 0.5f * y});
    }
    const auto count = static_cast<std::uint32_t>(segments);
    for (std::uint32_t segment = 0; segment < count; ++segment) {
        mesh.indices.insert(mesh.indices.end(), {0, segment + 1, (segment + 1) % count + 1});
    }
    return mesh;
}

bool SetMesh(IPrimitive& primitive, const Mesh& mesh) {
    return SetVectors(primitive, "a_Position", mesh.positions) &&
           SetVectors(primitive, "a_Normal", mesh.normals) &&
           SetVectors(primitive, "a_Coord", mesh.coords) &&
           primitive.SetTriangles(mesh.indices.data(), mesh.indices.size() / 3);
}

} // namespace Tolen::OpenKL
