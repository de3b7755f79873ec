#include "engine/Ir.h"

#include "engine/executor/Instruction.h"

namespace Tolen::OpenKL {

namespace {

constexpr OperationInfo kInfos[] = {
#define TOLEN_INFO(name, arity, commutes) {#name, arity, commutes},
    TOLEN_OPENKL_OPERATIONS(TOLEN_INFO)
#undef TOLEN_INFO
};

} // namespace

const OperationInfo& GetInfo(Operation operation) {
    return kInfos[static_cast<std::size_t>(operation)];
}

int CountArguments(IrKind kind, Operation operation) {
    switch (kind) {
    case IrKind::Operation:
        return GetInfo(operation).arity;
    case IrKind::LoadTable:
    case IrKind::LoadBlock:
    case IrKind::StoreVariable:
    case IrKind::LoadArray:
    case IrKind::FillArray:
    case IrKind::ServiceResult:
    case IrKind::StoreState:
    case IrKind::StoreOutput:
        return 1;
    case IrKind::StoreArray:
        return 2;
    case IrKind::Constant:
    case IrKind::LoadConstant:
    case IrKind::LoadLane:
    case IrKind::LoadInterpolated:
    case IrKind::LoadRayAttribute:
    case IrKind::LoadVariable:
    case IrKind::Service:
        return 0;
    }
    return 0;
}

bool IrUnit::HasEffect(const IrOp& op) const {
    switch (op.kind) {
    case IrKind::StoreVariable:
    case IrKind::StoreArray:
    case IrKind::FillArray:
    case IrKind::StoreState:
    case IrKind::StoreOutput:
        return true;
    case IrKind::Service:
        return op.word == static_cast<std::uint32_t>(Service::Spawn) ||
               op.word == static_cast<std::uint32_t>(Service::Accumulate) ||
               op.word == static_cast<std::uint32_t>(Service::Discard);
    default:
        return false;
    }
}

} // namespace Tolen::OpenKL
