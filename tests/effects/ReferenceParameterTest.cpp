#include "EffectsFixture.h"
#include "Graph.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IReferenceMember.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IReferenceShader.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Paint {
    input float gain = 1.0;
    input float list[] = float[](1.0, 2.0);
    coord vec2 uv;
    float table[3];
    void Shade() {
        float sum = 0.0;
        for (int i = 0; i < list.length; i++) { sum += list[i]; }
        for (int i = 0; i < table.length; i++) { sum += table[i]; }
        accumulate(o_color, vec3(gain * sum * uv.x));
    }
}
)";

class ReferenceParameterTest : public EffectsFixture {
protected:
    ReferenceParameterTest() {
        Load(kSource);
        shader = Make("Paint");
        EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
        EXPECT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, shader, "graph"));
        program = context.CreateProgram();
    }
    ~ReferenceParameterTest() override {
        graph.Shutdown();
        context.DestroyProgram(program);
    }

    void Compile() {
        ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
        program->AddShader(graph.GetKLShader());
        ASSERT_TRUE(program->Link(nullptr));
    }

    /// The names of the text that begin with @p part, as the program has them.
    std::string FindUniform(const std::string& part) {
        for (const std::string& name : context.GetPrograms().front()->GetUniforms()) {
            if (name.rfind(part, 0) == 0) {
                return name;
            }
        }
        return "";
    }

    IReferenceParameter* Get(const char* name) {
        return graph.GetReferenceShader()->GetParameter(name);
    }

    RecordingPrimitive primitive{context};
    RecordingPrimitive second{context};
    Graph graph;
    IShader* shader = nullptr;
    IKLProgram* program = nullptr;
};

TEST_F(ReferenceParameterTest, ASingle_WritesItsUniform) {
    Compile();
    EXPECT_TRUE(Get("gain")->Apply(&primitive, program));
    EXPECT_EQ(primitive.GetUniform(FindUniform("gain")), "float 1");
}

TEST_F(ReferenceParameterTest, ASingle_TellsItsListenersAndTheGraph) {
    Compile();
    Listener<IReferenceParameter*> onReference;
    Listener<IGraph*, DelegateUpdate&> onGraph;
    Get("gain")->AddListenerChangeValue(*onReference);
    graph.AddListenerChangeValue(*onGraph);
    EXPECT_TRUE(shader->SetParameter(nullptr, "gain", 2.0f));
    EXPECT_EQ(onReference.count, 1);
    EXPECT_EQ(onGraph.count, 1);
    // A listener that objects fails the setter, but the write is on its way.
    onReference.answer = false;
    EXPECT_FALSE(shader->SetParameter(nullptr, "gain", 3.0f));
    EXPECT_EQ(onGraph.count, 2);
    graph.RemoveListenerChangeValue(*onGraph);
    Get("gain")->RemoveListenerChangeValue(*onReference);
    EXPECT_TRUE(shader->SetParameter(nullptr, "gain", 4.0f));
    EXPECT_EQ(onReference.count, 2);
}

TEST_F(ReferenceParameterTest, ALocalValue_BelongsToItsPrimitive) {
    Compile();
    IReferenceParameter* const gain = Get("gain");
    ILocalParameter* const local = gain->AcquireLocal(&primitive);
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(gain->AcquireLocal(&primitive), local);
    EXPECT_TRUE(local->Set(7.0f));
    EXPECT_TRUE(gain->Apply(&primitive, program));
    EXPECT_TRUE(gain->Apply(&second, program));
    ASSERT_EQ(primitive.GetUniforms().size(), 1u);
    EXPECT_EQ(primitive.GetUniforms().begin()->second, "float 7");
    EXPECT_EQ(second.GetUniform(FindUniform("gain")), "float 1");
    gain->ReleaseLocal(local);
    gain->ReleaseLocal(nullptr);
    EXPECT_TRUE(gain->Apply(&primitive, program));
    EXPECT_EQ(primitive.GetUniform(FindUniform("gain")), "float 1");
}

TEST_F(ReferenceParameterTest, OnlySingles_HaveLocalValues) {
    EXPECT_EQ(Get("list")->AcquireLocal(&primitive), nullptr);
    EXPECT_EQ(graph.GetReferenceShader()->GetCoord("uv")->AcquireLocal(&primitive), nullptr);
}

