#include "language-server/LanguageClient.h"

#include "support/paths/SourceFolder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolen::Tests {

namespace {

constexpr int kMillisecondsToWait = 60000;

void WaitUntilReady(int file, short events) {
    pollfd ready{file, events, 0};
    if (poll(&ready, 1, kMillisecondsToWait) <= 0) {
        throw std::runtime_error("the server doesn't answer");
    }
}

} // namespace

MarkedText::MarkedText(const std::string& marked) {
    int line = 0;
    int character = 0;
    for (const char c : marked) {
        if (c == '@') {
            places.push_back({{"line", line}, {"character", character}});
            continue;
        }
        text += c;
        character = c == '\n' ? 0 : character + 1;
        line += c == '\n' ? 1 : 0;
    }
}

LanguageClient::LanguageClient(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {ProgramFolder() + "/klsl-lsp"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output[1], STDOUT_FILENO);
    const int error =
        posix_spawn(&_process, pointers.front(), &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    close(input[0]);
    close(output[1]);
    _toServer = input[1];
    _fromServer = output[0];
    if (error != 0) {
        throw std::runtime_error(words.front() + " can't be started");
    }
    // A server that is gone shows itself by what it answers, not by a signal.
    std::signal(SIGPIPE, SIG_IGN);
}

LanguageClient::~LanguageClient() {
    CloseInput();
    close(_fromServer);
    if (_process != 0) {
        kill(_process, SIGKILL);
        Wait();
    }
}

void LanguageClient::SendBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        WaitUntilReady(_toServer, POLLOUT);
        const ssize_t count = write(_toServer, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            throw std::runtime_error("the server doesn't read");
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

void LanguageClient::Send(const Json& message) {
    const std::string body = message.dump();
    SendBytes("Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

void LanguageClient::Notify(const std::string& method, const Json& parameters) {
    Send({{"jsonrpc", "2.0"}, {"method", method}, {"params", parameters}});
}

int LanguageClient::SendRequest(const std::string& method, const Json& parameters) {
    Send({{"jsonrpc", "2.0"}, {"id", ++_lastId}, {"method", method}, {"params", parameters}});
    return _lastId;
}

void LanguageClient::CloseInput() {
    if (_toServer >= 0) {
        close(_toServer);
        _toServer = -1;
    }
}

/// @return false at the end
bool LanguageClient::_Fill() {
    char bytes[65536];
    WaitUntilReady(_fromServer, POLLIN);
    const ssize_t count = read(_fromServer, bytes, sizeof bytes);
    if (count > 0) {
        _bytes.append(bytes, static_cast<std::size_t>(count));
    }
    return count > 0;
}

Json LanguageClient::Receive() {
    const std::string name = "Content-Length: ";
    std::size_t end = std::string::npos;
    while ((end = _bytes.find("\r\n\r\n")) == std::string::npos) {
        if (!_Fill()) {
            return nullptr;
        }
    }
    if (!_bytes.starts_with(name)) {
        throw std::runtime_error("the server wrote something else than a message: " + _bytes);
    }
    const std::size_t length = std::stoul(_bytes.substr(name.size()));
    const std::size_t begin = end + 4;
    while (_bytes.size() < begin + length) {
        if (!_Fill()) {
            throw std::runtime_error("the server stopped in a message");
        }
    }
    Json message = Json::parse(_bytes.substr(begin, length));
    _bytes.erase(0, begin + length);
    return message;
}

Json LanguageClient::_Find(const std::function<bool(const Json&)>& fits) {
    const auto found = std::find_if(_kept.begin(), _kept.end(), fits);
    if (found != _kept.end()) {
        Json message = *found;
        _kept.erase(found);
        return message;
    }
    while (true) {
        Json message = Receive();
        if (message.is_null()) {
            throw std::runtime_error("the server is gone");
        }
        if (fits(message)) {
            return message;
        }
        _kept.push_back(std::move(message));
    }
}

Json LanguageClient::ReceiveAnswer(const Json& id) {
    return _Find([&id](const Json& message) {
        return !message.contains("method") && message.contains("id") && message["id"] == id;
    });
}

Json LanguageClient::ReceiveNotification(const std::string& method) {
    return _Find([&method](const Json& message) {
        return message.contains("method") && message["method"] == method;
    });
}

Json LanguageClient::Ask(const std::string& method, const Json& parameters) {
    return ReceiveAnswer(SendRequest(method, parameters));
}

Json LanguageClient::Request(const std::string& method, const Json& parameters) {
    const Json answer = Ask(method, parameters);
    if (!answer.contains("result")) {
        throw std::runtime_error(method + " failed: " + answer.dump());
    }
    return answer["result"];
}

Json LanguageClient::Initialize(const Json& capabilities, const std::string& folder,
                                const Json& options) {
    Json parameters = {
        {"processId", nullptr}, {"rootUri", nullptr}, {"capabilities", capabilities}};
    if (!folder.empty()) {
        parameters["workspaceFolders"] = {{{"uri", UriOf(folder)}, {"name", "folder"}}};
    }
    if (!options.is_null()) {
        parameters["initializationOptions"] = options;
    }
    Json result = Request("initialize", parameters);
    Notify("initialized", Json::object());
    return result;
}

void LanguageClient::Open(const std::string& uri, const std::string& text, int version) {
    Notify("textDocument/didOpen",
           {{"textDocument",
             {{"uri", uri}, {"languageId", "klsl"}, {"version", version}, {"text", text}}}});
}

Json LanguageClient::RequestAt(const std::string& method, const std::string& uri,
                               const Json& position) {
    return Request(method, {{"textDocument", {{"uri", uri}}}, {"position", position}});
}

Json LanguageClient::ReceiveDiagnostics(const std::string& uri, int version) {
    return _Find([&uri, version](const Json& message) {
        return message.value("method", "") == "textDocument/publishDiagnostics" &&
               message["params"]["uri"] == uri &&
               (version == 0 || message["params"].value("version", 0) == version);
    })["params"]["diagnostics"];
}

int LanguageClient::End() {
    Request("shutdown", nullptr);
    Notify("exit", nullptr);
    return Wait();
}

int LanguageClient::Wait() {
    int status = 0;
    waitpid(_process, &status, 0);
    _process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string UriOf(const std::string& path) {
    return "file://" + path;
}

} // namespace Tolen::Tests
