#include <memory>
#include <utility>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "organisation/XMLSectionCamera.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/CoordinateReader.h"
#include "readers/Ignored.h"
#include "readers/RegisterObject.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

struct DecimalRow
{
    AttributeName name;
    Specified<double> CameraState::*member;
};

constexpr DecimalRow kDecimalRows[] = {
    {Names::DistanceToViewPlane, &CameraState::distanceToViewPlane},
    {Names::AspectRatio, &CameraState::aspectRatio},
    {Names::ViewAngle, &CameraState::viewAngle},
    {Names::ViewWindowHeightForParallelCamera, &CameraState::viewWindowHeight},
};

void ReadAttributes(DOMNode const* node, CameraState& state)
{
    Ignored(ValueOfDocumentText(kCameraTypeTexts, AttributeText(node, Names::Type), state.cameraType));
    // Kept: the attribute's being there is what specifies a value, also when its text does not convert.
    for (DecimalRow const& row : kDecimalRows)
    {
        XMLCh const* const text = AttributeText(node, row.name);
        if (!text)
            continue;
        Ignored(XMLStrUtil::XMLStrToDouble(text, (state.*row.member).value));
        (state.*row.member).isSpecified = true;
    }
    if (XMLCh const* const text = AttributeText(node, Names::IsDepthFieldDefined))
        state.isDepthFieldDefined = {
            ToldBoolean(text, [](XMLCh const* held) { return XMLStrUtil::XMLStrToInt(held) != 0; }), true};
}

template <class Coordinates>
Coordinates ReadCoordinates(DOMNode const* node)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    ReadXYZ(node, x, y, z);
    return Coordinates(x, y, z);
}

void ReadClippingPlane(DOMNode const* node, Specified<Plane>& plane)
{
    for (DOMNode const* const child : Children(node))
    {
        Match(child, On(Names::PlaneData,
                        [&]
                        {
                            ReadPlane(child, plane.value);
                            plane.isSpecified = true;
                        }));
    }
}

// One camera in the making, which becomes a section camera at the first sign of one.
class CameraReading
{
public:
    CameraReading(DOMNode const* node, UTF8String id)
        : m_camera(
              std::make_unique<XMLCamera>(std::move(id), XMLStrUtil::XMLStrToWStr(AttributeText(node, Names::Label)))),
          m_state(m_camera->state)
    {
        // Kept: the camera alone has it. One inside a section camera does not answer for it.
        m_camera->SetVersionPersistentId(XMLStrUtil::XMLStrToAStr(AttributeText(node, Names::VersionPersistentId)));
        ReadAttributes(node, m_state);
        // Kept: extension data of a camera is not kept, and neither is a change key.
        for (DOMNode* const child : Children(node))
            ReadChild(child);
    }

    std::unique_ptr<IObject> Take()
    {
        if (m_sectionCamera)
            return std::move(m_sectionCamera);
        return std::move(m_camera);
    }

private:
    void ReadChild(DOMNode* child)
    {
        Match(child,  //
              On(Names::Unit,
                 [&]
                 {
                     // Kept: of a camera's unit only the length counts.
                     TellObserver(&ReadObserver::LastCounts, child);
                     Ignored(XMLStrUtil::StringToUnitType(AttributeText(child, Names::LengthUnit), m_state.lengthUnit));
                 }),
              On(Names::CameraPosition, [&] { m_state.cameraPosition = ReadCoordinates<Position>(child); }),
              On(Names::CameraDirection, [&] { m_state.cameraDirection = ReadCoordinates<UnitVector>(child); }),
              On(Names::CameraUpDirection, [&] { m_state.cameraUpDirection = ReadCoordinates<UnitVector>(child); }),
              On(Names::NearPlane, [&] { ReadClippingPlane(child, m_state.nearPlane); }),
              On(Names::FarPlane, [&] { ReadClippingPlane(child, m_state.farPlane); }),
              On(Names::ISectionCamera, [&] { ReadSections(child); }));
    }

    void ReadSections(DOMNode const* node)
    {
        // Kept: anything inside makes a section camera, white space too; nothing inside makes none.
        if (!node->getFirstChild())
            return;
        if (!m_sectionCamera)
        {
            UTF8String id = m_camera->Id();
            UTF16String label = m_camera->Label();
            m_sectionCamera = std::make_unique<XMLSectionCamera>(std::move(id), std::move(label), std::move(m_camera));
        }
        for (DOMNode* const child : Children(node))
        {
            Match(child,  //
                  On(Names::PlaneData,
                     [&]
                     {
                         Plane plane;
                         ReadPlane(child, plane);
                         m_sectionCamera->AddSectionPlane(plane);
                     }),
                  On(Names::SectioningOperations,
                     [&]
                     {
                         if (UTF8String const text = XMLStrUtil::XMLStrToAStr(TextContent(child)); !text.IsEmpty())
                             m_sectionCamera->SetSectioningOperations(text);
                     }));
        }
    }

    // Null once the section camera holds it.
    std::unique_ptr<XMLCamera> m_camera;
    CameraState& m_state;
    std::unique_ptr<XMLSectionCamera> m_sectionCamera;
};

}  // namespace

bool ReadCameraSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids)
{
    // Kept: an element of any name is a camera.
    for (DOMNode const* const child : Children(node))
    {
        UTF8String id = XMLStrUtil::XMLStrToAStr(AttributeText(child, Names::ID));
        producer->ApplyIdMapping(id);
        // Kept: an id that is taken is listed all the same, unlike that of a level of detail.
        ids.push_back(id);
        if (!IsTaken(*producer, child, id))
            Register(*producer, child, CameraReading(child, std::move(id)).Take());
    }
    return node != nullptr;
}

}  // namespace KVR
