#include "Declarations.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>

namespace Tolen::Tests {
namespace {

using Names = std::set<std::string>;

Declarations Read(const std::string& text) {
    return ReadDeclarations("# 1 \"/include/A.h\" 1\n" + text, "/include");
}

TEST(ReadDeclarations_, TakesOnlyLinesFromTheFolder) {
    const Declarations found = ReadDeclarations("# 1 \"/usr/include/stdio.h\" 1 3\n"
                                                "int puts(const char*);\n"
                                                "# 7 \"/include/Tolen/A.h\" 2\n"
                                                "int Own();\n"
                                                "# 9 \"/include-other/B.h\" 1\n"
                                                "int Other();\n",
                                                "/include");
    EXPECT_EQ(found.functions, Names{"Own"});
}

TEST(ReadDeclarations_, QualifiesNamesByNamespacesAndClasses) {
    const Declarations found = Read("namespace A::B { inline namespace C {\n"
                                    "class __attribute__((visibility(\"default\"))) D : E<F> {\n"
                                    "public:\n"
                                    "    explicit D(int x = G(1'000), H h = {});\n"
                                    "    ~D() override;\n"
                                    "    struct Inner { int Get() const; };\n"
                                    "    enum Kind { kOne = (1), kTwo };\n"
                                    "    class Announced;\n"
                                    "private:\n"
                                    "    int _field{1};\n"
                                    "};\n"
                                    "class Elsewhere;\n"
                                    "D* Make(std::function<void(int)> f);\n"
                                    "} }\n"
                                    "extern \"C\" { void cFunction(int); }\n");
    EXPECT_EQ(found.classes, (Names{"A::B::C::D", "A::B::C::D::Inner", "A::B::C::D::Announced"}));
    EXPECT_EQ(found.functions, (Names{"A::B::C::D::D", "A::B::C::D::~D", "A::B::C::D::Inner::Get",
                                      "A::B::C::Make", "cFunction"}));
    EXPECT_EQ(found.needed, found.functions);
    EXPECT_EQ(found.tables, Names{"A::B::C::D"});
}

TEST(ReadDeclarations_, NeedsNothingOfWhatHeadersDefine) {
    const Declarations found = Read("struct A {\n"
                                    "    A() : _x(1), _y{2} { if (_x) { F(); } }\n"
                                    "    A(const A&) = delete;\n"
                                    "    virtual ~A() = default;\n"
                                    "    virtual int Pure() = 0;\n"
                                    "    int Short() const { return _x; }\n"
                                    "    int Below();\n"
                                    "    int Needed();\n"
                                    "    int _x = F();\n"
                                    "};\n"
                                    "inline int A::Below() { return 1; }\n"
                                    "template <class T> struct B { int Get(); };\n"
                                    "template <class T> int B<T>::Get() { return 1; }\n"
                                    "template <class T> int Free(T);\n"
                                    "static_assert(sizeof(A) > 1);\n"
                                    "using Function = int (*)(int);\n"
                                    "const int kConstant = F(1);\n");
    EXPECT_EQ(found.functions, (Names{"A::A", "A::~A", "A::Pure", "A::Short", "A::Below",
                                      "A::Needed", "B::Get", "Free"}));
    EXPECT_EQ(found.needed, Names{"A::Needed"});
    EXPECT_EQ(found.tables, Names{});
}

TEST(ReadDeclarations_, NamesOperators) {
    const Declarations found = Read("struct A {\n"
                                    "    bool operator()(int);\n"
                                    "    bool operator<(const A&) const;\n"
                                    "    explicit operator bool() const;\n"
                                    "};\n"
                                    "std::ostream& operator<<(std::ostream&, const A&);\n");
    EXPECT_EQ(found.functions,
              (Names{"A::operator()", "A::operator<", "A::operator bool", "operator<<"}));
}

struct Case {
    std::string symbol;
    std::string name;
    bool isClass;
};

std::ostream& operator<<(std::ostream& stream, const Case& row) {
    return stream << row.symbol;
}

class SymbolOwners : public testing::TestWithParam<Case> {};

TEST_P(SymbolOwners, AreFound) {
    const SymbolOwner owner = FindSymbolOwner(GetParam().symbol);
    EXPECT_EQ(owner.name, GetParam().name);
    EXPECT_EQ(owner.isClass, GetParam().isClass);
}

INSTANTIATE_TEST_SUITE_P(
    Symbols, SymbolOwners,
    testing::Values(Case{"klUseProgram", "klUseProgram", false},
                    Case{"A::B::Get(int, std::vector<int>) const", "A::B::Get", false},
                    Case{"A::Format[abi:cxx11](char const*, ...)", "A::Format", false},
                    Case{"A::Value<std::map<int, A::B> >::~Value()", "A::Value::~Value", false},
                    Case{"std::vector<int> A::Make<int>(int (*)(int))", "A::Make", false},
                    Case{"A::operator<<(std::ostream&, A::B const&)", "A::operator<<", false},
                    Case{"A::B::operator()(int) const", "A::B::operator()", false},
                    Case{"A::B<int>::operator bool() const", "A::B::operator bool", false},
                    Case{"A::operators(int)", "A::operators", false},
                    Case{"A::(anonymous namespace)::F()", "A::(anonymous namespace)::F", false},
                    Case{"non-virtual thunk to A::B::~B()", "A::B::~B", false},
                    Case{"vtable for A::B<A::C>", "A::B", true},
                    Case{"typeinfo for A::B", "A::B", true},
                    Case{"typeinfo name for A::B", "A::B", true}));

} // namespace
} // namespace Tolen::Tests
