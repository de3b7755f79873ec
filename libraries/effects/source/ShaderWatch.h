#pragma once

#include "Shader.h"

namespace Tolen::Effects {

class Shader::Watch {
public:
    explicit Watch(Shader* shader) : _pShader(shader), _pOuter(shader->_pWatch) {
        shader->_pWatch = this;
    }
    ~Watch() {
        if (_pShader != nullptr) {
            _pShader->_pWatch = _pOuter;
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    bool IsAlive() const { return _pShader != nullptr; }

    /// For the shader that dies: tells this one and all around it.
    void Release() {
        for (Watch* watch = this; watch != nullptr; watch = watch->_pOuter) {
            watch->_pShader = nullptr;
        }
    }

private:
    Shader* _pShader; ///< null once it is gone
    Watch* _pOuter;
};

} // namespace Tolen::Effects
