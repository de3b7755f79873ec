#pragma once

#include "support/RecordingBuffer.h"
#include "support/RecordingLog.h"
#include "support/RecordingPrimitive.h"
#include "support/RecordingProgram.h"
#include "support/RecordingShader.h"
#include "support/RecordingTexImage2D.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// An OpenKL that renders nothing: it writes down what it is asked to do, fails on request, and
/// counts its objects. `klUseProgram` and `klBufferSubData` come with it and write to the log of
/// the program or buffer they meet.
///
/// @code
/// RecordingContext context;
/// RecordingPrimitive primitive(context);
/// context.GetLog().FailNth("CreateShader", 2);
/// ...
/// EXPECT_EQ(primitive.GetUniform("p_a_k1"), "float 0.5");
/// EXPECT_EQ(context.GetCountLive(), 0);
/// EXPECT_THAT(context.GetLog().GetMisuses(), IsEmpty());
/// @endcode
///
/// Objects are named by kind and by number, from 1 for the first of its kind, in the log. A program
/// that is linked gives a location, from 0 up, to every uniform, uniform block and attribute that
/// the texts of its shaders declare, unless the context was told that the name is unused.
class RecordingContext : public IOpenKLContext {
public:
    RecordingContext() = default;
    ~RecordingContext() override = default;
    RecordingContext(const RecordingContext&) = delete;
    RecordingContext& operator=(const RecordingContext&) = delete;

    RecordingLog& GetLog() { return _log; }

    /// What AreDifferentialsEnabled and AreFilteredAccumulatesEnabled answer; false at first.
    void SetDifferentialsEnabled(bool enabled) { _differentials = enabled; }
    void SetFilteredAccumulatesEnabled(bool enabled) { _filteredAccumulates = enabled; }

    /// The message of every SetString that fails from now on; it need not end with a line feed.
    void SetCompileError(const std::string& message) { _compileError = message; }
    const std::string& GetCompileError() const { return _compileError; }

    /// Lets programs that are linked from now on have no location for a name.
    void SetUnused(const std::string& name) { _unused.insert(name); }
    bool IsUnused(const std::string& name) const { return _unused.count(name) != 0; }

    /// Objects that are alive, of all kinds.
    int GetCountLive() const;

    /// Objects that are alive, oldest first.
    std::vector<RecordingShader*> GetShaders() const { return _GetLive(_shaders); }
    std::vector<RecordingProgram*> GetPrograms() const { return _GetLive(_programs); }
    std::vector<RecordingBuffer*> GetBuffers() const { return _GetLive(_buffers); }
    std::vector<RecordingTexImage2D*> GetImages() const { return _GetLive(_images); }

    /// The handle of a new primitive, from 1 up.
    KLprimitive MakePrimitiveHandle() { return static_cast<KLprimitive>(++_lastPrimitive); }

    IKLShader* CreateShader(IKLShader::Type type) override;
    void DestroyShader(IKLShader* shader) override;
    IKLProgram* CreateProgram() override;
    void DestroyProgram(IKLProgram* program) override;
    IKLBuffer* CreateBuffer() override;
    void DestroyBuffer(IKLBuffer* buffer) override;
    IKLTexImage2D* CreateTexImage2D() override;
    void DestroyTexImage2D(IKLTexImage2D* image) override;
    bool AreDifferentialsEnabled() const override { return _differentials; }
    bool AreFilteredAccumulatesEnabled() const override { return _filteredAccumulates; }

private:
    /// Objects of one kind by number.
    template <class T>
    struct Kind {
        std::map<int, std::unique_ptr<T>> live;
        int last = 0;
    };

    template <class T>
    static std::vector<T*> _GetLive(const Kind<T>& kind) {
        std::vector<T*> objects;
        for (const auto& entry : kind.live) {
            objects.push_back(entry.second.get());
        }
        return objects;
    }

    template <class T, class... Args>
    T* _Create(Kind<T>& kind, const std::string& operation, const std::string& noun,
               const std::string& details, Args&&... args);
    template <class T, class I>
    void _Destroy(Kind<T>& kind, const std::string& operation, I* object);

    RecordingLog _log;
    std::string _compileError = "String 0 Line 1: error: told to fail";
    std::set<std::string> _unused;
    bool _differentials = false;
    bool _filteredAccumulates = false;
    int _lastPrimitive = 0;
    Kind<RecordingShader> _shaders;
    Kind<RecordingProgram> _programs;
    Kind<RecordingBuffer> _buffers;
    Kind<RecordingTexImage2D> _images;
};

} // namespace Tolen::Tests
