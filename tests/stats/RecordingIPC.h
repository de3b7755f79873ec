#pragma once

#include "TolenEffects/IPCWrapper.h"

#include <cstddef>
#include <string>

/// Keeps what is written to it.
class RecordingIPC : public IPCWrapper {
public:
    void Stop() override {}
    void Listen() override {}
    void Connect() override {}
    int BytesAvailable() override { return 0; }
    void Poll() override {}
    void Close() override {}
    int Read(void*, int) override { return -1; }
    int Write(const void* buffer, int count) override {
        text.append(static_cast<const char*>(buffer), static_cast<std::size_t>(count));
        return count;
    }

    std::string text;
};
