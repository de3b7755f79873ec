#include "MgrOutputs.h"

#include "support/CapturedConsole.h"

#include "TolenCore/CreationOrder.h"

#include <gtest/gtest.h>

#include <string>

namespace Tolen::Effects {
namespace {

/// Writes down what it hears of outputs.
class Heard : public CreationOrder {
public:
    explicit Heard(std::string& text, const std::string& name = "") : _text(text), _name(name) {}

    MgrOutputs::ListenerAdd Add() { return {this, &Heard::_OnAdd}; }
    MgrOutputs::ListenerRemove Remove() { return {this, &Heard::_OnRemove}; }
    bool answer = true;

private:
    bool _OnAdd(TypeSpecifier type, const std::string& name) {
        _text += _name + "+" + name + std::to_string(type);
        return answer;
    }
    bool _OnRemove(const std::string& name) {
        _text += _name + "-" + name;
        return answer;
    }

    std::string& _text;
    std::string _name;
};

class MgrOutputsTest : public testing::Test {
protected:
    void _Listen(Heard& heard) {
        MgrOutputs::ListenerAdd add = heard.Add();
        MgrOutputs::ListenerRemove remove = heard.Remove();
        EXPECT_TRUE(_outputs.AddListenerAddOutput(add));
        EXPECT_TRUE(_outputs.AddListenerRemoveOutput(remove));
    }

    std::string _Visit(bool answer = true) {
        std::string text;
        const auto visit = [&](TypeSpecifier type, const std::string& name) {
            text += name + std::to_string(type) + " ";
            return answer;
        };
        auto delegate = FastDelegate2<TypeSpecifier, const std::string&, bool>::Borrow(visit);
        _all = _outputs.VisitOutputs(delegate);
        return text;
    }