TEST_F(ReferenceParameterTest, MissingUniforms_AreToldByName) {
    struct Case {
        const char* part;
        const char* text;
    };
    Compile();
    const Case cases[] = {
        {"gain", "ReferenceParameterValueSingleSeparate::Apply Value LocationUniform\n"},
        {"list", "ReferenceParameterValueArraySeparate::Apply Length LocationUniform\n"},
        {"table", "ReferenceMemberValueArraySeparate::Apply Length LocationUniform\n"}};
    for (const std::string& name : context.GetPrograms().front()->GetUniforms()) {
        context.SetUnused(name);
    }
    ASSERT_TRUE(program->Link(nullptr));
    for (const Case& missing : cases) {
        SCOPED_TRACE(missing.part);
        console.Clear();
        const bool isMember = missing.part == std::string("table");
        EXPECT_FALSE(isMember ? graph.GetReferenceShader()
                                    ->GetMember(missing.part)
                                    ->Apply(&primitive, program)
                              : Get(missing.part)->Apply(&primitive, program));
        EXPECT_EQ(console.GetGeneral(), missing.text);
    }
    EXPECT_TRUE(primitive.GetUniforms().empty());
}

TEST_F(ReferenceParameterTest, AnArrayWithoutItsBlock_Tells) {
    Compile();
    // The block of the text is named after the array.
    for (const RecordingShader* text : context.GetShaders()) {
        const auto at = text->GetText().find("uniformblock ");
        if (at != std::string::npos) {
            const auto begin = at + std::string("uniformblock ").size();
            const auto end = text->GetText().find_first_of(" \n{", begin);
            context.SetUnused(text->GetText().substr(begin, end - begin));
        }
    }
    ASSERT_TRUE(program->Link(nullptr));
    console.Clear();
    EXPECT_FALSE(Get("list")->Apply(&primitive, program));
    EXPECT_EQ(console.GetGeneral(),
              "ReferenceParameterValueArraySeparate::Apply Value LocationUniform\n");
}

TEST_F(ReferenceParameterTest, AnArray_WritesItsBlockAndItsLength) {
    Compile();
    EXPECT_TRUE(Get("list")->Apply(&primitive, program));
    int blocks = 0;
    bool hasLength = false;
    for (const auto& [name, value] : primitive.GetUniforms()) {
        blocks += value.rfind("block ", 0) == 0 ? 1 : 0;
        hasLength = hasLength || value == "int 2";
    }
    EXPECT_EQ(blocks, 1);
    EXPECT_TRUE(hasLength);
}

TEST_F(ReferenceParameterTest, AMember_WritesItsLengthOnly) {
    Compile();
    EXPECT_TRUE(graph.GetReferenceShader()->GetMember("table")->Apply(&primitive, program));
    ASSERT_EQ(primitive.GetUniforms().size(), 1u);
    EXPECT_EQ(primitive.GetUniforms().begin()->second, "int 3");
    EXPECT_TRUE(graph.GetReferenceShader()->GetMember("table")->IsComplete());
}

TEST_F(ReferenceParameterTest, ACoord_HoldsItsAttributeAndTellsOfANewName) {
    IReferenceParameter* const uv = graph.GetReferenceShader()->GetCoord("uv");
    Listener<IReferenceParameter*> changed;
    uv->AddListenerChangeValue(*changed);
    EXPECT_TRUE(uv->IsComplete(nullptr));
    EXPECT_TRUE(uv->Apply(&primitive, program));
    EXPECT_EQ(graph.GetCountAttributes(), 1);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
    EXPECT_EQ(changed.count, 0);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", ""));
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(graph.GetCountAttributes(), 0);
    Result result;
    EXPECT_FALSE(uv->IsComplete(&result));
    EXPECT_EQ(result.GetLast(),
              "ReferenceParameterCoord::IsComplete() failed for Graph:graph Parameter:uv");
    uv->RemoveListenerChangeValue(*changed);
}

TEST_F(ReferenceParameterTest, ACoordThatTheGraphRefuses_IsIncompleteUntilItsNextName) {
    ASSERT_TRUE(graph.AcquireAttribute(kType_Vec3, "Taken", kTransformationCoord_Coord));
    EXPECT_FALSE(shader->SetCoord(nullptr, "uv", "Taken"));
    EXPECT_TRUE(console.Contains("Graph::AcquireAttribute Type Collision\n"));
    EXPECT_FALSE(graph.GetReferenceShader()->GetCoord("uv")->IsComplete(nullptr));
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Free"));
    EXPECT_TRUE(graph.IsComplete(nullptr));
    EXPECT_TRUE(graph.ReleaseAttribute("Taken"));
}

} // namespace
} // namespace Tolen::Effects::Tests
