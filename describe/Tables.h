#pragma once

#include "describe/Row.h"
#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ObjectVisitor.h"

namespace KVR
{

class BODY;
class Blob;
class curve;
class CustomProperty;
class EditablePolygon;
class ExtensionDataContent;
class FaceSegmentInfo;
class FileProperties;
class FileQueryResult;
class IAttributeSets;
class IBaseData;
class IComponent;
class ICurveData;
class IGeometry;
class IObject;
class IProducer;
class IProperty;
class ISectionCamera;
class ISubEntityStyles;
class ISubObjectPersistentIds;
class IText;
class ITextFragment;
class ITextLine;
class ITextureVertexSet;
class ITransformable;
class IUniverse;
class IUnit;
class IVisible;
class IVitreolRenderStyle;
class Plane;
class ViewData;
class ViewingData;
class VitreolSerializedAsset;

/// The table of an interface, or of a class of values: its operations row by row. Only classes that have a table have
/// this, too.
template <class T>
struct TableOf;

template <class T>
concept Described = requires
{
    TableOf<T>::kTable;
};

// clang-format off
// Bases that several interfaces share.
template <> struct TableOf<IObject> { static Interface const kTable; };
template <> struct TableOf<IUnit> { static Interface const kTable; };
template <> struct TableOf<IVisible> { static Interface const kTable; };
template <> struct TableOf<ITransformable> { static Interface const kTable; };
template <> struct TableOf<IAttributeSets> { static Interface const kTable; };
template <> struct TableOf<ISubEntityStyles> { static Interface const kTable; };
template <> struct TableOf<ISubObjectPersistentIds> { static Interface const kTable; };
template <> struct TableOf<IGeometry> { static Interface const kTable; };
template <> struct TableOf<IComponent> { static Interface const kTable; };

// The scene as a whole.
template <> struct TableOf<IProducer> { static Interface const kTable; };
template <> struct TableOf<FileQueryResult> { static Interface const kTable; };
template <> struct TableOf<IUniverse> { static Interface const kTable; };
template <> struct TableOf<IProperty> { static Interface const kTable; };
template <> struct TableOf<FileProperties> { static Interface const kTable; };
template <> struct TableOf<CustomProperty> { static Interface const kTable; };
template <> struct TableOf<ExtensionDataContent> { static Interface const kTable; };

// Structure.
template <> struct TableOf<IFile> { static Interface const kTable; };
template <> struct TableOf<IAssembly> { static Interface const kTable; };
template <> struct TableOf<IPart> { static Interface const kTable; };
template <> struct TableOf<IInstance> { static Interface const kTable; };
template <> struct TableOf<IAssemblyFeatureOverride> { static Interface const kTable; };
template <> struct TableOf<IGenericObject> { static Interface const kTable; };
template <> struct TableOf<ICoordSys> { static Interface const kTable; };

// Geometry.
template <> struct TableOf<IBrep> { static Interface const kTable; };
template <> struct TableOf<ICurve> { static Interface const kTable; };
template <> struct TableOf<IPoint> { static Interface const kTable; };
template <> struct TableOf<IPointCloud> { static Interface const kTable; };
template <> struct TableOf<ISketch> { static Interface const kTable; };
template <> struct TableOf<IGeometricSet> { static Interface const kTable; };
template <> struct TableOf<IExtensionGeometry> { static Interface const kTable; };
template <> struct TableOf<IWorkAxis> { static Interface const kTable; };
template <> struct TableOf<IWorkPlane> { static Interface const kTable; };
template <> struct TableOf<IWorkPoint> { static Interface const kTable; };
template <> struct TableOf<BODY> { static Interface const kTable; };
template <> struct TableOf<curve> { static Interface const kTable; };

// Curve data.
template <> struct TableOf<IBaseData> { static Interface const kTable; };
template <> struct TableOf<ICurveData> { static Interface const kTable; };
template <> struct TableOf<IStraightData> { static Interface const kTable; };
template <> struct TableOf<IRayData> { static Interface const kTable; };
template <> struct TableOf<IEllipseData> { static Interface const kTable; };
template <> struct TableOf<IPolyLineData> { static Interface const kTable; };
template <> struct TableOf<INurbsCurveData> { static Interface const kTable; };
template <> struct TableOf<ICompositeCurveData> { static Interface const kTable; };

// Meshes.
template <> struct TableOf<IPolygonMesh> { static Interface const kTable; };
template <> struct TableOf<ITextureVertexSet> { static Interface const kTable; };
template <> struct TableOf<EditablePolygon> { static Interface const kTable; };
template <> struct TableOf<FaceSegmentInfo> { static Interface const kTable; };

// Appearance.
template <> struct TableOf<IRenderStyle> { static Interface const kTable; };
template <> struct TableOf<IVitreolRenderStyle> { static Interface const kTable; };
template <> struct TableOf<IMaterialTexture> { static Interface const kTable; };
template <> struct TableOf<VitreolSerializedAsset> { static Interface const kTable; };

// Organisation.
template <> struct TableOf<ILayer> { static Interface const kTable; };
template <> struct TableOf<IGroup> { static Interface const kTable; };
template <> struct TableOf<ILod> { static Interface const kTable; };
template <> struct TableOf<ICamera> { static Interface const kTable; };
template <> struct TableOf<ISectionCamera> { static Interface const kTable; };
template <> struct TableOf<IView> { static Interface const kTable; };

// Annotation.
template <> struct TableOf<IAnnotationCallout> { static Interface const kTable; };
template <> struct TableOf<IAnnotationCalloutElement> { static Interface const kTable; };
template <> struct TableOf<IText> { static Interface const kTable; };
template <> struct TableOf<ITextLine> { static Interface const kTable; };
template <> struct TableOf<ITextFragment> { static Interface const kTable; };

// Values.
template <> struct TableOf<Plane> { static Interface const kTable; };
template <> struct TableOf<ViewData> { static Interface const kTable; };
template <> struct TableOf<ViewingData> { static Interface const kTable; };
template <> struct TableOf<Blob> { static Interface const kTable; };

// clang-format on

/// An object with the table that says its operations; both null for none.
struct DescribedObject
{
    Interface const* interface = nullptr;
    void const* object = nullptr;

