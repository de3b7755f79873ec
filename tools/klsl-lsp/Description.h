#pragma once

#include "Protocol.h"
#include "Resolver.h"

#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// Whether texts for people are Markdown or plain.
enum class TextFormat { Plain, Markdown };

/// What a reader wants to know of a name: its signature, what it belongs to, its default, and its
/// comment. Meanings of one name come below each other.
std::string Describe(const std::vector<Meaning>& meanings, TextFormat format);

/// What is to know besides the signature; empty when there is nothing.
std::string DescribeBriefly(const Meaning& meaning, TextFormat format);

/// One line: the signature.
std::string GetSignature(const Meaning& meaning);

/// A text of the protocol's MarkupContent.
Json MakeMarkup(const std::string& text, TextFormat format);

} // namespace Tolen::LanguageServer
