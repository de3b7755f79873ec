#pragma once

#include "TolenCore/Export.h"

/// One end of a connection between two processes, to which statistics are written.
class TOLEN_EXPORT IPCWrapper {
public:
    virtual ~IPCWrapper() = default;

    /// Ends the connection, and whatever waits for one or for its bytes. May come from any thread.
    virtual void Stop() = 0;
    /// Waits for a client.
    virtual void Listen() = 0;
    /// Begins to connect as a client; Poll() brings it to its end.
    virtual void Connect() = 0;
    /// Bytes that can be read without waiting; 0 without a connection.
    virtual int BytesAvailable() = 0;
    /// Brings on what Connect() has begun; it waits for nothing.
    virtual void Poll() = 0;
    /// Ends the connection from this side; the object can be used again.
    virtual void Close() = 0;
    /// Waits for @p count bytes.
    /// @param buffer takes them
    /// @param count  their number
    /// @return the bytes read, fewer only at the end of the connection; -1 after a failure, and at
    ///         the end when there were none
    virtual int Read(void* buffer, int count) = 0;
    /// Waits until @p count bytes are on their way.
    /// @param buffer holds them
    /// @param count  their number
    /// @return as Read() answers
    virtual int Write(const void* buffer, int count) = 0;
};
