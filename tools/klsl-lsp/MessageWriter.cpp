#include "MessageWriter.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <unistd.h>

namespace Tolen::LanguageServer {

void MessageWriter::Write(const Json& message) {
    const std::string body = message.dump(-1, ' ', false, Json::error_handler_t::replace);
    const std::string text = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    for (std::string_view rest = text; !rest.empty() && !_hasFailed;) {
        const ssize_t count = write(_file, rest.data(), rest.size());
        if (count >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        } else {
            _hasFailed = errno != EINTR;
        }
    }
}

} // namespace Tolen::LanguageServer
