#include "TolenEffects/MgrEffects.h"

int main() {
    Tolen::Effects::MgrEffects manager;
    return manager.GetProfiler() == nullptr ? 0 : 1;
}
