#include "readers/UnitReader.h"

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"

namespace KVR
{

namespace
{

bool ReadUnitText(xercesc::DOMNode const* node, XMLCh const* name, UnitTypeEnum& unit)
{
    return XMLStrUtil::StringToUnitType(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, name)), unit);
}

bool ReadDouble(xercesc::DOMNode const* node, XMLCh const* name, double& value)
{
    return XMLStrUtil::XMLStrToDouble(AttributeOrEmpty(node, name), value);
}

}  // namespace

bool ReadUnit(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, UnitTypeEnum& displayAngleUnit,
              UnitTypeEnum& displayLengthUnit)
{
    if (!IsNamed(node, u"Unit"))
        return false;
    Ignored(ReadUnitText(node, u"LengthUnit", lengthUnit));
    Ignored(ReadUnitText(node, u"DisplayAngleUnit", displayAngleUnit));
    return ReadUnitText(node, u"DisplayLengthUnit", displayLengthUnit);
}

bool ReadLengthUnits(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, UnitTypeEnum& displayLengthUnit)
{
    UnitTypeEnum dropped = kUnitType_Unknown;
    return ReadUnit(node, lengthUnit, dropped, displayLengthUnit);
}

bool ReadTolerance(xercesc::DOMNode const* node, double& angular, double& linear, double& param)
{
    if (!IsNamed(node, u"Tolerance"))
        return false;
    Ignored(ReadDouble(node, u"AngularTolerance", angular));
    Ignored(ReadDouble(node, u"LinearTolerance", linear));
    return ReadDouble(node, u"ParamTolerance", param);
}

bool ReadUnitAndTolerance(xercesc::DOMNode const* node, UnitTypeEnum& lengthUnit, double* angular, double* linear,
                          double* param)
{
    if (!IsNamed(node, u"UnitAndTolerance"))
        return false;
    bool isRead = ReadUnitText(node, u"LengthUnit", lengthUnit);
    if (angular)
        isRead = ReadDouble(node, u"AngularTolerance", *angular);
    if (linear)
        isRead = ReadDouble(node, u"LinearTolerance", *linear);
    if (param)
        isRead = ReadDouble(node, u"ParamTolerance", *param);
    return isRead;
}

}  // namespace KVR
