#include "MessageLoop.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace Tolen::LanguageServer {

namespace {

bool IsCancellation(const Json& message) {
    const auto method = message.is_object() ? message.find("method") : message.end();
    return method != message.end() && *method == "$/cancelRequest";
}

/// Milliseconds for poll, at least until @p time; -1 for none.
int GetTimeout(std::optional<DiagnosticsPublisher::Clock::time_point> time) {
    if (!time.has_value()) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*time - DiagnosticsPublisher::Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

} // namespace

int MessageLoop::Run() {
    while (!_server.GetExitStatus().has_value() && !_writer.HasFailed()) {
        if (_isAtEnd && _messages.empty()) {
            return 1;
        }
        _Wait();
        if (!_messages.empty()) {
            const Json message = std::move(_messages.front());
            _messages.pop_front();
            _server.Handle(message);
        }
    }
    return _server.GetExitStatus().value_or(1);
}

/// Waits for something to do, and reads what there is; not at all while messages wait.
void MessageLoop::_Wait() {
    DiagnosticsPublisher& publisher = _server.GetPublisher();
    pollfd files[] = {{_isAtEnd ? -1 : _input, POLLIN, 0}, {publisher.GetFile(), POLLIN, 0}};
    const int count = poll(files, 2, _messages.empty() ? GetTimeout(publisher.GetStart()) : 0);
    if (count > 0 && files[0].revents != 0) {
        _ReadInput();
    }
    if (count > 0 && files[1].revents != 0) {
        publisher.Read();
    }
    const auto start = publisher.GetStart();
    if (_messages.empty() && start.has_value() && *start <= DiagnosticsPublisher::Clock::now()) {
        publisher.Start();
    }
}

void MessageLoop::_ReadInput() {
    char bytes[65536];
    const ssize_t count = read(_input, bytes, sizeof bytes);
    if (count <= 0) {
        _isAtEnd = count == 0 || errno != EINTR;
        return;
    }
    _reader.Append({bytes, static_cast<std::size_t>(count)});
    while (const std::optional<MessageReader::Message> message = _reader.Take()) {
        if (message->error.empty()) {
            _Enqueue(message->text);
        } else {
            _writer.Write(MakeErrorAnswer(nullptr, ErrorCode::ParseError, message->error));
        }
    }
}

void MessageLoop::_Enqueue(const std::string& text) {
    try {
        Json message = ParseMessage(text);
        if (IsCancellation(message)) {
            _Cancel(message);
        } else {
            _messages.push_back(std::move(message));
        }
    } catch (const RequestError& error) {
        _writer.Write(MakeErrorAnswer(nullptr, error.GetCode(), error.what()));
    }
}

/// Answers a request that still waits; one that doesn't has its answer, or never came.
void MessageLoop::_Cancel(const Json& message) {
    const Json* const id = FindMember(message, "/params/id");
    if (id == nullptr || !(id->is_string() || id->is_number_integer())) {
        return;
    }
    const auto request =
        std::find_if(_messages.begin(), _messages.end(), [id](const Json& waiting) {
            return waiting.is_object() && waiting.contains("method") && waiting.contains("id") &&
                   waiting["id"] == *id;
        });
    if (request != _messages.end()) {
        _writer.Write(MakeErrorAnswer(*id, ErrorCode::RequestCancelled, "cancelled"));
        _messages.erase(request);
    }
}

} // namespace Tolen::LanguageServer
