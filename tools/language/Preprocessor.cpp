#include "Preprocessor.h"

#include "language/SourceAssets.h"

#include "PreprocessorState.h"
#include "SourceReader.h"
#include "WordCharacter.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

using namespace Effects;

namespace {

/// Where @p word stands in a directive, behind its first word. Empty when it isn't there.
SourceRange ColumnsOf(std::string_view line, std::string_view word) {
    const std::size_t sign = line.find('#');
    const std::size_t begin = line.find(word, std::min(line.find_first_of(" \t", sign), sign));
    return begin == std::string_view::npos || word.empty()
               ? SourceRange{}
               : SourceRange{begin, begin + word.size()};
}

/// The directive itself, such as "#else".
SourceRange ColumnsOfDirective(std::string_view line) {
    const std::size_t begin = std::min(line.find('#'), line.size());
    return {begin, std::min(line.find_first_of(" \t\r", begin), line.size())};
}

/// What replaces what in a line that has become @p text. Words are taken one by one; where names
/// that are no words have been replaced, all that differs is taken for one.
std::vector<PreprocessedText::Replacement>
FindReplaced(const Definitions& definitions, std::string_view line, std::string_view text) {
    std::vector<PreprocessedText::Replacement> replaced;
    std::string joined;
    for (std::size_t at = 0; at < line.size() && joined.size() <= text.size();) {
        if (!IsWordCharacter(line[at])) {
            joined += line[at++];
            continue;
        }
        std::size_t end = at;
        while (end < line.size() && IsWordCharacter(line[end])) {
            ++end;
        }
        const std::string_view word = line.substr(at, end - at);
        std::string value(word);
        definitions.Substitute(value, text.size());
        if (value != word) {
            replaced.push_back({{at, end}, {joined.size(), joined.size() + value.size()}});
        }
        joined += value;
        at = end;
    }
    if (joined == text) {
        return replaced;
    }
    const std::size_t shorter = std::min(line.size(), text.size());
    std::size_t front = 0;
    while (front < shorter && line[front] == text[front]) {
        ++front;
    }
    std::size_t back = 0;
    while (back < shorter - front && line[line.size() - 1 - back] == text[text.size() - 1 - back]) {
        ++back;
    }
    return {{{front, line.size() - back}, {front, text.size() - back}}};
}

} // namespace

/// Takes what comes of one AddLibrary call.
class Preprocessor::Client : public SourceReader::Client {
public:
    explicit Client(Preprocessor& preprocessor) : _preprocessor(preprocessor) {}

    bool ReadLibrary(const std::string& file);

    void DefineNames(Definitions& definitions) override;
    bool BeginIncluded(const std::string& file, const SourceReader::Place& place, std::string& path,
                       std::string& text) override;
    void EndIncluded() override;
    bool Import(const std::string& file, const SourceReader::Place& place) override;
    void OnDefine(const std::string& name, const SourceReader::Place& place) override;
    void Write(const SourceReader::Place& place, const std::string& text,
               const Definitions& definitions) override;
    void Tell(const SourceReader::Remark& remark) override;

private:
    FilePlace _FindPlace(const SourceReader::Place& place) const;
    const std::string* _Find(const std::string& file, const SourceReader::Place& place,
                             std::string& path);

    Preprocessor& _preprocessor;
    PreprocessorState _state;
    PreprocessedText* _pText = nullptr;        ///< of the library in work
    std::vector<std::size_t> _including;       ///< the files of that text around the one in work
    std::map<std::string, FilePlace> _defined; ///< where names got their last values
};

bool Preprocessor::Client::ReadLibrary(const std::string& file) {
    std::string path;
    const std::string* const text = _preprocessor._assets.Find(file, path);
    if (text == nullptr || text->empty()) {
        return false;
    }
    auto library = std::make_unique<PreprocessedText>(path);
    PreprocessedText* const before = std::exchange(_pText, library.get());
    library->Enter(path, 0);
    const bool good = SourceReader(*this, _state).Read(path, *text);
    _pText = before;
    library->Finish();
    _preprocessor._texts.emplace(path, std::move(library));
    return good;
}

