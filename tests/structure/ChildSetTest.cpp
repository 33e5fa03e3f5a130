#include "readers/ChildSet.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using ElementNames = std::vector<std::string>;

bool Succeed(ChildContext const&, xercesc::DOMNode* node, ElementNames& children)
{
    children.emplace_back(XMLStrUtil::XMLStrToAStr(node->getNodeName()).View());
    return true;
}

bool Fail(ChildContext const&, xercesc::DOMNode*, ElementNames&)
{
    return false;
}

bool SucceedWithoutChild(ChildContext const&, xercesc::DOMNode*, ElementNames&)
{
    return true;
}

constexpr ChildRow<std::string> kRows[] = {
    {{u"Good", "Good"}, &Succeed, kOnFailure_Abort},
    {{u"Other", "Other"}, &Succeed, kOnFailure_Next},
    {{u"Silent", "Silent"}, &SucceedWithoutChild, kOnFailure_Abort},
    {{u"FailedNext", "FailedNext"}, &Fail, kOnFailure_Next},
    {{u"FailedStop", "FailedStop"}, &Fail, kOnFailure_Stop},
    {{u"FailedAbort", "FailedAbort"}, &Fail, kOnFailure_Abort},
    // Never reached: the first row of a name has it.
    {{u"Good", "Good"}, &Fail, kOnFailure_Abort},
};

// Reads sets by the rows above, into one list.
class ChildSet : public testing::Test
{
protected:
    ChildSetEnd Read(std::string const& content)
    {
        ParsedDocument const document("<ChildSet>" + content + "</ChildSet>");
        return ReadNode(document.Root());
    }

    ChildSetEnd ReadNode(xercesc::DOMNode const* node)
    {
        ChildContext const context{nullptr, m_index.bodyEntities, m_index.curveEntities, m_index.meshStore,
                                   m_index.curveStore};
        return ReadChildSet(std::span<ChildRow<std::string> const>(kRows), context, node, m_children);
    }

    ElementNames m_children;

private:
    SideFileIndex m_index;
};

}  // namespace

TEST_F(ChildSet, ChildrenKeepTheOrderOfTheDocumentNotThatOfTheRows)
{
    EXPECT_EQ(Read("<Other/><Good/><Other/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Other", "Good", "Other"}));
}

TEST_F(ChildSet, ARepeatedElementIsAChildEachTime)
{
    EXPECT_EQ(Read("<Good/><Good/><Good/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good", "Good", "Good"}));
}

TEST_F(ChildSet, AnEmptySetAndANullNodeHaveNoChildren)
{
    EXPECT_EQ(Read(""), ChildSetEnd::kDone);
    EXPECT_EQ(ReadNode(nullptr), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, ElementNames());
}

TEST_F(ChildSet, ASecondSetAppends)
{
    EXPECT_EQ(Read("<Good/>"), ChildSetEnd::kDone);
    EXPECT_EQ(Read("<Other/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good", "Other"}));
}

TEST_F(ChildSet, UnknownNamesAreSkippedWithWhatTheyHold)
{
    EXPECT_EQ(Read("<Unknown><Good/><FailedAbort/></Unknown><Good/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good"}));
}

TEST_F(ChildSet, NamesAreExact)
{
    EXPECT_EQ(Read("<good/><GOOD/><Goods/><Goo/><failedabort/><x:Good xmlns:x='urn:x'/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, ElementNames());
}

TEST_F(ChildSet, TextCommentsAndInstructionsOfAChildsNameAreNoChildren)
{
    EXPECT_EQ(Read("Good<!--Good--><?Good Good?><?FailedAbort x?><![CDATA[<Good/>]]>\n<Good/> "), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good"}));
}

TEST_F(ChildSet, ASuccessfulChildMayAddNothing)
{
    EXPECT_EQ(Read("<Silent/><Good/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good"}));
}

TEST_F(ChildSet, AFailureOfARowWithNextGoesOnAndLeavesNoGap)
{
    EXPECT_EQ(Read("<Good/><FailedNext/><Other/>"), ChildSetEnd::kDone);
    EXPECT_EQ(m_children, (ElementNames{"Good", "Other"}));
}

TEST_F(ChildSet, AFailureOfARowWithStopEndsTheSetAndKeepsWhatWasRead)
{
    EXPECT_EQ(Read("<Good/><FailedStop/><Other/><FailedAbort/>"), ChildSetEnd::kStopped);
    EXPECT_EQ(m_children, (ElementNames{"Good"}));
}

TEST_F(ChildSet, AFailureOfARowWithAbortEndsTheOwnerAndKeepsWhatWasRead)
{
    EXPECT_EQ(Read("<Other/><FailedAbort/><Good/><FailedStop/>"), ChildSetEnd::kAborted);
    EXPECT_EQ(m_children, (ElementNames{"Other"}));
}

TEST_F(ChildSet, TheFirstFailureThatEndsTheSetDecidesHow)
{
    EXPECT_EQ(Read("<FailedNext/><FailedNext/><FailedStop/><FailedAbort/>"), ChildSetEnd::kStopped);
    EXPECT_EQ(m_children, ElementNames());
}

RC_GTEST_FIXTURE_PROP(ChildSet, AnySequenceIsReadUpToTheFirstFailureThatEndsIt, ())
{
    auto const names = *rc::gen::container<ElementNames>(rc::gen::weightedElement<std::string>({{8, "Good"},
                                                                                                {8, "Other"},
                                                                                                {4, "Silent"},
                                                                                                {4, "Unknown"},
                                                                                                {4, "FailedNext"},
                                                                                                {1, "FailedStop"},
                                                                                                {1, "FailedAbort"}}));
    std::string content;
    ElementNames expected;
    ChildSetEnd end = ChildSetEnd::kDone;
    for (std::string const& name : names)
    {
        content += " <" + name + "/>";
        if (end != ChildSetEnd::kDone)
            continue;
        if (name == "Good" || name == "Other")
            expected.push_back(name);
        else if (name == "FailedStop")
            end = ChildSetEnd::kStopped;
        else if (name == "FailedAbort")
            end = ChildSetEnd::kAborted;
    }
    RC_ASSERT(Read(content) == end);
    RC_ASSERT(m_children == expected);
}

}  // namespace KVR::Test
