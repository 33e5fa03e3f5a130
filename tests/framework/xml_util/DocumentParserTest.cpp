#include "framework/xml_util/DocumentParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>

#include "framework/xml_util/XMLPlatform.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using xercesc::DOMNode;

std::string Narrow(XMLCh const* text)
{
    return Text(XMLStrUtil::XMLStrToAStr(text));
}

// The nodes below one: elements by their names with what is in them, texts with an underscore for a blank.
std::string Outline(DOMNode const* node)
{
    std::string text;
    for (DOMNode const* child = node->getFirstChild(); child; child = child->getNextSibling())
    {
        if (child->getNodeType() == DOMNode::ELEMENT_NODE)
            text += Narrow(child->getNodeName()) + "(" + Outline(child) + ")";
        else if (child->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE)
            text += "&(" + Outline(child) + ")";
        else if (child->getNodeType() == DOMNode::COMMENT_NODE)
            text += "!";
        else
            for (char const letter : Narrow(child->getNodeValue()))
                text += letter == ' ' ? '_' : letter;
    }
    return text;
}

std::string OutlineOf(std::string_view document)
{
    XMLPlatformScope const platform;
    std::unique_ptr<xercesc::XercesDOMParser> const parser = MakeDocumentParser();
    xercesc::MemBufInputSource const source(reinterpret_cast<XMLByte const*>(document.data()), document.size(), "test");
    parser->parse(source);
    EXPECT_EQ(parser->getErrorCount(), 0U);
    return Outline(parser->getDocument());
}

}  // namespace

TEST(DocumentParser, LeavesOutTheSpaceBetweenTheElementsOfContainers)
{
    EXPECT_EQ(OutlineOf("<S> <IFile> <ChildSet> <P/> </ChildSet> </IFile> \t\r\n </S>"), "S(IFile(ChildSet(P())))");
    EXPECT_EQ(OutlineOf("<S><IAssembly> <ChildSet> <IInstance> <Child/> </IInstance> </ChildSet> </IAssembly></S>"),
              "S(IAssembly(ChildSet(IInstance(Child()))))");
    EXPECT_EQ(OutlineOf("<S> <IPart/> <IBrep> </IBrep> </S>"), "S(IPart()IBrep())");
}

TEST(DocumentParser, LeavesItOutOfEachKindOfContainer)
{
    for (std::string const name : {"IInstance", "ChildSet", "IAssembly", "IPart", "IFile", "IBrep", "IPolygonMesh",
                                   "ViewSet", "IView", "ViewMember", "ViewMemberChild"})
        EXPECT_EQ(OutlineOf("<S><" + name + "> <P/> </" + name + "></S>"), "S(" + name + "(P()))");
}

TEST(DocumentParser, KeepsAllOtherText)
{
    EXPECT_EQ(OutlineOf("<S>a <IPart> b</IPart></S>"), "S(a_IPart(_b))");
    EXPECT_EQ(OutlineOf("<S><!-- --> <IPart><![CDATA[ ]]></IPart></S>"), "S(!IPart(_))");
    EXPECT_EQ(OutlineOf("<S><IPart> <ChangeKey> </ChangeKey> </IPart></S>"), "S(IPart(ChangeKey(_)))");
    EXPECT_EQ(OutlineOf("<S><ChangeKey> <IPart> </IPart> </ChangeKey></S>"), "S(ChangeKey(_IPart(_)_))")
        << "what stands in another element may be its text";
    EXPECT_EQ(OutlineOf("<S><n:IPart xmlns:n='urn:n'> </n:IPart><ipart> </ipart></S>"), "S(n:IPart(_)ipart(_))");
}

TEST(DocumentParser, GoesOnAsBeforeBehindAnElementThatIsNoContainer)
{
    EXPECT_EQ(OutlineOf("<S> <Other> <IPart> </IPart> </Other> <IPart> <Unit/> </IPart> </S>"),
              "S(Other(_IPart(_)_)IPart(Unit()))");
    EXPECT_EQ(OutlineOf("<S> <Other/> <IPart> </IPart> </S>"), "S(Other()IPart())");
}

TEST(DocumentParser, KeepsTheSpaceInEntities)
{
    EXPECT_EQ(OutlineOf("<!DOCTYPE S [<!ENTITY e ' '>]><S> &e; <ChangeKey>&e;</ChangeKey></S>"),
              "S(&(_)ChangeKey(&(_)))");
}

}  // namespace KVR::Test
