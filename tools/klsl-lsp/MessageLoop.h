#pragma once

#include "MessageReader.h"
#include "MessageWriter.h"
#include "Server.h"

#include <deque>

namespace Tolen::LanguageServer {

/// Reads messages from a file descriptor and has the server handle them, one after the other, with
/// checks in between. What has come is read before the next message is handled, so that requests
/// can be cancelled while they wait.
class MessageLoop {
public:
    /// @param input, server, writer borrowed
    MessageLoop(int input, Server& server, MessageWriter& writer)
        : _input(input), _server(server), _writer(writer) {}

    /// Until the client ends the session or is gone. @return the exit status
    int Run();

private:
    void _Wait();
    void _ReadInput();
    void _Enqueue(const std::string& text);
    void _Cancel(const Json& message);

    int _input;
    Server& _server;
    MessageWriter& _writer;
    MessageReader _reader;
    std::deque<Json> _messages;
    bool _isAtEnd = false;
};

} // namespace Tolen::LanguageServer
