#include "scene/SceneObject.h"

#include "compiler/LinkedProgram.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/ThreadTeam.h"

#include "TolenOpenKL/Statistics.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

SceneObject::~SceneObject() {
    rtcReleaseGeometry(_geometry);
}

bool SceneObject::Update(const TextureTable& textures, ThreadTeam& team, Statistics& statistics,
                         GeometryProblems& problems) {
    const UniformStore& uniforms = _primitive.GetUniforms();
    _pCode = uniforms.GetCode();
    _binding.Update(uniforms, textures);

    const Sources sources = _FindSources();
    if (sources == _sources) {
        return false;
    }
    const bool hadTriangles = !_triangles.empty();
    if (_primitive.GetTriangleCount() == 0) {
        _triangles.clear();
        _vertices = VertexValues();
    } else {
        _BuildVertices(textures, team, statistics, problems);
        _BuildTriangles(problems);
    }
    // Not before: what runs out of memory is made anew the next time.
    _sources = sources;
    return hadTriangles || !_triangles.empty();
}

SceneObject::Sources SceneObject::_FindSources() const {
    Sources sources;
    sources.mesh = _primitive.GetMeshVersion();
    sources.transform = _primitive.GetTransformVersion();
    if (_pCode != nullptr) {
        sources.code = _pCode->serial;
        sources.values = ReadsUniforms(*_pCode) ? _primitive.GetUniforms().GetVersion() : 0;
    }
    return sources;
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
        KernelThread& thread = team.GetKernelThread();
        binding.RunSetup(*_pCode->vertex, constants, thread);
        problems.stoppedInvocations += thread.output.stoppedInvocations;
        const std::size_t vertices = _primitive.GetVertexCount();
        statistics.vertexInvocations += static_cast<std::int64_t>(vertices);
        statistics.vertexBatches += static_cast<std::int64_t>(CountVertexBatches(vertices));
    }
    _vertices = RunVertexStage(_primitive, _pCode.get(), binding.Get(), constants, team);
    problems.stoppedInvocations += _vertices.stoppedInvocations;
    _isMirrored = GetDeterminant(_primitive.GetTransform()) < 0.0f;
}

void SceneObject::_BuildTriangles(GeometryProblems& problems) {
    const auto isUsable = [&](std::uint32_t vertex) {
        if (vertex >= _vertices.vertexCount) {
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

    rtcSetSharedGeometryBuffer(_geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                               _vertices.positions.data(), 0, 3 * sizeof(float),
                               _vertices.vertexCount);
    rtcSetSharedGeometryBuffer(_geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                               _triangles.data(), 0, 3 * sizeof(std::uint32_t),
                               _triangles.size() / 3);
    rtcCommitGeometry(_geometry);
}

} // namespace Tolen::OpenKL
