#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Tolen::LanguageServer {

/// Cuts a stream of bytes into messages, each behind a header such as "Content-Length: 20\r\n\r\n".
/// What is no header is told once, and reading goes on with the next thing that looks like one.
class MessageReader {
public:
    static constexpr std::size_t kLimitHeader = 8192;
    static constexpr std::size_t kLimitBody = std::size_t{64} << 20;

    struct Message {
        std::string text;  ///< the body
        std::string error; ///< what is wrong with the header; then there is no body
    };

    void Append(std::string_view bytes);

    /// The next message that is there as a whole.
    std::optional<Message> Take();

private:
    enum State {
        kState_Header,
        kState_Body,
        kState_Skipping, ///< over a body that is too long
        kState_Lost,     ///< in search of a header
    };

    std::optional<Message> _TakeHeader();
    bool _FindHeader();
    void _Consume(std::size_t count);
    std::string_view _GetRest() const { return std::string_view(_bytes).substr(_begin); }

    State _state = kState_Header;
    std::string _bytes;
    std::size_t _begin = 0;  ///< what lies before has been read
    std::size_t _length = 0; ///< of the body, or of what is left to skip
};

} // namespace Tolen::LanguageServer
