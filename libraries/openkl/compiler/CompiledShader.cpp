#include "compiler/CompiledShader.h"

#include "compiler/CheckContext.h"
#include "compiler/GlobalParser.h"
#include "compiler/Lexer.h"
#include "compiler/Limits.h"
#include "compiler/TokenStream.h"

namespace Tolen::OpenKL {

std::string Function::GetSignature() const {
    std::string text(name);
    text += "(";
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Direction direction = parameters[i]->direction;
        text += i == 0 ? "" : ", ";
        text += direction == kDirection_Out     ? "out "
                : direction == kDirection_InOut ? "inout "
                                                : "";
        text += parameters[i]->type.ToString();
    }
    return text + ")";
}

std::shared_ptr<const CompiledShader> CompileShader(Stage stage, std::string_view text,
                                                    std::string& messages) {
    messages.clear();
    auto shader = std::make_shared<CompiledShader>();
    shader->stage = stage;
    CheckContext context(stage, shader->arena);
    if (text.size() > kMaxTextBytes) {
        context.diagnostics.Error(1, "the text has " + std::to_string(text.size()) +
                                         " bytes; the limit is " + std::to_string(kMaxTextBytes));
    } else {
        shader->text = text;
        TokenStream tokens(Tokenize(shader->text, context.diagnostics), context.diagnostics);
        GlobalParser(context, tokens, *shader).Parse();
    }
    if (context.diagnostics.HasErrors()) {
        messages = context.diagnostics.ToString();
        return nullptr;
    }
    return shader;
}

} // namespace Tolen::OpenKL
