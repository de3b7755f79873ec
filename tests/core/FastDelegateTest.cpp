#include "TolenCore/FastDelegate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

struct Base {
    virtual ~Base() = default;
    virtual int Get(int x) { return x; }
    int number = 10;
};

struct Padding {
    virtual ~Padding() = default;
    int padding[4] = {};
};

struct Derived : Padding, Base {
    int Get(int x) override { return x + number; }
    int Twice(int x) const { return 2 * x; }
    bool Take(const std::string& text) {
        taken = text;
        return true;
    }
    std::string taken;
};

struct Ordered : CreationOrder {
    bool Hear() { return true; }
    bool HearToo() { return true; }
};

int Triple(int x) {
    return 3 * x;
}

TEST(FastDelegate, AnEmptyOne_AnswersTrueOrTheDefault) {
    EXPECT_TRUE((FastDelegate0<bool>()()));
    EXPECT_EQ((FastDelegate1<int, int>()(5)), 0);
    EXPECT_TRUE((FastDelegate0<bool>().IsEmpty()));
    EXPECT_FALSE(static_cast<bool>(FastDelegate1<int, int>(nullptr)));
    EXPECT_EQ((FastDelegate1<int, int>(nullptr)), (FastDelegate1<int, int>()));
    FastDelegate1<int>()(1);
}

TEST(FastDelegate, MembersOfAnyBase_AreCalledOnTheRightObject) {
    Derived object;
    EXPECT_EQ((FastDelegate1<int, int>(&object, &Base::Get)(1)), 11);
    EXPECT_EQ((FastDelegate1<int, int>(&object, &Derived::Get)(1)), 11);
    EXPECT_EQ((FastDelegate1<int, int>(static_cast<Base*>(&object), &Base::Get)(2)), 12);
    EXPECT_EQ(MakeDelegate(&object, &Derived::Twice)(4), 8);
    const Derived& constant = object;
    EXPECT_EQ((FastDelegate1<int, int>(&constant, &Derived::Twice)(5)), 10);
    EXPECT_EQ((FastDelegate1<int, int>(&Triple)(5)), 15);
}

TEST(FastDelegate, Arguments_ArePassedAsDeclared) {
    Derived object;
    const FastDelegate1<const std::string&, bool> delegate(&object, &Derived::Take);
    EXPECT_TRUE(delegate("text"));
    EXPECT_EQ(object.taken, "text");
}

TEST(FastDelegate, ABorrowedCallable_IsCalledInPlace) {
    int sum = 0;
    const auto add = [&](int a, int b) {
        sum += a * b;
        return true;
    };
    const auto delegate = FastDelegate2<int, int, bool>::Borrow(add);
    EXPECT_TRUE(delegate(2, 3));
    EXPECT_EQ(sum, 6);
}

TEST(FastDelegate, EqualMeansObjectAndFunction) {
    Derived a;
    Derived b;
    using Delegate = FastDelegate1<int, int>;
    EXPECT_EQ(Delegate(&a, &Base::Get), Delegate(&a, &Base::Get));
    EXPECT_NE(Delegate(&a, &Base::Get), Delegate(&b, &Base::Get));
    EXPECT_NE(Delegate(&a, &Base::Get), Delegate(&a, &Derived::Twice));
    EXPECT_NE(Delegate(&a, &Base::Get), Delegate(&Triple));
    std::set<Delegate> set{Delegate(&a, &Base::Get), Delegate(&b, &Base::Get), Delegate(&Triple),
                           Delegate(&a, &Base::Get), Delegate()};
    EXPECT_EQ(set.size(), 4u);
    EXPECT_EQ(set.count(Delegate(&b, &Base::Get)), 1u);
}

TEST(FastDelegate, ObjectsWithACreationNumber_ComeFirstAndInTheOrderOfTheirMaking) {
    // On the heap in a scrambled order of addresses.
    std::vector<std::unique_ptr<Ordered>> objects;
    for (int i = 0; i < 64; ++i) {
        auto spare = std::make_unique<Ordered>();
        objects.push_back(std::make_unique<Ordered>());
        if (i % 3 != 0) {
            objects.push_back(std::move(spare));
        }
    }
    std::sort(objects.begin(), objects.end(), [](const auto& a, const auto& b) {
        return a->GetCreationNumber() < b->GetCreationNumber();
    });
    using Delegate = FastDelegate0<bool>;
    for (std::size_t i = 0; i + 1 < objects.size(); ++i) {
        EXPECT_LT(Delegate(objects[i].get(), &Ordered::Hear),
                  Delegate(objects[i + 1].get(), &Ordered::Hear));
        EXPECT_LT(Delegate(objects[i].get(), &Ordered::HearToo),
                  Delegate(objects[i + 1].get(), &Ordered::Hear));
    }
    const auto free = [] { return true; };
    EXPECT_LT(Delegate(objects.back().get(), &Ordered::Hear), Delegate::Borrow(free));
    EXPECT_FALSE(Delegate::Borrow(free) < Delegate(objects.back().get(), &Ordered::Hear));
}

TEST(CreationOrder, ACopy_DrawsANumberOfItsOwn) {
    Ordered a;
    const Ordered b = a;
    EXPECT_LT(a.GetCreationNumber(), b.GetCreationNumber());
    const auto number = a.GetCreationNumber();
    a = b;
    EXPECT_EQ(a.GetCreationNumber(), number);
}

} // namespace
} // namespace Tolen::Tests
