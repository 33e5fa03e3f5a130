#include "framework/xml_util/FormatNames.h"

#include <gtest/gtest.h>

#include <concepts>
#include <string>
#include <type_traits>

namespace
{

using namespace KVR;

static_assert(!std::convertible_to<AttributeName, ElementName> && !std::convertible_to<ElementName, AttributeName>);
static_assert(std::convertible_to<SharedName, ElementName> && std::convertible_to<SharedName, AttributeName>);
static_assert(!std::convertible_to<char16_t const*, ElementName> && !std::convertible_to<char const*, AttributeName>);
// A kind is no larger than the name itself, and costs nothing to pass on.
static_assert(std::is_trivially_copyable_v<ElementName> && sizeof(ElementName) == sizeof(FormatName));

TEST(FormatNames, HaveTheSameTextAsDocumentTextAndAsUtf8)
{
    std::u16string_view const document = Names::IAnnotationCalloutElement;
    std::string_view const narrow = Names::IAnnotationCalloutElement;
    EXPECT_EQ(document, u"IAnnotationCalloutElement");
    EXPECT_EQ(narrow, "IAnnotationCalloutElement");
    EXPECT_EQ(std::u16string(Names::IAnnotationCalloutElement.Document()), document) << "zero-terminated";
    EXPECT_EQ(std::string(Names::IAnnotationCalloutElement.Narrow()), narrow) << "zero-terminated";
}

TEST(FormatNames, OfBothKindsAreTakenForEither)
{
    ElementName const element = Names::ID;
    AttributeName const attribute = Names::ID;
    EXPECT_EQ(std::string_view(element), "ID");
    EXPECT_EQ(std::string_view(attribute), "ID");
}

}  // namespace
