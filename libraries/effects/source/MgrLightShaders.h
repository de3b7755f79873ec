#pragma once

#include "LightShaderRecord.h"
#include "Shader_LightShaderReceiver.h"

#include "TolenEffects/IMgrLightShaders.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects {

/// The one implementation of IMgrLightShaders.
class MgrLightShaders final : public IMgrLightShaders {
public:
    MgrLightShaders() = default;
    ~MgrLightShaders() override;
    MgrLightShaders(const MgrLightShaders&) = delete;
    MgrLightShaders& operator=(const MgrLightShaders&) = delete;

    void Destroy() override;
    void Shutdown() override;
    bool Init(IMgrEffects* manager, IMgrConsole* console) override;
    bool AddArrayClass(const std::string& name) override;
    bool AddReceiverClass(const std::string& name) override;
    IShader* CreateShader(const std::string& name, Result* result) override;
    bool DestroyShader(IShader* shader) override;
    bool Update(bool unsupported) override;

private:
    /// An operation of a client in progress. What listeners end during it stays until it is done.
    class Operation;

    bool _InitNullShaders();
    bool _InitNullShader(const std::string& className);

    IShader* _CreateLightShader(const std::string& name, Result* result);
    IShader* _CreateReceiver(const std::string& name, Result* result);
    bool _ConnectNullShaders(Shader_LightShader* wrapper);
    bool _ConnectNullShader(IParameter* parameter);
    bool _RemoveLightShader(Shader_LightShader* wrapper);
    bool _RemoveReceiver(Shader_LightShaderReceiver* receiver);

    /// Gives the arrays of @p shader a length, which is read again for each as listeners may
    /// change it. Stops at the first that can't take it.
    bool _ResizeParameters(IShader* shader, const int& length);
    bool _ResizeMembers(IShader* shader, const int& length);
    bool _UpdateRecord(LightShaderRecord& record);

    /// Whether a listener has asked for the end of everything.
    bool _IsGoing() const { return _mustShutdown || _mustDestroy; }
    void _EndViews();
    void _Shutdown();
    /// @return false when something that should be there is gone
    bool _ShutdownViews();

    IMgrEffects* _pMgrEffects = nullptr;                ///< borrowed
    IMgrConsole* _pConsole = nullptr;                   ///< borrowed
    std::map<std::string, BorrowedShader> _nullShaders; ///< by interface
    std::map<std::string, LightShaderRecord> _records;  ///< by class
    std::map<std::uint64_t, std::unique_ptr<Shader_LightShaderReceiver>> _receivers;
    std::set<std::string> _arrayClasses;
    std::set<std::string> _receiverClasses;

    int _countOperations = 0;
    std::vector<std::unique_ptr<Shader_PassThrough>> _ending; ///< until the operation is done
    bool _isShuttingDown = false;
    bool _mustShutdown = false;
    bool _mustDestroy = false;
};

} // namespace Tolen::Effects
