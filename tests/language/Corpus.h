#pragma once

#include <random>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// A KLSL source to try things out on.
struct CorpusText {
    std::string name; ///< for messages
    std::string text;
};

/// The shaders of the project and the blocks of its documents.
const std::vector<CorpusText>& GetCorpus();

/// A text of tokens, comments, directives, blanks and stray characters, in an order that makes no
/// sense.
std::string MakeRandomText(std::mt19937& random, int pieces);

/// The text with some stretches of it taken out, doubled or moved.
std::string Damage(std::mt19937& random, std::string text);

} // namespace Tolen::Tests