    MgrOutputs _outputs;
    std::string _text;
    bool _all = false;
};

TEST_F(MgrOutputsTest, Uses_FireOnlyForTheFirstAndTheLast) {
    Heard heard(_text);
    _Listen(heard);
    EXPECT_TRUE(_outputs.AcquireOutput(kType_Vec3, "a"));
    EXPECT_TRUE(_outputs.AcquireOutput(kType_Vec3, "a"));
    EXPECT_EQ(_outputs.GetCountOutputs(), 1);
    EXPECT_TRUE(_outputs.ReleaseOutput("a"));
    EXPECT_TRUE(_outputs.HasOutput("a"));
    EXPECT_EQ(_text, "+a5");
    EXPECT_TRUE(_outputs.ReleaseOutput("a"));
    EXPECT_FALSE(_outputs.HasOutput("a"));
    EXPECT_EQ(_text, "+a5-a");
    EXPECT_EQ(_outputs.GetCountOutputs(), 0);
}

TEST_F(MgrOutputsTest, AcquireOutput_WithAnotherType_FailsAndKeepsTheCount) {
    Tests::CapturedConsole console;
    EXPECT_TRUE(_outputs.AcquireOutput(kType_Vec3, "a"));
    EXPECT_FALSE(_outputs.AcquireOutput(kType_Vec4, "a"));
    EXPECT_EQ(console.GetGeneral(), "Graph::AcquireOutput Type Collision\n");
    EXPECT_TRUE(_outputs.ReleaseOutput("a"));
    EXPECT_FALSE(_outputs.HasOutput("a"));
    EXPECT_TRUE(_outputs.AcquireOutput(kType_Vec4, "a"));
}

TEST_F(MgrOutputsTest, ReleaseOutput_OfAnUnknownName_AnswersTrueAndFiresNothing) {
    Heard heard(_text);
    _Listen(heard);
    EXPECT_TRUE(_outputs.ReleaseOutput("none"));
    EXPECT_EQ(_text, "");
}

TEST_F(MgrOutputsTest, AFalseListener_StopsTheOthers) {
    Heard first(_text, "1");
    Heard second(_text, "2");
    // In the order of their making, not of their adding.
    _Listen(second);
    _Listen(first);
    first.answer = false;
    EXPECT_TRUE(_outputs.AcquireOutput(kType_Vec3, "a")) << "the use counts all the same";
    EXPECT_EQ(_text, "1+a5");
    EXPECT_FALSE(_outputs.ReleaseOutput("a"));
    EXPECT_EQ(_text, "1+a51-a");
    EXPECT_FALSE(_outputs.HasOutput("a"));
}

TEST_F(MgrOutputsTest, Listeners_AreKeptOnceAndTakenBackAtAnyTime) {
    Heard heard(_text);
    _Listen(heard);
    _Listen(heard);
    _outputs.AcquireOutput(kType_Vec3, "a");
    EXPECT_EQ(_text, "+a5");
    MgrOutputs::ListenerAdd add = heard.Add();
    MgrOutputs::ListenerRemove remove = heard.Remove();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(_outputs.RemoveListenerAddOutput(add));
        EXPECT_TRUE(_outputs.RemoveListenerRemoveOutput(remove));
    }
    _outputs.ReleaseOutput("a");
    EXPECT_EQ(_text, "+a5");
}

TEST_F(MgrOutputsTest, VisitOutputs_GoesByNameAndCallsForAll) {
    EXPECT_EQ(_Visit(), "");
    EXPECT_TRUE(_all);
    _outputs.AcquireOutput(kType_Vec4, "b");
    _outputs.AcquireOutput(kType_Vec3, "a");
    EXPECT_EQ(_Visit(), "a5 b6 ");
    EXPECT_TRUE(_all);
    EXPECT_EQ(_Visit(false), "a5 b6 ");
    EXPECT_FALSE(_all);
}

TEST_F(MgrOutputsTest, AVisitor_MayReleaseWhatItIsShown) {
    for (const char* name : {"a", "b", "c"}) {
        _outputs.AcquireOutput(kType_Vec3, name);
    }
    const auto release = [&](TypeSpecifier, const std::string& name) {
        return _outputs.ReleaseOutput(name);
    };
    auto delegate = FastDelegate2<TypeSpecifier, const std::string&, bool>::Borrow(release);
    EXPECT_TRUE(_outputs.VisitOutputs(delegate));
    EXPECT_EQ(_outputs.GetCountOutputs(), 0);
}

TEST_F(MgrOutputsTest, AttachmentIndices_AreKeptApartFromUses) {
    int index = -7;
    EXPECT_TRUE(_outputs.GetOutputAttachmentIndex(index, "a"));
    EXPECT_EQ(index, 15);
    EXPECT_TRUE(_outputs.SetOutputAttachmentIndex("a", 3));
    EXPECT_FALSE(_outputs.HasOutput("a"));
    _outputs.AcquireOutput(kType_Vec3, "a");
    _outputs.ReleaseOutput("a");
    EXPECT_TRUE(_outputs.GetOutputAttachmentIndex(index, "a"));
    EXPECT_EQ(index, 3);
    EXPECT_TRUE(_outputs.SetOutputAttachmentIndex("a", -1));
    _outputs.GetOutputAttachmentIndex(index, "a");
    EXPECT_EQ(index, -1);
    EXPECT_TRUE(_outputs.ClearOutputAttachmentIndex("a"));
    EXPECT_FALSE(_outputs.ClearOutputAttachmentIndex("a"));
    _outputs.GetOutputAttachmentIndex(index, "a");
    EXPECT_EQ(index, 15);
}

TEST_F(MgrOutputsTest, Shutdown_ForgetsListenersAlone) {
    Heard heard(_text);
    _Listen(heard);
    _outputs.AcquireOutput(kType_Vec3, "a");
    _outputs.SetOutputAttachmentIndex("a", 2);
    _text.clear();
    EXPECT_TRUE(_outputs.Init());
    EXPECT_TRUE(_outputs.Shutdown());
    EXPECT_TRUE(_outputs.HasOutput("a"));
    int index = 0;
    _outputs.GetOutputAttachmentIndex(index, "a");
    EXPECT_EQ(index, 2);
    EXPECT_TRUE(_outputs.ReleaseOutput("a"));
    EXPECT_EQ(_text, "");
}

} // namespace
} // namespace Tolen::Effects
