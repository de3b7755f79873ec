#pragma once

#include <string>
#include <string_view>

namespace Tolen::Effects {

class Definitions;
struct DirectiveLine;
struct PreprocessorState;

/// Follows the directives in the text of a file and in those that it includes, line by line. What
/// comes of them goes to a client, each piece with the line that it comes from.
///
/// Every line of a file becomes one line of the text, so that the parser can tell lines of the
/// file; only an #include is replaced by what it names.
class SourceReader {
public:
    /// Where in the file in work something stands. The texts are borrowed for the call.
    struct Place {
        int line;              ///< from 1
        std::string_view text; ///< the whole line, without its line feed
        std::string_view word; ///< of a directive, which is meant; empty for the directive itself
    };

    /// Something that the reader has to say.
    struct Remark {
        enum Kind {
            kKind_Redefinition, ///< of the name in the place; reading goes on
            kKind_Error,
            kKind_Limit, ///< is exceeded, which ends the reading; names the file and the line
        };

        Kind kind;
        std::string text; ///< without a line feed at its end
        Place place;
    };

    /// Whom a reader reads for.
    class Client {
    public:
        virtual ~Client() = default;

        /// A file begins: those names come into force that are defined without a #define.
        virtual void DefineNames(Definitions& definitions) = 0;
        /// Reads a file whose text stands in the place of an #include. Once that is through,
        /// EndIncluded is called, if this answered true.
        /// @param path the full path of what was read
        /// @return false when there is no text, which ends the reading
        virtual bool BeginIncluded(const std::string& file, const Place& place, std::string& path,
                                   std::string& text) = 0;
        virtual void EndIncluded() = 0;
        /// Makes a library of a file that an #import names, by a reader with the same state.
        /// @return false when there is none, which ends the reading
        virtual bool Import(const std::string& file, const Place& place) = 0;
        /// A name has a new value.
        virtual void OnDefine(const std::string& name, const Place& place) = 0;
        /// The next line of the text. @param text what has become of the line of the file
        virtual void Write(const Place& place, const std::string& text,
                           const Definitions& definitions) = 0;
        virtual void Tell(const Remark& remark) = 0;
    };

    /// @param client borrowed @param state borrowed; what the files of one library share
    SourceReader(Client& client, PreprocessorState& state) : _client(client), _state(state) {}

    /// Reads the text of a file. @param path the full path of the file, for messages
    /// @return false, told to the client, when it can't be read to its end
    bool Read(const std::string& path, const std::string& text);

private:
    struct File;

    void _ReadLine(File& file);
    void _Follow(File& file, const DirectiveLine& directive);
    void _Include(File& file, const DirectiveLine& directive);
    void _Import(File& file, const DirectiveLine& directive);
    void _Define(File& file, const DirectiveLine& directive);
    bool _Open(File& file, const DirectiveLine& directive, const char* word, std::string& name);
    void _ReadText(File& file);
    void _Write(File& file, const std::string& text);
    void _Tell(Remark::Kind kind, const std::string& text, const Place& place);
    void _Fail(File& file, const std::string& limit);
    void _FailExpandedSource(File& file);

    Client& _client;
    PreprocessorState& _state;
};

} // namespace Tolen::Effects
