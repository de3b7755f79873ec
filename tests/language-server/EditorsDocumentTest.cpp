#include "docs/Markdown.h"
#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

/// The settings in docs/editors.md, in the editors themselves.

namespace Tolen::Tests {
namespace {

const std::string kShader = "class Mine\n{\n    input Pattern part;\n\n"
                            "    void Shade() { accumulate(o_color, vec3(part.Missing())); }\n}\n";
const std::string kInterface = "\ninterface Pattern\n{\n    float At();\n}\n";
const std::string kMessage = "Interface \"Pattern\" has no method named \"Missing\".";

/// What a command of the shell prints, with errors, in a folder with shaders and a home of its own.
std::string RunIn(const std::string& folder, const std::string& command) {
    const std::string line = "cd '" + folder + "' && HOME='" + folder + "' PATH='" +
                             ProgramFolder() + "':\"$PATH\" timeout 100 " + command + " 2>&1";
    std::string output;
    FILE* const pipe = popen(line.c_str(), "r");
    std::array<char, 4096> bytes;
    for (std::size_t count; (count = fread(bytes.data(), 1, bytes.size(), pipe)) > 0;) {
        output.append(bytes.data(), count);
    }
    pclose(pipe);
    return output;
}

bool Succeeds(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1 </dev/null").c_str()) == 0;
}

std::string ReadSettings(const std::string& language) {
    std::string settings;
    for (const CodeBlock& block : ReadCodeBlocks("docs/editors.md")) {
        if (block.language == language) {
            settings += block.text;
        }
    }
    return settings;
}

/// A folder with shaders and the settings of an editor.
class Editors : public testing::Test {
protected:
    Editors() {
        std::filesystem::create_directories(folder);
        WriteTemporary(name + "/mine.klsl", kShader);
        WriteTemporary(name + "/patterns.klsl", kInterface);
    }
    ~Editors() override { std::filesystem::remove_all(folder); }

    const std::string name = "editors";
    const std::string folder = GetTemporary(name);
};

TEST_F(Editors, NeovimShowsMistakesAndFindsDefinitions) {
    const std::string settings = ReadSettings("lua");
    ASSERT_NE(settings.find("cmd = { 'klsl-lsp' }"), std::string::npos);
    ASSERT_TRUE(Succeeds("nvim --version")) << "scripts/packages --tests installs Neovim";
    WriteTemporary(name + "/init.lua", settings);
    WriteTemporary(name + "/ask.lua", R"(
vim.wait(60000, function() return #vim.diagnostic.get(0) > 0 end, 20)
for _, diagnostic in ipairs(vim.diagnostic.get(0)) do
  print('mistake ' .. diagnostic.lnum .. ': ' .. diagnostic.message .. '\n')
end
vim.api.nvim_win_set_cursor(0, { 3, 12 })
local parameters = vim.lsp.util.make_position_params()
local answers = vim.lsp.buf_request_sync(0, 'textDocument/definition', parameters, 60000)
for _, answer in pairs(answers or {}) do
  print('definition ' .. answer.result[1].uri:match('[^/]*$') .. ' '
        .. answer.result[1].range.start.line .. '\n')
end
vim.cmd('qa!')
)");
    const std::string output =
        RunIn(folder, "nvim --headless -u init.lua mine.klsl -c 'luafile ask.lua'");
    EXPECT_NE(output.find("mistake 4: " + kMessage), std::string::npos) << output;
    EXPECT_NE(output.find("definition patterns.klsl 1"), std::string::npos) << output;
}

TEST_F(Editors, EmacsShowsMistakesAndFindsDefinitions) {
    const std::string settings = ReadSettings("elisp");
    ASSERT_NE(settings.find("'(klsl-mode . (\"klsl-lsp\""), std::string::npos);
    const std::string emacs = "emacs --batch --eval '(package-initialize)'";
    ASSERT_TRUE(Succeeds(emacs + " --eval \"(require 'eglot)\""))
        << "scripts/packages --tests installs Emacs with Eglot";
    WriteTemporary(name + "/init.el", settings);
    WriteTemporary(name + "/ask.el", R"(
(require 'eglot)
(setq eglot-sync-connect 60)
(find-file "mine.klsl")
(call-interactively 'eglot)
(flymake-mode 1)
(flymake-start)
(let ((rounds 0))
  (while (and (not (flymake-diagnostics)) (< (setq rounds (1+ rounds)) 1200))
    (accept-process-output nil 0.05)))
(dolist (diagnostic (flymake-diagnostics))
  (message "mistake %s" (flymake-diagnostic-text diagnostic)))
(goto-char (point-min))
(search-forward "Patt")
(call-interactively 'xref-find-definitions)
(message "definition %s %s" (buffer-name) (line-number-at-pos))
(kill-emacs 0)
)");
    const std::string output = RunIn(folder, emacs + " -l init.el -l ask.el");
    EXPECT_NE(output.find("mistake klsl: " + kMessage), std::string::npos) << output;
    EXPECT_NE(output.find("definition patterns.klsl 2"), std::string::npos) << output;
}

} // namespace
} // namespace Tolen::Tests
