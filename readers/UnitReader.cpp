#include "readers/UnitReader.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"

namespace KVR
{

namespace
{

bool ReadUnitText(xercesc::DOMNode const* node, AttributeName name, UnitTypeEnum& unit)
{
    return XMLStrUtil::StringToUnitType(AttributeOrEmpty(node, name), unit);
}

bool ReadDouble(xercesc::DOMNode const* node, AttributeName name, double& value)
{
    return XMLStrUtil::XMLStrToDouble(AttributeOrEmpty(node, name), value);
}

}  // namespace

bool ReadUnit(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, UnitTypeEnum& displayAngleUnit,
              UnitTypeEnum& displayLengthUnit)
{
    if (!IsNamed(node, Names::Unit))
        return false;
    TellObserver(&ReadObserver::LastCounts, node);
    Ignored(ReadUnitText(node, Names::LengthUnit, lengthUnit));
    Ignored(ReadUnitText(node, Names::DisplayAngleUnit, displayAngleUnit));
    return ReadUnitText(node, Names::DisplayLengthUnit, displayLengthUnit);
}

bool ReadLengthUnits(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, UnitTypeEnum& displayLengthUnit)
{
    UnitTypeEnum dropped = kUnitType_Unknown;
    return ReadUnit(node, lengthUnit, dropped, displayLengthUnit);
}

bool ReadTolerance(xercesc::DOMNode const* node, double& angular, double& linear, double& param)
{
    if (!IsNamed(node, Names::Tolerance))
        return false;
    TellObserver(&ReadObserver::LastCounts, node);
    Ignored(ReadDouble(node, Names::AngularTolerance, angular));
    Ignored(ReadDouble(node, Names::LinearTolerance, linear));
    return ReadDouble(node, Names::ParamTolerance, param);
}

bool ReadUnitAndTolerance(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, double* angular, double* linear,
                          double* param)
{
    if (!IsNamed(node, Names::UnitAndTolerance))
        return false;
    bool isRead = ReadUnitText(node, Names::LengthUnit, lengthUnit);
    if (angular)
        isRead = ReadDouble(node, Names::AngularTolerance, *angular);
    if (linear)
        isRead = ReadDouble(node, Names::LinearTolerance, *linear);
    if (param)
        isRead = ReadDouble(node, Names::ParamTolerance, *param);
    return isRead;
}

}  // namespace KVR
