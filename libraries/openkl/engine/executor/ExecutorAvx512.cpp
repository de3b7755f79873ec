#define TOLEN_EXECUTOR_NAME ExecuteAvx512
#define TOLEN_EXECUTOR_BYTES 64
#include "engine/executor/Executor.inl"
