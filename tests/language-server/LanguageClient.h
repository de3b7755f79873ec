#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace Tolen::Tests {

using Json = nlohmann::json;

/// A text with places in it, each written as "@", which KLSL hasn't.
struct MarkedText {
    /// @param marked ASCII
    explicit MarkedText(const std::string& marked);

    std::string text;
    std::vector<Json> places; ///< positions of the protocol
};

/// An editor: starts the language server and speaks with it over pipes. What takes longer than a
/// minute fails with an exception.
class LanguageClient {
public:
    explicit LanguageClient(const std::vector<std::string>& arguments = {});
    /// Kills what is left.
    ~LanguageClient();
    LanguageClient(const LanguageClient&) = delete;
    LanguageClient& operator=(const LanguageClient&) = delete;

    /// @{ What goes to the server.
    void SendBytes(std::string_view bytes);
    void Send(const Json& message);
    void Notify(const std::string& method, const Json& parameters);
    /// @return its id
    int SendRequest(const std::string& method, const Json& parameters);
    void CloseInput();
    /// @}

    /// The next message of the server; null at the end of its output.
    Json Receive();
    /// The next message that fits; others are kept for later.
    Json ReceiveAnswer(const Json& id);
    Json ReceiveNotification(const std::string& method);

    /// Sends a request and waits. @return the whole answer
    Json Ask(const std::string& method, const Json& parameters);
    /// The same, and @return the result @throw std::runtime_error when there is none
    Json Request(const std::string& method, const Json& parameters);

    /// Begins a session. @return the result @param folder of the workspace; none when empty
    Json Initialize(const Json& capabilities = Json::object(), const std::string& folder = {},
                    const Json& options = nullptr);
    void Open(const std::string& uri, const std::string& text, int version = 1);
    /// Asks about a place in a document.
    Json RequestAt(const std::string& method, const std::string& uri, const Json& position);
    /// The next list of messages about a document, of this version when one is asked for.
    Json ReceiveDiagnostics(const std::string& uri, int version = 0);

    /// Ends the session as an editor does. @return the exit status
    int End();
    /// Waits for the end. @return the exit status; -1 when it was ended by a signal
    int Wait();

private:
    bool _Fill();
    Json _Find(const std::function<bool(const Json&)>& fits);

    pid_t _process = 0;
    int _toServer = -1;
    int _fromServer = -1;
    int _lastId = 0;
    std::string _bytes;
    std::deque<Json> _kept;
};

/// "file://" and the path, which holds letters only.
std::string UriOf(const std::string& path);

} // namespace Tolen::Tests
