#pragma once

#include "TolenEffects/IPCWrapper.h"

#include <cstddef>
#include <cstdio>

namespace Tolen::Render {

/// Lets statistics be written to a file, which nobody connects to or reads from.
class FileWrapper : public IPCWrapper {
public:
    /// @param file borrowed
    explicit FileWrapper(std::FILE* file) : _file(file) {}

    void Stop() override {}
    void Listen() override {}
    void Connect() override {}
    int BytesAvailable() override { return 0; }
    void Poll() override {}
    void Close() override {}
    int Read(void*, int count) override { return count == 0 ? 0 : -1; }
    int Write(const void* buffer, int count) override {
        const auto size = static_cast<std::size_t>(count);
        return std::fwrite(buffer, 1, size, _file) == size ? count : -1;
    }

private:
    std::FILE* _file;
};

} // namespace Tolen::Render
