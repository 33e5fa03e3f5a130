#pragma once

#include <array>
#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "authoring/BaseRecords.h"
#include "framework/api/CustomProperty.h"
#include "framework/api/Enums.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF8String.h"

/// What a SceneWriter writes, as plain values. A member that is not set, and an empty list, is left out of the scene;
/// docs/formats.md tells what a reader makes of that. Texts are UTF-8. Lengths are in the unit of the object or, where
/// it states none, of its component; angles are in radians.
namespace KVR::Authoring
{

/// Styles of a face or edge, by its data id.
struct SubEntityStyles
{
    UTF8String dataId;
    std::vector<UTF8String> styles;
};

/// "IBrep"; the body stands under the same id in a kernel store.
struct BodyRecord : GeometryRecord
{
    /// The end of a "kProducerGeometryType_" text, such as "BrepSolid", "BrepSheet", "BrepWire".
    UTF8String type = "BrepSolid";
    std::vector<SubEntityStyles> faces;
    std::vector<SubEntityStyles> edges;
};

/// "IPolygonMesh"; the mesh stands under the same id in a mesh store. It has no tolerance and no resolved styles.
struct MeshRecord : GeometryRecord
{
    /// The end of a "kPolygonMeshType_" text: "Regular", "Triangular", "Strip", "Fan".
    UTF8String type = "Triangular";
    std::optional<UTF8String> levelOfDetailId;
};

/// "ICurve": a curve of a mesh store under the same id or, with entities, edges of a kernel store.
struct CurveElementRecord : GeometryRecord
{
    std::vector<UTF8String> kernelEntityIds;
};

/// "IPoint".
struct PointRecord : GeometryRecord
{
    XYZ position{};
};

/// "IPointCloud". It has no styles, and no key of its own.
struct PointCloudRecord : GeometryRecord
{
    std::vector<XYZ> points;
};

/// "IWorkAxis".
struct WorkAxisRecord : GeometryRecord
{
    XYZ start{};
    XYZ end{};
    XYZ axis{};
};

/// A plane, perhaps with a direction in it.
struct PlaneRecord
{
    XYZ origin{};
    XYZ normal{0.0, 0.0, 1.0};
    std::optional<XYZ> reference;
};

/// "IWorkPlane".
struct WorkPlaneRecord : GeometryRecord
{
    PlaneRecord plane;
    /// The lowest and the highest corner of what is shown.
    std::optional<std::pair<XYZ, XYZ>> displayRange;
};

/// "IWorkPoint".
struct WorkPointRecord : GeometryRecord
{
    XYZ position{};
};

/// "ISketch". Its curves take edges of a kernel store.
struct SketchRecord : GeometryRecord
{
    bool is3D = false;
    std::vector<PointRecord> points;
    std::vector<CurveElementRecord> curves;
};

/// "IInstance".
struct InstanceRecord : ShownRecord
{
    /// The id of an assembly, part or file.
    UTF8String targetId;
    /// From the target to the assembly that the instance stands in.
    Matrix3d transform;
    UnitRecord unit;
};

/// A custom property, or one of a property file.
using PropertyValue = CustomProperty;

/// "FileProperties".
struct FilePropertiesRecord
{
    /// An element such as "Title", "Author", "Organization", "Description", "SendingSystem", "PartNumber", "Revision",
    /// "Preprocessor" or "Authorisation" with its text, in order.
    std::vector<std::pair<std::string, UTF8String>> texts;
    std::optional<struct tm> creationDate;
    std::optional<UnitTypeEnum> massUnit;
    std::optional<UnitTypeEnum> timeUnit;
    std::optional<XYZ> upVector;
    std::optional<XYZ> frontVector;
    std::vector<PropertyValue> custom;
};

/// "IUniverse".
struct UniverseRecord
{
    /// "CustomDataItem": a key and one of the three values.
    struct CustomData
    {
        UTF8String key;
        /// A text, a list of ids, or a blob that is `size` bytes of a file.
        std::optional<UTF8String> text;
        std::optional<std::vector<UTF8String>> ids;
        std::optional<std::pair<UTF8String, unsigned long long>> blob;
    };
    std::optional<XYZ> upVector;
    std::optional<XYZ> frontVector;
    std::optional<ColorRecord> curveColor;
    std::optional<ColorRecord> surfaceColor;
    std::vector<CustomData> customData;
};

/// What a child of a file is.
enum class FileChildType
{
    kAssembly,
    kPart,
    kCallout,
    kBody,
    kMesh,
    kCurve,
    kPoint,
    kPointCloud,
    kSketch,
    kGeometricSet,
    kExtensionGeometry,
    kWorkAxis,
    kWorkPlane,
    kWorkPoint
};

/// A child of a file, by its id. QueryFile, which makes no objects, tells by the types whether the file has assembly
/// structure: with an assembly, or a part beside anything else. The type is the object's, of which nobody checks it.
struct FileChild
{
    FileChild(UTF8String childId, FileChildType childType) : id(std::move(childId)), type(childType) {}

