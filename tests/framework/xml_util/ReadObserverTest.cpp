#include "framework/xml_util/ReadObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using ::testing::ElementsAre;

std::string Narrow(XMLCh const* text)
{
    return text ? Text(XMLStrUtil::XMLStrToAStr(text)) : "-";
}

// Writes down what it is told.
class Notes final : public ReadObserver
{
public:
    void AttributeAsked(xercesc::DOMNode const*, XMLCh const* name, long index, XMLCh const* text) override
    {
        lines.push_back(Narrow(name) + " " + std::to_string(index) + " " + Narrow(text));
    }
    void ChildrenWalked(xercesc::DOMNode const* parent) override
    {
        lines.push_back("in " + Narrow(parent->getNodeName()));
    }
    void NamesTried(xercesc::DOMNode const* element, std::span<std::u16string_view const> names,
                    std::size_t matched) override
    {
        lines.push_back(Narrow(element->getNodeName()) + " is " + std::to_string(matched) + " of " +
                        std::to_string(names.size()));
    }
    void TextTaken(xercesc::DOMNode const*, XMLCh const* text) override { lines.push_back("text " + Narrow(text)); }
    void TextRead(TextReading const& reading) override
    {
        lines.push_back(Narrow(reading.text) + (reading.isUnderstood ? " good" : " bad") +
                        (reading.value ? " true" : ""));
    }

    std::vector<std::string> lines;
};

}  // namespace

TEST(ReadObserver, IsThatOfAThreadForTheLengthOfAScope)
{
    EXPECT_EQ(Observer(), nullptr);
    Notes outer;
    {
        ReadObserverScope const scope(outer);
        EXPECT_EQ(Observer(), &outer);
        Notes inner;
        {
            ReadObserverScope const innerScope(inner);
            EXPECT_EQ(Observer(), &inner);
        }
        EXPECT_EQ(Observer(), &outer);
        ReadObserver* ofOther = &outer;
        std::thread([&] { ofOther = Observer(); }).join();
        EXPECT_EQ(ofOther, nullptr);
    }
    EXPECT_EQ(Observer(), nullptr);
    EXPECT_EQ(ReadObserverScope::count.load(), 0);
}

TEST(ReadObserver, LearnsWhatIsAskedAndWhatItGets)
{
    ParsedDocument document("<r a='1' ID='x'><ChildSet/><Unit>t</Unit></r>");
    xercesc::DOMNode* const root = document.Root();
    Notes notes;
    ReadObserverScope const scope(notes);
    static_cast<void>(AttributeText(root, Names::ID));
    static_cast<void>(AttributeText(root, Names::Label));
    for (xercesc::DOMNode* const child : Children(root))
        Match(child, On(Names::ChangeKey, [] {}), On(Names::Unit, [&] { static_cast<void>(TextContent(child)); }));
    EXPECT_THAT(notes.lines,
                ElementsAre("ID 0 x", "Label -1 -", "in r", "ChildSet is 2 of 2", "Unit is 1 of 2", "text t"));
}

TEST(ReadObserver, LearnsWhatIsMadeOfATextAndTheAnswersStayTheSame)
{
    Notes notes;
    ReadObserverScope const scope(notes);
    double number = 5.0;
    EXPECT_FALSE(XMLStrUtil::XMLStrToDouble(u"2mm", number));
    EXPECT_EQ(number, 5.0);
    EXPECT_TRUE(XMLStrUtil::XMLStrToDouble(u"2.5", number));
    EXPECT_EQ(XMLStrUtil::XMLStrToInt(u"x"), 0);
    UnitTypeEnum unit = kUnitType_Inch;
    EXPECT_FALSE(XMLStrUtil::StringToUnitType(u"inch", unit));
    EXPECT_EQ(unit, kUnitType_Inch);
    EXPECT_TRUE(ToldBoolean(u"1", [](XMLCh const* text) { return *text == u'1'; }));
    EXPECT_THAT(notes.lines, ElementsAre("2mm bad", "2.5 good", "x bad", "inch bad", "1 good true"));
}

}  // namespace KVR::Test
