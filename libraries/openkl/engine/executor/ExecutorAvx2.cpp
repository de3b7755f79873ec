#define TOLEN_EXECUTOR_NAME ExecuteAvx2
#define TOLEN_EXECUTOR_BYTES 32
#include "engine/executor/Executor.inl"
