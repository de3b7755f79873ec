#pragma once

#include "effects/LoadedManager.h"

#include "TolenEffects/IParameter.h"

#include <cctype>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

/// Shaders that take shaders, and their code in a form that tests can spell: on one line, with the
/// keys of shaders replaced by "." and a name of the test's, and those of inputs by counting them.
class InputCode : public testing::Test {
protected:
    /// Lets the texts call a new shader of a class @p name.
    Shader* Make(const std::string& className, const std::string& name) {
        Shader* const shader = loaded.Create(className);
        if (shader != nullptr) {
            _keys[shader->GetKeyName()] = "." + name;
        }
        return shader;
    }

    void Connect(Shader* above, const std::string& input, IShader* below) {
        Result result;
        EXPECT_TRUE(above->SetParameter(&result, input, below)) << LoadedManager::Join(result);
    }

    void ConnectAll(Shader* above, const std::string& input, std::vector<IShader*> below) {
        Result result;
        const int count = static_cast<int>(below.size());
        EXPECT_TRUE(above->GetParameter(input)->SetLength(count));
        EXPECT_TRUE(above->SetParameter(&result, input, below.data(), count))
            << LoadedManager::Join(result);
    }

    /// The messages of a connection after which the code can't be made.
    std::string ConnectFails(Shader* above, const std::string& input, IShader* below) {
        Result result;
        EXPECT_FALSE(above->SetParameter(&result, input, below));
        return LoadedManager::Join(result);
    }

    std::string ConnectAllFails(Shader* above, const std::string& input,
                                std::vector<IShader*> below) {
        Result result;
        const int count = static_cast<int>(below.size());
        EXPECT_FALSE(above->SetParameter(&result, input, below.data(), count));
        return LoadedManager::Join(result);
    }

    /// All code of a shader.
    std::string Code(Shader* shader) { return _Name(_Join(loaded.Collect(shader))); }

    /// The block of a function, by its name as it stands in the code.
    std::string Body(Shader* shader, const std::string& function) {
        const std::string code = Code(shader);
        const std::string head = " " + function + "(";
        for (auto at = code.find(head); at != std::string::npos; at = code.find(head, at + 1)) {
            const auto end = code.find(')', at);
            if (code.compare(end, 3, ") {") == 0) {
                return _Block(code, end + 2);
            }
        }
        ADD_FAILURE() << function << " is not in " << code;
        return {};
    }

    static int Count(const std::string& text, const std::string& part) {
        int count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }

    LoadedManager loaded;

private:
    static std::string _Join(const std::string& text) {
        std::string joined;
        for (const char c : text) {
            if (std::isspace(static_cast<unsigned char>(c)) == 0) {
                joined += c;
            } else if (!joined.empty() && joined.back() != ' ') {
                joined += ' ';
            }
        }
        return joined;
    }

    std::string _Name(const std::string& text) const {
        static const std::regex key("(Parameter[A-Za-z]*)?(_k[0-9a-f]+)");
        std::map<std::string, int> inputs;
        std::string named;
        auto last = text.begin();
        for (std::sregex_iterator it(text.begin(), text.end(), key), end; it != end; ++it) {
            named.append(last, text.begin() + it->position());
            last = text.begin() + it->position() + it->length();
            const auto found = _keys.find((*it)[2]);
            if ((*it)[1].matched) {
                const int number =
                    inputs.emplace((*it)[2], static_cast<int>(inputs.size())).first->second;
                named += "Input" + std::to_string(number);
            } else {
                named += found == _keys.end() ? std::string((*it)[2]) : found->second;
            }
        }
        return named.append(last, text.end());
    }

    static std::string _Block(const std::string& code, std::size_t first) {
        int depth = 0;
        for (std::size_t at = first; at < code.size(); ++at) {
            depth += code[at] == '{' ? 1 : code[at] == '}' ? -1 : 0;
            if (depth == 0) {
                return code.substr(first, at + 1 - first);
            }
        }
        return {};
    }

    std::map<std::string, std::string> _keys;
};

} // namespace Tolen::Effects::Tests
