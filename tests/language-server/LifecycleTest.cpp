#include "language-server/LanguageClient.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <string>

/// Sessions of the language server from beginning to end, and what is no message at all.

namespace Tolen::Tests {
namespace {

constexpr int kParseError = -32700;
constexpr int kInvalidRequest = -32600;
constexpr int kMethodNotFound = -32601;
constexpr int kInvalidParams = -32602;
constexpr int kNotInitialized = -32002;
constexpr int kRequestCancelled = -32800;

int CodeOf(const Json& answer) {
    return answer.contains("error") ? answer["error"]["code"].get<int>() : 0;
}

TEST(LanguageServer, EndsWithStatusZeroBehindShutdown) {
    LanguageClient client;
    const Json result = client.Initialize();
    EXPECT_EQ(result["serverInfo"]["name"], "klsl-lsp");
    EXPECT_EQ(result["capabilities"]["positionEncoding"], "utf-16");
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, EndsWithStatusOneWithoutShutdown) {
    LanguageClient client;
    client.Initialize();
    client.Notify("exit", nullptr);
    EXPECT_EQ(client.Wait(), 1);
}

TEST(LanguageServer, EndsWithStatusOneWhenTheClientIsGone) {
    LanguageClient client;
    client.Initialize();
    client.CloseInput();
    EXPECT_EQ(client.Wait(), 1);
}

TEST(LanguageServer, AnswersWhatWasAskedBeforeTheInputEnded) {
    LanguageClient client;
    client.Initialize();
    const int id = client.SendRequest("workspace/symbol", {{"query", ""}});
    client.CloseInput();
    EXPECT_EQ(client.ReceiveAnswer(id)["result"], Json::array());
    EXPECT_EQ(client.Wait(), 1);
}

TEST(LanguageServer, WantsInitializeFirstAndOnce) {
    LanguageClient client;
    EXPECT_EQ(CodeOf(client.Ask("workspace/symbol", {{"query", ""}})), kNotInitialized);
    EXPECT_EQ(CodeOf(client.Ask("initialize", Json::object())), kInvalidParams);
    client.Initialize();
    EXPECT_EQ(CodeOf(client.Ask("initialize", {{"capabilities", Json::object()}})),
              kInvalidRequest);
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, AnswersNothingElseBehindShutdown) {
    LanguageClient client;
    client.Initialize();
    EXPECT_EQ(client.Request("shutdown", nullptr), nullptr);
    EXPECT_EQ(CodeOf(client.Ask("workspace/symbol", {{"query", ""}})), kInvalidRequest);
    client.Notify("exit", nullptr);
    EXPECT_EQ(client.Wait(), 0);
}

TEST(LanguageServer, KnowsNotEveryRequestButPassesOverNotifications) {
    LanguageClient client;
    client.Initialize();
    client.Notify("textDocument/willSave", Json::object());
    client.Notify("$/setTrace", {{"value", "off"}});
    EXPECT_EQ(CodeOf(client.Ask("textDocument/moniker", Json::object())), kMethodNotFound);
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, RefusesRequestsWithoutWhatTheyNeed) {
    LanguageClient client;
    client.Initialize();
    const Json position = {{"line", 0}, {"character", 0}};
    const Json unknown = {{"uri", "file:///nowhere/a.klsl"}};
    client.Open("untitled:a", "class A { }");
    for (const Json& parameters :
         {Json(), Json::array(), Json::object(), Json{{"textDocument", 7}},
          Json{{"textDocument", unknown}, {"position", position}},
          Json{{"textDocument", {{"uri", "untitled:a"}}}},
          Json{{"textDocument", {{"uri", "untitled:a"}}}, {"position", {{"line", 0}}}},
          Json{{"textDocument", {{"uri", "untitled:a"}}},
               {"position", {{"line", -1}, {"character", 0}}}},
          Json{{"textDocument", {{"uri", "untitled:a"}}},
               {"position", {{"line", 0.5}, {"character", "0"}}}}}) {
        EXPECT_EQ(CodeOf(client.Ask("textDocument/hover", parameters)), kInvalidParams)
            << parameters;
    }
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, CancelsRequestsThatWait) {
    LanguageClient client;
    client.Initialize();
    // One write, so that all of it has come when the first request is handled.
    std::string bytes;
    for (const Json& message :
         {Json{{"jsonrpc", "2.0"},
               {"id", "a"},
               {"method", "workspace/symbol"},
               {"params", {{"query", ""}}}},
          Json{{"jsonrpc", "2.0"},
               {"id", "b"},
               {"method", "workspace/symbol"},
               {"params", {{"query", ""}}}},
          Json{{"jsonrpc", "2.0"}, {"method", "$/cancelRequest"}, {"params", {{"id", "b"}}}},
          Json{{"jsonrpc", "2.0"}, {"method", "$/cancelRequest"}, {"params", {{"id", 77}}}},
          Json{{"jsonrpc", "2.0"}, {"method", "$/cancelRequest"}}}) {
        const std::string body = message.dump();
        bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }
    client.SendBytes(bytes);
    EXPECT_EQ(client.ReceiveAnswer("a")["result"], Json::array());
    EXPECT_EQ(CodeOf(client.ReceiveAnswer("b")), kRequestCancelled);
    EXPECT_EQ(client.End(), 0);
}

struct Refused {
    std::string name;
    std::string body;
    int code;
};

TEST(LanguageServer, RefusesMessagesThatAreNone) {
    LanguageClient client;
    for (const Refused& refused : {
             Refused{"no JSON", "{", kParseError},
             Refused{"nothing", "", kParseError},
             Refused{"no UTF-8", "\"\xff\"", kParseError},
             Refused{"a deep one", std::string(100000, '['), kParseError},
             Refused{"a list", "[]", kInvalidRequest},
             Refused{"a number", "7", kInvalidRequest},
             Refused{"no method", R"({"jsonrpc": "2.0"})", kInvalidRequest},
             Refused{"a number for a method", R"({"jsonrpc": "2.0", "method": 7})",
                     kInvalidRequest},
             Refused{"no version", R"({"method": "exit"})", kInvalidRequest},
             Refused{"an id that is none", R"({"jsonrpc": "2.0", "method": "shutdown", "id": [1]})",
                     kInvalidRequest},
         }) {
        client.SendBytes("Content-Length: " + std::to_string(refused.body.size()) + "\r\n\r\n" +
                         refused.body);
        const Json answer = client.Receive();
        EXPECT_EQ(CodeOf(answer), refused.code) << refused.name << answer;
        EXPECT_TRUE(answer["id"].is_null()) << refused.name;
    }
    client.Initialize();
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, TellsBadHeadersOnceAndGoesOnWithTheNext) {
    for (const std::string& bytes :
         {std::string("Content-Size: 2\r\n\r\n{}"), std::string("Content-Length: -1\r\n\r\n{}"),
          std::string("Content-Length: 2x\r\n\r\n{}"), std::string("nothing\r\n\r\n{}"),
          std::string("Content-Length: 99999999999999999999999\r\n\r\n"),
          std::string("Content-Length: 2\r\nContent-Length: 2\r\n\r\n{}"),
          std::string(100000, 'x') + "\n"}) {
        LanguageClient client;
        client.SendBytes(bytes);
        EXPECT_EQ(CodeOf(client.Receive()), kParseError) << bytes.substr(0, 40);
        client.Initialize();
        EXPECT_EQ(client.End(), 0) << bytes.substr(0, 40);
    }
}

TEST(LanguageServer, SkipsMessagesThatAreTooLong) {
    LanguageClient client;
    const std::size_t length = (std::size_t{64} << 20) + 1;
    client.SendBytes("Content-Length: " + std::to_string(length) + "\r\n\r\n");
    EXPECT_EQ(CodeOf(client.Receive()), kParseError);
    const std::string piece(1 << 20, ' ');
    for (std::size_t sent = 0; sent < length; sent += piece.size()) {
        client.SendBytes(std::string_view(piece).substr(0, length - sent));
    }
    client.Initialize();
    EXPECT_EQ(client.End(), 0);
}

TEST(LanguageServer, TakesHeadersInAnyCaseAndInPieces) {
    LanguageClient client;
    const std::string body = R"({"jsonrpc": "2.0", "id": 1, "method": "shutdown"})";
    const std::string bytes = "Content-Type: application/vscode-jsonrpc; charset=utf-8\r\n"
                              "content-length:" +
                              std::to_string(body.size()) + "\r\n\r\n" + body;
    for (const char byte : bytes) {
        client.SendBytes({&byte, 1});
    }
    EXPECT_EQ(CodeOf(client.ReceiveAnswer(1)), kNotInitialized);
}

TEST(LanguageServer, TellsMisuseOfItsCommandLine) {
    EXPECT_EQ(RunProgram("klsl-lsp", {"--nothing"}).status, 2);
    EXPECT_EQ(RunProgram("klsl-lsp", {"--version"}).status, 0);
    const Ended ended = RunProgram("klsl-lsp", {"--stdio", "-I", "folder"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
}

} // namespace
} // namespace Tolen::Tests
