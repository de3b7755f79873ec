#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// What a recording context and its objects were asked to do, as lines such as
///
///     CreateShader ray -> shader1
///     SetUniform primitive1 "u_color" @0 vec3 (1,0,0)
///
/// and the failures that they were told to show. The first word of a line is the operation; a line
/// of an operation that failed ends with " -> failed". These are the operations:
///
///     CreateShader DestroyShader SetName SetString
///     CreateProgram DestroyProgram AddShader DetachShader Link UseProgram
///     CreateBuffer DestroyBuffer BufferInit BufferResize BufferSubData BindBuffer UnbindBuffer
///     MapBuffer UnmapBuffer
///     CreateTexImage2D DestroyTexImage2D TexImage2DInit
///     BindPrimitive UnbindPrimitive
///     SetUniform SetUniformArray SetUniformBlock SetUniformTexture
class RecordingLog {
public:
    /// All lines, oldest first.
    const std::vector<std::string>& GetLines() const { return _lines; }
    /// The lines of one operation.
    std::vector<std::string> GetLines(const std::string& operation) const;
    /// How often an operation was asked for since the last Clear, failures among them.
    int GetCount(const std::string& operation) const;
    /// Forgets the lines. Failures that are still to come stay.
    void Clear() { _lines.clear(); }

    /// Lets the @p n-th call from now on of an operation fail, 1 for the next.
    void FailNth(const std::string& operation, int n = 1);
    /// Lets every call of an operation fail.
    void FailAll(const std::string& operation) { _failAll.insert(operation); }
    /// Ends all failures.
    void FailNone();

    /// Calls that no implementation of OpenKL has to bear, such as the second destruction of one
    /// object. A test of correct code expects none.
    const std::vector<std::string>& GetMisuses() const { return _misuses; }

    // For the recording objects.

    /// Counts a call. @return false when this one is to fail
    bool Begin(const std::string& operation);
    /// Enters the line of a call. @return @p good
    bool End(const std::string& operation, const std::string& details, bool good = true);
    /// Begin and End of a call without a failure of its own.
    bool Record(const std::string& operation, const std::string& details) {
        return End(operation, details, Begin(operation));
    }
    void AddMisuse(const std::string& text) { _misuses.push_back(text); }

private:
    std::vector<std::string> _lines;
    std::vector<std::string> _misuses;
    std::map<std::string, std::multiset<int>> _failNth; ///< calls still to go, by operation
    std::set<std::string> _failAll;
};

} // namespace Tolen::Tests
