#pragma once

#include "language/Diagnostic.h"

#include <string>
#include <vector>

namespace Tolen::Language {

/// A library to describe.
struct ReferenceSource {
    std::string name; ///< as the page calls it, such as "shaders/values.klsl"
    std::string text;
};

/// A page in Markdown.
struct Reference {
    std::string page;
    /// What the tables at the tops of libraries say otherwise than the sources.
    std::vector<Diagnostic> differences;
};

/// Describes libraries on one page by what they declare and by their comments: what each library
/// says at its top, its interfaces and the classes that implement them, and of classes inputs,
/// coords, outputs and methods. What is on the page is linked.
/// @param title of the page
Reference MakeReference(const std::vector<ReferenceSource>& sources,
                        const std::string& title = "Reference");

} // namespace Tolen::Language
