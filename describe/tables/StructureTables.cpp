#include "describe/Rows.h"
#include "framework/api/IAssembly.h"
#include "framework/api/IAssemblyFeatureOverride.h"
#include "framework/api/IFile.h"
#include "framework/api/IGenericObject.h"
#include "framework/api/IInstance.h"
#include "framework/api/IPart.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/OccurrencePathCollection.h"
#include "framework/api/Time.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;

constexpr Row kRefFileRows[] = {
    Written<&IFile::RefFileAt, 0>("Id"),
    Written<&IFile::RefFileAt, 1>("Path"),
};
constexpr Interface kRefFile{"RefFile", kRefFileRows};

constexpr Row kFileRows[] = {
    Inherits<IFile, IObject>(),
    Inherits<IFile, IAttributeSets>(),
    Inherits<IFile, IUnit>(),
    Value<&IFile::FileProperties>("FileProperties"),
    List<&IFile::ChildCount, &IFile::ChildAt>("Children").RefersTo(Refers::Child),
    Value<&IFile::IsRoot>("IsRoot"),
    Value<&IFile::FileFullPath>("FileFullPath"),
    Value<&IFile::LastModificationTime>("LastModificationTime"),
    Records<&IFile::RefFileCount, &IFile::RefFileAt, &kRefFile>("RefFiles"),
};

constexpr Row kVisibilityRows[] = {
    Written<&IAssembly::CrossLevelVisibilityAt, 0>("Path"),
    Written<&IAssembly::CrossLevelVisibilityAt, 1>("Visible"),
};
constexpr Interface kCrossLevelVisibility{"CrossLevelVisibility", kVisibilityRows};

constexpr Row kStyleRows[] = {
    Written<&IAssembly::CrossLevelStyleAt, 0>("Path"),
    Written<&IAssembly::CrossLevelStyleAt, 1>("Styles").RefersTo(Refers::Set),
};
constexpr Interface kCrossLevelStyle{"CrossLevelStyle", kStyleRows};

constexpr Row kTransformRows[] = {
    Written<&IAssembly::CrossLevelTransformAt, 0>("Path"),
    Written<&IAssembly::CrossLevelTransformAt, 1>("Transform"),
};
constexpr Interface kCrossLevelTransform{"CrossLevelTransform", kTransformRows};

constexpr Row kAssemblyRows[] = {
    Inherits<IAssembly, IComponent>(),
    List<&IComponent::ChildCount, &IAssembly::ChildAt>("Children").RefersTo(Refers::Child),
    Records<&IAssembly::CrossLevelVisibilityCount, &IAssembly::CrossLevelVisibilityAt, &kCrossLevelVisibility>(
        "CrossLevelVisibilities"),
    Records<&IAssembly::CrossLevelStyleCount, &IAssembly::CrossLevelStyleAt, &kCrossLevelStyle>("CrossLevelStyles")
        .RefersTo(Refers::SetOfEach),
    Records<&IAssembly::CrossLevelTransformCount, &IAssembly::CrossLevelTransformAt, &kCrossLevelTransform>(
        "CrossLevelTransforms"),
};

constexpr Row kPartRows[] = {
    Inherits<IPart, IComponent>(),
    List<&IComponent::ChildCount, &IPart::ChildAt>("Children").RefersTo(Refers::Child),
};

constexpr Row kInstanceRows[] = {
    Inherits<IInstance, IObject>(),
    Inherits<IInstance, ITransformable>(),
    Inherits<IInstance, IUnit>(),
    Inherits<IInstance, IVisible>(),
    Value<&IInstance::TargetId>("TargetId").RefersTo(Refers::Object),
    Value<&IInstance::IsNetVisible>("IsNetVisible"),
    Value<&IInstance::Styles>("Styles").RefersTo(Refers::Set),
    Value<&IInstance::NetStyles>("NetStyles").RefersTo(Refers::Set),
};

constexpr Row kFeatureOverrideRows[] = {
    Inherits<IAssemblyFeatureOverride, IObject>(),
    Inherits<IAssemblyFeatureOverride, IVisible>(),
    List<&IAssemblyFeatureOverride::ChildCount, &IAssemblyFeatureOverride::ChildAt>("Children").RefersTo(Refers::Child),
    Value<&IAssemblyFeatureOverride::BaseOccPaths>("BaseOccPaths"),
};

constexpr Row kGenericObjectRows[] = {
    Inherits<IGenericObject, IObject>(),
};

constexpr Row kCoordSysRows[] = {
    Inherits<ICoordSys, IObject>(),
};

}  // namespace

Interface const TableOf<IFile>::kTable = {"IFile", kFileRows, kNamed};
Interface const TableOf<IAssembly>::kTable = {"IAssembly", kAssemblyRows, kNamed};
Interface const TableOf<IPart>::kTable = {"IPart", kPartRows, kNamed};
Interface const TableOf<IInstance>::kTable = {"IInstance", kInstanceRows, kNamed};
Interface const TableOf<IAssemblyFeatureOverride>::kTable = {"IAssemblyFeatureOverride", kFeatureOverrideRows, kNamed};
Interface const TableOf<IGenericObject>::kTable = {"IGenericObject", kGenericObjectRows, kNamed};
Interface const TableOf<ICoordSys>::kTable = {"ICoordSys", kCoordSysRows, kNamed};

}  // namespace KVR
