#pragma once

/// @file
/// Many lights of one kind that share one shader.

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {
class IMgrConsole;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IMgrEffects;
class IShader;

/// Makes lights: many of one kind that share one shader, each of which looks like a shader of its
/// own.
///
/// A shader library declares each kind of light as a class of arrays, such as `LightPointArray`,
/// with one cell for each light in every input of its own. All lights of a kind are cells of one
/// real shader, so that adding a light costs a cell and not a new program. To the client each is an
/// IShader, a view: its inputs are single values, and shaders are connected to it and it to others
/// as usual. A receiver, such as `LightManagerArray`, is the shader that takes an array of lights.
/// It is connected to an input of the renderer's shaders like any other shader.
///
///     IMgrLightShaders* lights = CreateMgrLightShaders();
///     lights->Init(effects, console);
///     IShader* lamp = lights->CreateShader("LightPointArray", &result);
///     lamp->SetParameter(&result, "intensity", Vector3f(10.0f, 10.0f, 10.0f));
///     IShader* decay = lights->CreateShader("LightDecayInvSquareArray", &result);
///     lamp->SetParameter(&result, "decay", decay);
///     IShader* standing = lights->CreateShader("LightInstanceStandardArray", &result);
///     standing->SetParameter(&result, "light", lamp);
///     IShader* receiver = lights->CreateShader("LightManagerArray", &result);
///     receiver->GetParameter("lights")->SetLength(1);
///     receiver->SetParameter(&result, "lights", standing, 0);
///
/// How shaders of the library find each other: an input `x` that takes shaders has a companion of
/// integers, `xRef`, which the client does not see. It stores for each light where the connected
/// shader stands: the entry in the array `x` and the cell in the shader there; for an input `x`
/// that is no array, the cell alone.
///
/// What a client has to know of views:
/// - Inputs that are no arrays in the class are the same for all lights of the kind, and so are
///   name, members and coords.
/// - An input that shaders are connected to starts with the library's null shader of its type.
/// - Cells that are given back stay as holes until Update. Update gives the lights other cells.
///   Connections made to a light before are not told of its new cell: connect again all that has
///   changed cells, in receivers by setting each light again, in lights by connecting null first.
/// - An input that a destroyed light was connected to answers null and keeps the cell in its
///   companion, as does the cell of a receiver that is set to null: a receiver has to be given the
///   lights that are left, and its new length.
/// - An array of lights is set cell by cell. The form of Set that takes many shaders goes past the
///   view, to the real array.
/// - Listeners added through a view hear of the real shader, which they get as argument, until the
///   view goes. Delete listeners hear both of the real shader and of the view.
/// - A view whose real shader is gone has no parameters and answers false, null or an empty text.
///   DestroyShader answers false for it; it goes at Shutdown.
///
/// Everything that CreateShader gives is owned by this manager, but for shaders of other classes,
/// which are the effects manager's. It is to be shut down before the effects manager. Used on the
/// client's thread. A listener may call any operation: what it destroys, Shutdown and Destroy take
/// place when the operation that called the listener is done.
class TOLEN_EXPORT IMgrLightShaders {
public:
    virtual ~IMgrLightShaders() = default;

    /// Shuts down and deletes this object.
    virtual void Destroy() = 0;

    /// Destroys all lights, receivers and real shaders. Safe to repeat. The names of the classes
    /// stay.
    virtual void Shutdown() = 0;

    /// Enters the names of the library's classes and makes a null shader for each interface, for
    /// which the shader libraries that declare them have to be loaded.
    /// @param manager, console borrowed until Shutdown
    /// @return false when either is null, when a null shader can't be made, in which case those
    ///         made before stay, and without Shutdown since the last Init
    virtual bool Init(IMgrEffects* manager, IMgrConsole* console) = 0;

    /// Enters the name of a further class of arrays, whose cells CreateShader makes lights.
    /// @return true
    virtual bool AddArrayClass(const std::string& name) = 0;
    /// Enters the name of a further receiver. @return true
    virtual bool AddReceiverClass(const std::string& name) = 0;

    /// Makes a light for a class of arrays, a receiver for a class of receivers, and a shader of
    /// the effects manager for any other class.
    /// @param name   of the class
    /// @param result takes the reasons when there is no shader of the class; may be null
    /// @return borrowed, to be given back with DestroyShader; null on failure
    virtual IShader* CreateShader(const std::string& name, Result* result) = 0;

    /// Destroys what CreateShader has made. The other lights keep their cells.
    /// @return false for a light or a receiver that isn't one of this manager, and for a light
    ///         whose real shader is gone; true also for null
    virtual bool DestroyShader(IShader* shader) = 0;

    /// Closes the holes that destroyed lights have left: gives the lights of each kind cells from 0
    /// up in the order of their creation, with their values, and shortens the arrays.
    /// @param unsupported true asks for what doesn't exist: the work is done all the same, a check
    ///                    fails, and the answer is false
    /// @return false when a value can't be moved or an array can't be shortened; the rest then
    /// stays
    ///         as it is
    virtual bool Update(bool unsupported) = 0;
};

/// The manager of light shaders of the process, made by the first call.
/// @return for DestroyMgrLightShaders; to be made ready by IMgrLightShaders::Init
TOLEN_EXPORT IMgrLightShaders* CreateMgrLightShaders();

/// Shuts the manager of light shaders of the process down and deletes it, if there is one.
TOLEN_EXPORT void DestroyMgrLightShaders();

} // namespace Tolen::Effects
