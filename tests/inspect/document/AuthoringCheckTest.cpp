// A program that writes scenes checks in its tests what it wrote.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "authoring/SceneWriter.h"
#include "tests/authoring/WrittenScene.h"
#include "tests/inspect/document/CheckedText.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;
using ::testing::IsEmpty;

std::vector<std::string> FindingsOf(std::string const& path)
{
    std::vector<std::string> texts;
    for (Finding const& finding : CheckScene(path).findings)
        texts.push_back(BriefText(finding));
    return texts;
}

// An assembly that places a part twice, with a style.
void WriteGate(SceneWriter& scene)
{
    FileRecord file = RootFile({{"gate", FileChildType::kAssembly}});
    scene.BeginFile(file);
    scene.EndFile();
    ComponentRecord gate = Named<ComponentRecord>("gate", "Gate");
    gate.unit = {kUnitType_Millimeter, kUnitType_Millimeter, kUnitType_Degree};
    scene.BeginAssembly(gate);
    AttributeSetRecord attributes;
    StyleRecord style = Named<StyleRecord>("steel", "Steel");
    style.diffuse = ColorRecord{0.25, 0.5, 0.75, 1.0};
    attributes.styles.push_back(style);
    scene.AttributeSet(attributes);
    for (char const* const id : {"left", "right"})
    {
        InstanceRecord instance = Named<InstanceRecord>(id, id);
        instance.targetId = "door";
        instance.transform = Moved(id[0] == 'l' ? -500.0 : 500.0);
        instance.styles = {"steel"};
        scene.Instance(instance);
    }
    scene.EndAssembly();
    ComponentRecord door = Named<ComponentRecord>("door", "Door");
    door.unit = gate.unit;
    scene.BeginPart(door);
    scene.EndPart();
    scene.Finish();
}

}  // namespace

TEST(AuthoringCheck, WhatIsWrittenIsReadWhole)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    WriteGate(scene);
    EXPECT_THAT(FindingsOf(written.NarrowPath()), IsEmpty());
    CheckOptions options;
    options.account = true;
    for (Account const& account : CheckScene(written.NarrowPath(), options).accounts)
    {
        EXPECT_TRUE(account.Agrees());
        EXPECT_EQ(account.served, account.seen);
    }
}

TEST(AuthoringCheck, AMistakeIsToldAndItsRepairIsClean)
{
    WrittenScene written;
    SceneWriter scene(written.Path());
    WriteGate(scene);
    std::string const path = written.NarrowPath();
    std::string text = BytesOf(path);
    text.replace(text.find("Visibility=\"1\""), 14, "Visibility=\"true\"");
    WriteBytes(path, text);
    std::vector<Finding> const findings = CheckScene(path).findings;
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.front().rule->name, "boolean-misread");
    EXPECT_EQ(findings.front().objectId, "left");
    WriteBytes(path, Repaired(text, findings.front()));
    EXPECT_THAT(FindingsOf(path), IsEmpty());
}

}  // namespace KVR::Test
