#include "scene/SceneObject.h"

#include "compiler/LinkedProgram.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/ThreadTeam.h"

#include "TolenOpenKL/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <new>

namespace Tolen::OpenKL {

namespace {

/// Whether the vertex shader's results depend on uniforms.
bool ReadsUniforms(const LinkedCode& code) {
    const auto isUniform = [](const LinkedGlobal& global) {
        return global.storage == kStorage_Uniform || global.storage == kStorage_MutableUniform ||
               global.storage == kStorage_UniformBlock;
    };
    return code.program->vertex != nullptr &&
           std::any_of(code.program->vertex->globals.begin(), code.program->vertex->globals.end(),
                       isUniform);
}

float GetDeterminant(const Matrix44f& m) {
    return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
           m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
           m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
}

} // namespace

SceneObject::SceneObject(Primitive& primitive, RTCDevice device)
    : _primitive(primitive), _geometry(rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE)) {}

SceneObject::~SceneObject() { rtcReleaseGeometry(_geometry); }

bool SceneObject::Update(const TextureTable& textures, ThreadTeam& team, Statistics& statistics,
                         GeometryProblems& problems) {
    const UniformStore& uniforms = _primitive.GetUniforms();
    _pCode = uniforms.GetCode();
    _binding.Update(uniforms, textures);

    const std::uint64_t codeSerial = _pCode == nullptr ? 0 : _pCode->serial;
    const std::uint64_t valueVersion =
        _pCode != nullptr && ReadsUniforms(*_pCode) ? uniforms.GetVersion() : 0;
    if (_meshVersion == _primitive.GetMeshVersion() &&
        _transformVersion == _primitive.GetTransformVersion() && _codeSerial == codeSerial &&
        _valueVersion == valueVersion) {
        return false;
    }
    _meshVersion = _primitive.GetMeshVersion();
    _transformVersion = _primitive.GetTransformVersion();
    _codeSerial = codeSerial;
    _valueVersion = valueVersion;
    const bool hadTriangles = !_triangles.empty();
    if (_primitive.GetTriangleCount() == 0) {
        _triangles.clear();
        _vertices = VertexValues();
        return hadTriangles;
    }
    _BuildVertices(textures, team, statistics, problems);
    _BuildTriangles(problems);
    return hadTriangles || !_triangles.empty();
}

void SceneObject::_BuildVertices(const TextureTable& textures, ThreadTeam& team,
                                 Statistics& statistics, GeometryProblems& problems) {
    BatchConstants constants;
    std::copy(std::begin(_primitive.GetTransform().m), std::end(_primitive.GetTransform().m),
              constants.transform);
    std::copy(std::begin(_primitive.GetInverseTranspose().m),
              std::end(_primitive.GetInverseTranspose().m), constants.transformInverseTranspose);
    ShadingBinding binding;
    if (_pCode != nullptr && _pCode->vertex != nullptr) {
        binding.Update(_primitive.GetUniforms(), textures);
        binding.RunSetup(*_pCode->vertex, constants, team.GetKernelThread());
        statistics.vertexInvocations += static_cast<std::int64_t>(_primitive.GetVertexCount());
    }
    _vertices = RunVertexStage(_primitive, _pCode.get(), binding.Get(), constants, team);
    problems.stoppedInvocations += _vertices.stoppedInvocations;
    _isMirrored = GetDeterminant(_primitive.GetTransform()) < 0.0f;
}

void SceneObject::_BuildTriangles(GeometryProblems& problems) {
    const std::size_t vertexCount = _vertices.positions.size() / 3;
    const auto isUsable = [&](std::uint32_t vertex) {
        if (vertex >= vertexCount) {
            return false;
        }
        const float* const position = _vertices.positions.data() + std::size_t{vertex} * 3;
        return std::isfinite(position[0]) && std::isfinite(position[1]) &&
               std::isfinite(position[2]);
    };
    const std::vector<std::uint32_t>& indices = _primitive.GetIndices();
    _triangles.clear();
    _triangles.reserve(indices.size());
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        if (isUsable(indices[i]) && isUsable(indices[i + 1]) && isUsable(indices[i + 2])) {
            _triangles.insert(_triangles.end(), {indices[i], indices[i + 1], indices[i + 2]});
        }
    }
    problems.trianglesLeftOut += (indices.size() - _triangles.size()) / 3;
    if (_triangles.empty()) {
        return;
    }

    auto* const positions = static_cast<float*>(
        rtcSetNewGeometryBuffer(_geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                3 * sizeof(float), vertexCount));
    auto* const corners = static_cast<std::uint32_t*>(
        rtcSetNewGeometryBuffer(_geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                3 * sizeof(std::uint32_t), _triangles.size() / 3));
    if (positions == nullptr || corners == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(positions, _vertices.positions.data(), _vertices.positions.size() * sizeof(float));
    std::memcpy(corners, _triangles.data(), _triangles.size() * sizeof(std::uint32_t));
    rtcCommitGeometry(_geometry);
}

} // namespace Tolen::OpenKL
