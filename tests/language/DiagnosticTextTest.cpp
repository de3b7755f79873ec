#include "language/DiagnosticText.h"

#include <gtest/gtest.h>

namespace Tolen::Language {
namespace {

Diagnostic MakeDiagnostic(const SourceRange& columns) {
    Diagnostic diagnostic;
    diagnostic.file = "a.klsl";
    diagnostic.line = 2;
    diagnostic.columns = columns;
    diagnostic.text = "it is wrong";
    return diagnostic;
}

std::string Show(const Diagnostic& diagnostic, const std::string& line, bool isColored = false) {
    DiagnosticText text(isColored);
    text.SetText("a.klsl", "first\n" + line + "\nthird\n");
    return text.Show(diagnostic);
}

TEST(DiagnosticText, ShowsTheLineAndMarksWhatIsMeant) {
    EXPECT_EQ(Show(MakeDiagnostic({4, 8}), "one four"), "a.klsl:2:5: error: it is wrong\n"
                                                        "one four\n"
                                                        "    ^~~~\n");
    EXPECT_EQ(Show(MakeDiagnostic({0, 1}), "x"), "a.klsl:2:1: error: it is wrong\nx\n^\n");
}

TEST(DiagnosticText, WithoutColumns_ShowsTheLineAlone) {
    EXPECT_EQ(Show(MakeDiagnostic({}), "one four"), "a.klsl:2: error: it is wrong\none four\n");
}

TEST(DiagnosticText, WithoutALineOrAFile_ShowsWhatIsKnown) {
    Diagnostic diagnostic = MakeDiagnostic({});
    diagnostic.line = 0;
    EXPECT_EQ(Show(diagnostic, ""), "a.klsl: error: it is wrong\n");
    diagnostic.line = 17;
    EXPECT_EQ(Show(diagnostic, ""), "a.klsl:17: error: it is wrong\n");
    diagnostic.file = "";
    diagnostic.severity = Diagnostic::kSeverity_Warning;
    EXPECT_EQ(Show(diagnostic, ""), "warning: it is wrong\n");
    diagnostic.file = "none.klsl";
    EXPECT_EQ(Show(diagnostic, ""), "none.klsl:17: warning: it is wrong\n");
}

TEST(DiagnosticText, PutsSuggestionsBehindTheMark) {
    Diagnostic diagnostic = MakeDiagnostic({0, 3});
    diagnostic.suggestion = "One";
    EXPECT_EQ(Show(diagnostic, "one four"), "a.klsl:2:1: error: it is wrong\n"
                                            "one four\n"
                                            "^~~ did you mean 'One'?\n");
}

TEST(DiagnosticText, WithoutALine_PutsSuggestionsBehindTheMessage) {
    Diagnostic diagnostic = MakeDiagnostic({});
    diagnostic.line = 0;
    diagnostic.suggestion = "right";
    EXPECT_EQ(Show(diagnostic, "one"), "a.klsl: error: it is wrong (did you mean 'right'?)\n");
}

TEST(DiagnosticText, ShowsNotesBehind) {
    Diagnostic diagnostic = MakeDiagnostic({0, 3});
    diagnostic.notes.push_back({"a.klsl", 1, {1, 3}, "it is declared here"});
    diagnostic.notes.push_back({"a.klsl", 3, {}, "included from here"});
    EXPECT_EQ(Show(diagnostic, "one four"), "a.klsl:2:1: error: it is wrong\n"
                                            "one four\n"
                                            "^~~\n"
                                            "a.klsl:1:2: note: it is declared here\n"
                                            "first\n"
                                            " ^~\n"
                                            "a.klsl:3: note: included from here\n"
                                            "third\n");
}

TEST(DiagnosticText, KeepsTabsAndCountsCharacters) {
    EXPECT_EQ(Show(MakeDiagnostic({5, 6}), "\tab\t\tx"),
              "a.klsl:2:6: error: it is wrong\n\tab\t\tx\n\t  \t\t^\n");
    EXPECT_EQ(Show(MakeDiagnostic({3, 7}), "\xc3\xa4 \xc3\xb6\xc3\xbc"),
              "a.klsl:2:4: error: it is wrong\n\xc3\xa4 \xc3\xb6\xc3\xbc\n  ^~\n");
}

TEST(DiagnosticText, CutsLongLinesToWhatIsMeant) {
    const std::string line = std::string(500, 'a') + "WRONG" + std::string(500, 'b');
    const std::string shown = Show(MakeDiagnostic({500, 505}), line);
    EXPECT_EQ(shown, "a.klsl:2:501: error: it is wrong\n"
                     "... " +
                         std::string(60, 'a') + "WRONG" + std::string(95, 'b') + " ...\n" +
                         std::string(64, ' ') + "^~~~~\n");
    EXPECT_LT(Show(MakeDiagnostic({0, 1000}), line).size(), 500u);
}

TEST(DiagnosticText, DoesNothingToTheTerminal) {
    EXPECT_EQ(Show(MakeDiagnostic({2, 3}), "\x1b[31mx"),
              "a.klsl:2:3: error: it is wrong\n?[31mx\n  ^\n");
}

TEST(DiagnosticText, WithColors_SaysTheSame) {
    Diagnostic diagnostic = MakeDiagnostic({0, 3});
    diagnostic.suggestion = "One";
    std::string colored = Show(diagnostic, "one four", true);
    EXPECT_NE(colored.find("\033["), std::string::npos);
    for (std::size_t at; (at = colored.find('\033')) != std::string::npos;) {
        colored.erase(at, colored.find('m', at) + 1 - at);
    }
    EXPECT_EQ(colored, Show(diagnostic, "one four"));
}

} // namespace
} // namespace Tolen::Language
