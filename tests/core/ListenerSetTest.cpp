#include "TolenCore/ListenerSet.h"

#include "TolenCore/FastDelegate.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using Delegate = FastDelegate1<int, bool>;

/// Writes its name down, then does what it was told.
class Listener : public CreationOrder {
public:
    Listener(std::string& heard, char name) : _heard(heard), _name(name) {}

    bool Hear(int) {
        _heard += _name;
        if (action) {
            action();
        }
        return answer;
    }
    Delegate Bind() { return Delegate(this, &Listener::Hear); }

    std::function<void()> action;
    bool answer = true;

private:
    std::string& _heard;
    char _name;
};

class ListenerSetTest : public testing::Test {
protected:
    ListenerSetTest() {
        for (Listener* listener : {&c, &a, &b}) {
            set->Add(listener->Bind());
        }
    }

    std::string heard;
    Listener a{heard, 'a'};
    Listener b{heard, 'b'};
    Listener c{heard, 'c'};
    Listener d{heard, 'd'};
    std::unique_ptr<ListenerSet<Delegate>> set = std::make_unique<ListenerSet<Delegate>>();
};

TEST_F(ListenerSetTest, AnEmptySet_AnswersTrue) {
    set->Clear();
    EXPECT_TRUE(set->IsEmpty());
    EXPECT_TRUE(set->Fire(1));
    EXPECT_TRUE(set->FireAll(1));
    EXPECT_EQ(heard, "");
}

TEST_F(ListenerSetTest, Firing_GoesInSetOrder) {
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "abc");
}

TEST_F(ListenerSetTest, AddingTwice_KeepsOneEntry) {
    EXPECT_TRUE(set->Add(a.Bind()));
    EXPECT_EQ(set->GetCount(), 3u);
    EXPECT_TRUE(set->Remove(a.Bind()));
    EXPECT_TRUE(set->Remove(a.Bind()));
    set->Fire(1);
    EXPECT_EQ(heard, "bc");
}

TEST_F(ListenerSetTest, Fire_StopsAtTheFirstFalse) {
    b.answer = false;
    EXPECT_FALSE(set->Fire(1));
    EXPECT_EQ(heard, "ab");
}

TEST_F(ListenerSetTest, FireAll_CallsEveryoneAndJoinsTheAnswers) {
    a.answer = false;
    EXPECT_FALSE(set->FireAll(1));
    EXPECT_EQ(heard, "abc");
}

TEST_F(ListenerSetTest, AListenerRemovedBeforeItsTurn_IsNotCalled) {
    a.action = [&] { set->Remove(b.Bind()); };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "ac");
}

TEST_F(ListenerSetTest, AListenerThatRemovesItself_DoesNotDisturbTheRest) {
    for (Listener* listener : {&a, &b, &c}) {
        listener->action = [this, listener] { set->Remove(listener->Bind()); };
    }
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "abc");
    EXPECT_TRUE(set->IsEmpty());
}

TEST_F(ListenerSetTest, AListenerAddedWhileFiring_IsCalledFromTheNextTimeOn) {
    a.action = [&] { set->Add(d.Bind()); };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "abc");
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "abcabcd");
}

TEST_F(ListenerSetTest, AListenerRemovedAndAddedAgainWhileFiring_CountsAsNew) {
    a.action = [&] {
        set->Remove(b.Bind());
        set->Add(b.Bind());
    };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "ac");
}

TEST_F(ListenerSetTest, Clearing_EndsTheFiring) {
    a.action = [&] { set->Clear(); };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "a");
}

TEST_F(ListenerSetTest, TheDeathOfTheOwner_EndsTheFiringWithTheAnswersSoFar) {
    b.action = [&] { set.reset(); };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "ab");
}

TEST_F(ListenerSetTest, FiringInsideAFiring_ReachesEveryoneAgain) {
    bool again = true;
    b.action = [&] {
        if (again) {
            again = false;
            set->Fire(2);
        }
    };
    EXPECT_TRUE(set->Fire(1));
    EXPECT_EQ(heard, "ababcc");
}

} // namespace
} // namespace Tolen::Tests