void Preprocessor::Client::DefineNames(Definitions& definitions) {
    for (const std::string& name : _preprocessor._predefined) {
        definitions.Define(name, "1");
    }
}

bool Preprocessor::Client::BeginIncluded(const std::string& file, const SourceReader::Place& place,
                                         std::string& path, std::string& text) {
    const std::string* const found = _Find(file, place, path);
    if (found == nullptr || found->empty()) {
        return false;
    }
    text = *found;
    _pText->AddToAdjustment(1 - std::count(text.begin(), text.end(), '\n'));
    _including.push_back(_pText->Enter(path, place.line));
    return true;
}

void Preprocessor::Client::EndIncluded() {
    _pText->GoBack(_including.back());
    _including.pop_back();
}

bool Preprocessor::Client::Import(const std::string& file, const SourceReader::Place& place) {
    std::string path;
    _Find(file, place, path);
    return ReadLibrary(file);
}

void Preprocessor::Client::OnDefine(const std::string& name, const SourceReader::Place& place) {
    _defined[name] = _FindPlace(place);
}

void Preprocessor::Client::Write(const SourceReader::Place& place, const std::string& text,
                                 const Definitions& definitions) {
    std::vector<PreprocessedText::Replacement> replaced;
    if (!text.empty() && text != place.text) {
        replaced = FindReplaced(definitions, place.text, text);
    }
    _pText->Write(place.line, text, std::move(replaced));
}

void Preprocessor::Client::Tell(const SourceReader::Remark& remark) {
    FilePlace before;
    if (remark.kind == SourceReader::Remark::kKind_Redefinition) {
        before = _defined[std::string(remark.place.word)];
    }
    _preprocessor._Remark(remark.text, _FindPlace(remark.place), before);
}

FilePlace Preprocessor::Client::_FindPlace(const SourceReader::Place& place) const {
    return _pText->MakePlace(place.line, place.word.empty() ? ColumnsOfDirective(place.text)
                                                            : ColumnsOf(place.text, place.word));
}

/// Finds the text of a file that a directive names. Why there is none is said in the library's
/// words.
const std::string* Preprocessor::Client::_Find(const std::string& file,
                                               const SourceReader::Place& place,
                                               std::string& path) {
    SourceAssets& assets = _preprocessor._assets;
    const std::string* const text = assets.Find(file, path);
    if (text == nullptr) {
        // Why is told by the assets, which are asked again by the library.
        IAsset::Status status = IAsset::kStatus_NotFound;
        assets.AcquireAsset(file, 1, status);
        _preprocessor._Remark(Format("Failed to read shader source file '%s' (%s)", file.c_str(),
                                     IAsset::StatusString(status)),
                              _FindPlace(place), {});
    }
    return text;
}

Preprocessor::Preprocessor(SourceAssets& assets, std::vector<std::string> predefined)
    : _assets(assets), _predefined(std::move(predefined)) {}

void Preprocessor::Read(const std::string& file) {
    Client(*this).ReadLibrary(file);
}

const PreprocessedText* Preprocessor::Find(const std::string& path) const {
    const auto found = _texts.find(path);
    return found == _texts.end() ? nullptr : found->second.get();
}

bool Preprocessor::TakeRemark(const std::string& text, Remark& remark) {
    const auto found = _remarks.find(text);
    if (found == _remarks.end()) {
        return false;
    }
    remark = std::move(found->second);
    _remarks.erase(found);
    return true;
}

void Preprocessor::_Remark(const std::string& text, const FilePlace& place,
                           const FilePlace& before) {
    _remarks.emplace(text, Remark{text, place, before});
}

} // namespace Tolen::Language
