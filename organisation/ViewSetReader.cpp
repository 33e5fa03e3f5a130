#include <memory>
#include <utility>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "organisation/XMLView.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

bool IsNotZero(XMLCh const* text)
{
    return XMLStrUtil::XMLStrToInt(text) != 0;
}

// Kept: any integer but 0 means shown here, where an instance wants "1" and a layer "True".
constexpr BooleanForm kVisibility_NotZeroAbsentShown = {&IsNotZero, true};
constexpr BooleanForm kActive_NotZeroAbsentActive = {&IsNotZero, true};
constexpr BooleanForm kMemberVisibility_NotZeroElseHidden = {&IsNotZero, false};

// Kept: the ids of the path stay as written, also where those of the styles beside it are mapped.
IdSet ReadPath(DOMNode const* node)
{
    return ParseOccurrencePath(XMLStrUtil::XMLStrToAStr(AttributeText(node, Names::Path)));
}

void ReadTransform(DOMNode* node, Matrix3d& transform)
{
    TellObserver(&ReadObserver::LastCounts, node);
    XMLCh const* const text = TextContent(node);
    if (text && *text != 0)
        XMLStrUtil::GetTransfFromStr(text, transform);
}

void ReadMember(XMLProducerImpl* producer, DOMNode const* node, XMLView& view)
{
    IdSet path;
    ViewMemberRecord record;
    for (DOMNode* const child : Children(node))
    {
        Match(child,                                                       //
              On(Names::OccurrencePath, [&] { path = ReadPath(child); }),  //
              On(Names::EntityVisibility,
                 [&] { record.visible = ReadBoolean(child, Names::Visibility, kMemberVisibility_NotZeroElseHidden); }),
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(producer, child, record.styles)); }),  //
              On(Names::Transform, [&] { ReadTransform(child, record.transform); }));
    }
    view.AddViewMember(std::move(path), std::move(record));
}

void ReadMembers(XMLProducerImpl* producer, DOMNode const* node, XMLView& view)
{
    for (DOMNode const* const child : Children(node))
        Match(child, On(Names::ViewMemberChild, [&] { ReadMember(producer, child, view); }));
}

void ReadLengthUnit(DOMNode const* node, XMLView& view)
{
    TellObserver(&ReadObserver::LastCounts, node);
    // A text that is no unit leaves what an earlier element set.
    UnitTypeEnum unit = kUnitType_Unknown;
    Ignored(view.LengthUnit(unit));
    Ignored(XMLStrUtil::StringToUnitType(AttributeText(node, Names::LengthUnit), unit));
    view.SetLengthUnit(unit);
}

std::unique_ptr<XMLView> ReadView(XMLProducerImpl* producer, DOMNode const* node, UTF8String id)
{
    auto view = std::make_unique<XMLView>(XMLStrUtil::XMLStrToWStr(AttributeText(node, Names::Label)), std::move(id));
    view->SetVersionPersistentId(XMLStrUtil::XMLStrToAStr(AttributeText(node, Names::VersionPersistentId)));
    view->SetVisible(ReadBoolean(node, Names::Visibility, kVisibility_NotZeroAbsentShown));
    view->SetActive(ReadBoolean(node, Names::IsActive, kActive_NotZeroAbsentActive));
    IdSet cameras;
    // Kept: extension data of a view is not kept, and neither is a change key.
    for (DOMNode* const child : Children(node))
    {
        Match(child,                                                                //
              On(Names::Unit, [&] { ReadLengthUnit(child, *view); }),               //
              On(Names::ViewMember, [&] { ReadMembers(producer, child, *view); }),  //
              On(Names::CameraSet, [&] { Ignored(ReadCameraRefs(producer, child, cameras)); }));
    }
    view->FinishMembers();
    view->SetCameraSet(std::move(cameras));
    return view;
}

}  // namespace

bool ReadViewSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids)
{
    // Kept: an element of any name is a view.
    for (DOMNode const* const child : Children(node))
    {
        UTF8String id = XMLStrUtil::XMLStrToAStr(AttributeText(child, Names::ID));
        producer->ApplyIdMapping(id);
        // Kept: an id that is taken is listed all the same.
        ids.push_back(id);
        if (!IsTaken(*producer, child, id))
            Register(*producer, child, ReadView(producer, child, std::move(id)));
    }
    return node != nullptr;
}

}  // namespace KVR
