#pragma once

#include "TolenEffects/IPCWrapper.h"

#include <memory>
#include <string>

/// A connection over TCP: the server's end for one client after another, or a client's end.
///
/// One thread uses the object, and any thread may call Stop(), after which it can only be
/// destroyed.
class TOLEN_EXPORT IPCWrapperTCPIP : public IPCWrapper {
public:
    /// An end without a connection.
    /// @param name      the machine that Connect() goes to
    /// @param firstPort where Listen() and Connect() try first, 1 to 65535; no other port is ever
    ///                  found
    /// @param lastPort  where Listen() tries last
    IPCWrapperTCPIP(const std::string& name, int firstPort, int lastPort);
    ~IPCWrapperTCPIP() override;
    IPCWrapperTCPIP(const IPCWrapperTCPIP&) = delete;
    IPCWrapperTCPIP& operator=(const IPCWrapperTCPIP&) = delete;

    /// Wakes a thread that waits in Listen(), Read() or Write(): its call gives up.
    void Stop() override;
    /// Waits for one client, and listens no more while that is served. GetPortFound() tells whether
    /// one came.
    void Listen() override;
    /// Waits for nothing but the address of the machine. Call Poll() until IsConnected() or until
    /// GetSocket() is -1, which means that nobody listens there.
    void Connect() override;
    int BytesAvailable() override;
    /// Looks whether Connect() has got through, and closes if it can't.
    void Poll() override;
    void Close() override;
    int Read(void* buffer, int count) override;
    int Write(const void* buffer, int count) override;
    /// The socket of the connection, -1 for none.
    virtual int GetSocket();

    /// Whether there is a connection: from when Connect() or Listen() has got through until
    /// Close().
    bool IsConnected() const;
    /// The port on which Listen() waits or has found its client; -1 after it has given up and
    /// after Close().
    int GetPortFound() const;
    /// Whether Listen() gave up because the port can't be had.
    bool IsPortTaken() const;

private:
    struct Connection;

    int _OpenListener();
    bool _AcceptClient(int listener);
    void _WakeListener();

    std::unique_ptr<Connection> _pConnection;
    std::string _name;
    int _portFound = -1;
    int _portFirst;
    int _portLast;
    bool _isStopping = false;
    bool _isPortTaken = false;
};