    UTF8String id;
    FileChildType type;
};

/// "IFile".
struct FileRecord : ObjectRecord
{
    bool isRoot = true;
    std::optional<UTF8String> path;
    std::optional<struct tm> lastModification;
    UnitRecord unit;
    std::optional<FilePropertiesRecord> properties;
    /// The id and the path of each file that this one refers to.
    std::vector<std::pair<UTF8String, UTF8String>> references;
    /// Assemblies, parts or other objects under the root.
    std::vector<FileChild> children;
};

/// "CrossLevelAttributes" of an assembly.
struct CrossLevelRecord
{
    std::vector<std::pair<OccurrencePath, bool>> visibilities;
    std::vector<std::pair<OccurrencePath, std::vector<UTF8String>>> styles;
    std::vector<std::pair<OccurrencePath, Matrix3d>> transforms;
};

/// "IAssembly" and "IPart".
struct ComponentRecord : ObjectRecord
{
    bool isSingleUnderRoot = false;
    UnitRecord unit;
    std::vector<UTF8String> styles;
    std::optional<FilePropertiesRecord> properties;
    /// Of an assembly alone.
    CrossLevelRecord crossLevel;
};

/// "IAssemblyFeatureOverride".
struct FeatureOverrideRecord : ShownRecord
{
    std::vector<OccurrencePath> baseOccurrences;
    std::vector<BodyRecord> bodies;
    std::vector<MeshRecord> meshes;
};

/// "IRenderStyle".
struct StyleRecord : ObjectRecord
{
    std::optional<ColorRecord> diffuse;
    std::optional<ColorRecord> ambient;
    std::optional<ColorRecord> emission;
    std::optional<ColorRecord> specular;
    std::optional<double> diffuseFactor;
    std::optional<double> shininess;
    std::optional<double> reflection;
    std::optional<double> transparency;
    /// Ids of textures.
    std::optional<UTF8String> diffuseTexture;
    std::optional<UTF8String> bumpMap;
    std::optional<double> curveWidth;
    /// The end of a "kCurveStyleFontType_" and a "kPointStyleMarkerType_" text.
    std::optional<UTF8String> curveFont;
    std::optional<UTF8String> pointMarker;
    std::optional<double> pointSize;
    /// Makes it a style of the material library.
    struct Library
    {
        UTF8String libraryId;
        UTF8String definitionId;
        UTF8String versionGuid;
    };
    std::optional<Library> library;
};

/// "IMaterialTexture".
struct TextureRecord : ObjectRecord
{
    std::optional<UTF8String> fileReference;
    /// The file of the embedded image, with its size in bytes.
    std::optional<UTF8String> imagePath;
    std::optional<long long> imageSize;
    std::optional<long long> imageType;
    std::optional<std::pair<long long, long long>> dimensions;
    std::optional<double> repeatU;
    std::optional<double> repeatV;
    std::optional<double> rotation;
    std::optional<std::pair<double, double>> offset;
    std::optional<std::pair<double, double>> scale;
};

/// "ILayer". Items are ids without commas and blanks.
struct LayerRecord : ObjectRecord
{
    long long number = 0;
    UTF8String description;
    bool isVisible = true;
    std::vector<UTF8String> itemIds;
    std::vector<UTF8String> styles;
};

/// "IGroup".
struct GroupRecord : ObjectRecord
{
    std::vector<UTF8String> itemIds;
};

/// "ILod".
struct LevelOfDetailRecord : ObjectRecord
{
    UTF8String description;
};

/// "ICamera"; with section planes a section camera.
struct CameraRecord : ObjectRecord
{
    bool isPerspective = false;
    std::optional<UnitTypeEnum> lengthUnit;
    XYZ position{};
    XYZ direction{0.0, 0.0, -1.0};
    XYZ up{0.0, 1.0, 0.0};
    std::optional<double> distanceToViewPlane;
    std::optional<double> aspectRatio;
    std::optional<double> viewAngle;
    std::optional<double> windowHeight;
    std::optional<PlaneRecord> nearPlane;
    std::optional<PlaneRecord> farPlane;
    std::vector<PlaneRecord> sectionPlanes;
    UTF8String sectioningOperations;
};

/// "IView".
struct ViewRecord : ObjectRecord
{
    /// "ViewMemberChild": an occurrence and what the view makes of it.
    struct Member
    {
        OccurrencePath path;
        bool isVisible = true;
        std::vector<UTF8String> styles;
        std::optional<Matrix3d> transform;
    };
    bool isVisible = true;
    bool isActive = false;
    std::optional<UnitTypeEnum> lengthUnit;
    std::vector<Member> members;
    std::vector<UTF8String> cameraIds;
};

/// "AttributeSet": what a file, assembly or part declares.
struct AttributeSetRecord
{
    std::vector<TextureRecord> textures;
    std::vector<StyleRecord> styles;
    std::vector<LayerRecord> layers;
    std::vector<GroupRecord> groups;
    std::vector<LevelOfDetailRecord> levelsOfDetail;
    std::vector<CameraRecord> cameras;
    std::vector<ViewRecord> views;
};

/// "ITextFragment".
struct TextFragmentRecord
{
    UTF8String value;
    std::optional<UTF8String> fontName;
    std::optional<bool> isBold;
    std::optional<bool> isItalic;
    std::optional<double> height;
    std::optional<ColorRecord> color;
};

/// "IText": lines of fragments.
struct TextRecord
{
    std::optional<UnitTypeEnum> lengthUnit;
    std::optional<XYZ> origin;
    std::optional<Matrix3d> transform;
    std::vector<std::vector<TextFragmentRecord>> lines;
};

/// "IAnnotationCalloutElement": what a note is drawn with.
struct CalloutElementRecord : ObjectRecord
{
    std::vector<UTF8String> styles;
    std::vector<CurveElementRecord> curves;
    std::vector<PointRecord> points;
    std::vector<MeshRecord> meshes;
};

/// "IAnnotationCallout".
struct CalloutRecord : ObjectRecord
{
    bool isVisible = true;
    std::optional<TextRecord> text;
    std::optional<WorkPlaneRecord> plane;
    /// Ids of objects that stand in the scene in front of the note, and come before it by their bytes.
    std::vector<UTF8String> childIds;
    std::vector<CalloutElementRecord> elements;
};

}  // namespace KVR::Authoring