    /// By the most special interface of the object.
    static DescribedObject Of(IObject& object);
    /// By the kind of curve data.
    static DescribedObject Of(ICurveData& data);
};

/// The interfaces of a list.
template <class... Interfaces>
struct InterfaceList
{
    static constexpr Interface const* kTables[] = {&TableOf<Interfaces>::kTable...};
};

/// All interfaces that an object may have.
using ObjectInterfaces =
    InterfaceList<IFile, IAssembly, IPart, IInstance, IAssemblyFeatureOverride, IBrep, IPolygonMesh, ICurve, IPoint,
                  IPointCloud, ISketch, IGeometricSet, IExtensionGeometry, IWorkAxis, IWorkPlane, IWorkPoint,
                  IRenderStyle, IVitreolRenderStyle, IMaterialTexture, ILayer, IGroup, ILod, ICamera, ISectionCamera,
                  IView, IAnnotationCallout, IAnnotationCalloutElement, IGenericObject, ICoordSys>;

/// The tables of them.
inline constexpr auto& kObjectTables = ObjectInterfaces::kTables;

/// The tables of all kinds of curve data.
inline constexpr Interface const* kCurveDataTables[] = {
    &TableOf<IStraightData>::kTable, &TableOf<IRayData>::kTable,        &TableOf<IEllipseData>::kTable,
    &TableOf<IPolyLineData>::kTable, &TableOf<INurbsCurveData>::kTable, &TableOf<ICompositeCurveData>::kTable,
};

}  // namespace KVR
