#pragma once

#include "Protocol.h"

namespace Tolen::LanguageServer {

/// Writes messages with their headers to a file descriptor.
class MessageWriter {
public:
    /// @param file borrowed
    explicit MessageWriter(int file) : _file(file) {}

    /// Waits until the message is written. Text that is no UTF-8 is written as U+FFFD.
    void Write(const Json& message);

    /// Whether nobody reads any more; what comes behind is dropped.
    bool HasFailed() const { return _hasFailed; }

private:
    int _file;
    bool _hasFailed = false;
};

} // namespace Tolen::LanguageServer
