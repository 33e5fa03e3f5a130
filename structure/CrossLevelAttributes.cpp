#include "structure/CrossLevelAttributes.h"

#include <utility>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/BooleanText.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"
#include "readers/ReferenceReader.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

IdSet PathOf(DOMNode const* node)
{
    return ParseOccurrencePath(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::Path)));
}

// Kept: a style override without a path is passed over, while the other two are kept with an empty path.
void ReadEntityStyles(XMLProducerImpl* producer, DOMNode const* node, std::vector<CrossLevelStyle>& styles)
{
    if (Equals(AttributeOrEmpty(node, Names::Path), u""))
        return;
    CrossLevelStyle style;
    for (DOMNode const* const child : Children(node))
        Ignored(ReadStyleRefs(producer, child, style.styles));
    style.path = PathOf(node);
    styles.push_back(std::move(style));
}

void ReadEntityVisibility(DOMNode const* node, std::vector<CrossLevelVisibility>& visibilities)
{
    visibilities.push_back({PathOf(node), ReadBoolean(node, Names::Visibility, kVisibility_OneElseHidden)});
}

void ReadEntityTransformation(DOMNode const* node, std::vector<CrossLevelTransform>& transforms)
{
    CrossLevelTransform transform;
    XMLStrUtil::GetTransfFromStr(AttributeOrEmpty(node, Names::Transformation), transform.transform);
    transform.path = PathOf(node);
    transforms.push_back(std::move(transform));
}

template <class Action>
void ForEachNamed(DOMNode const* parent, ElementName name, Action action)
{
    for (DOMNode const* const child : Children(parent))
    {
        if (IsNamed(child, name))
            action(child);
    }
}

}  // namespace

bool ReadCrossLevelAttributes(XMLProducerImpl* producer, DOMNode const* node,
                              std::vector<CrossLevelVisibility>& visibilities, std::vector<CrossLevelStyle>& styles,
                              std::vector<CrossLevelTransform>& transforms)
{
    auto const readStyles = [&](DOMNode const* entity) { ReadEntityStyles(producer, entity, styles); };
    auto const readVisibility = [&](DOMNode const* entity) { ReadEntityVisibility(entity, visibilities); };
    auto const readTransform = [&](DOMNode const* entity) { ReadEntityTransformation(entity, transforms); };
    for (DOMNode const* const child : Children(node))
    {
        Match(child,                                                                                           //
              On(Names::Styles, [&] { ForEachNamed(child, Names::EntityStyles, readStyles); }),                //
              On(Names::Visibilities, [&] { ForEachNamed(child, Names::EntityVisibility, readVisibility); }),  //
              On(Names::Transformations, [&] { ForEachNamed(child, Names::EntityTransformation, readTransform); }));
    }
    return node != nullptr;
}

}  // namespace KVR
