#include "IStorage.h"

namespace Tolen::Effects {

bool IStorage::Set(IShader**, int) {
    return false;
}

bool IStorage::Set(IShader*, int) {
    return false;
}

bool IStorage::Get(IShader*&, int) {
    return false;
}

#define TOLEN_REFUSE(specifier, T, name, bytes)                                                    \
    bool IStorage::Set(const T*, int) {                                                            \
        return false;                                                                              \
    }                                                                                              \
    bool IStorage::Set(const T&, int) {                                                            \
        return false;                                                                              \
    }                                                                                              \
    bool IStorage::Get(T&, int) {                                                                  \
        return false;                                                                              \
    }
TOLEN_ELEMENT_TYPES(TOLEN_REFUSE)
#undef TOLEN_REFUSE

} // namespace Tolen::Effects
