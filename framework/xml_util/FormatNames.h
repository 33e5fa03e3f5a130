#pragma once

#include <cstddef>
#include <string_view>

namespace KVR
{

/// A name of the format, in the two forms in which it is met: as document text for the readers, as UTF-8 for the
/// writers. Both stand in the program's image; nothing is converted or allocated at run time.
class FormatName
{
public:
    /// Two forms of one text of ASCII characters, which stay valid as long as the name.
    template <std::size_t kSize>
    constexpr FormatName(char16_t const (&document)[kSize], char const (&narrow)[kSize])
        : m_document(document), m_narrow(narrow), m_length(kSize - 1)
    {
    }

    /// As document text.
    constexpr operator std::u16string_view() const noexcept { return {m_document, m_length}; }
    /// As UTF-8.
    constexpr operator std::string_view() const noexcept { return {m_narrow, m_length}; }
    /// The document text, zero-terminated.
    constexpr char16_t const* Document() const noexcept { return m_document; }
    /// The UTF-8, zero-terminated.
    constexpr char const* Narrow() const noexcept { return m_narrow; }

private:
    char16_t const* m_document;
    char const* m_narrow;
    std::size_t m_length;
};

/// The name of elements. An attribute's name where an element's is wanted does not compile, and neither does a text.
struct ElementName : FormatName
{
    using FormatName::FormatName;
    constexpr explicit ElementName(FormatName const& name) noexcept : FormatName(name) {}
};

/// The name of attributes; as strict as that of elements.
struct AttributeName : FormatName
{
    using FormatName::FormatName;
    constexpr explicit AttributeName(FormatName const& name) noexcept : FormatName(name) {}
};

/// The name of elements and of attributes.
struct SharedName : FormatName
{
    using FormatName::FormatName;
    /// For what wants an element's name.
    constexpr operator ElementName() const noexcept { return ElementName(static_cast<FormatName const&>(*this)); }
    /// For what wants an attribute's name.
    constexpr operator AttributeName() const noexcept { return AttributeName(static_cast<FormatName const&>(*this)); }
};

/// Every name that a scene, its property file or its file of persistent ids has, each once; readers and writers take
/// it from here. tests/names compares the list with its users, with docs/formats.md and with examples/complete.
namespace Names
{

#define KVR_ELEMENT(name) inline constexpr ElementName name(u"" #name, #name)
#define KVR_ATTRIBUTE(name) inline constexpr AttributeName name(u"" #name, #name)
#define KVR_ELEMENT_AND_ATTRIBUTE(name) inline constexpr SharedName name(u"" #name, #name)

KVR_ELEMENT(AddRef);
KVR_ELEMENT(AmbientColor);
KVR_ATTRIBUTE(AmbientFactor);
KVR_ELEMENT(AmbientTexture);
KVR_ATTRIBUTE(AngularTolerance);
KVR_ELEMENT(AnnotationPlane);
KVR_ATTRIBUTE(AspectRatio);
KVR_ELEMENT(AttributeSet);
KVR_ELEMENT(Author);
KVR_ELEMENT(Authorisation);  // Kept: with an "s", unlike "Organization".
KVR_ELEMENT(Axis);
KVR_ELEMENT(BaseOccPath);
KVR_ELEMENT(BaseOccPaths);  // Kept: some owners match it in any case, others exactly.
KVR_ATTRIBUTE(BlobBufferSize);
KVR_ELEMENT(BumpMap);
KVR_ATTRIBUTE(BumpMapId);
KVR_ELEMENT(CameraDirection);
KVR_ELEMENT(CameraPosition);
KVR_ELEMENT(CameraRef);
KVR_ELEMENT(CameraSet);
KVR_ELEMENT(CameraUpDirection);
KVR_ELEMENT(ChangeKey);
KVR_ELEMENT(Child);
KVR_ELEMENT(ChildRef);
KVR_ELEMENT(ChildSet);
KVR_ATTRIBUTE(ColorFactor);
KVR_ATTRIBUTE(Content);
KVR_ELEMENT(CreationDate);
KVR_ELEMENT(CrossLevelAttributes);
KVR_ELEMENT(CurveSet);
KVR_ATTRIBUTE(CurveStyleFillArea);
KVR_ATTRIBUTE(CurveStyleFont);
KVR_ATTRIBUTE(CurveStyleWidth);
KVR_ELEMENT(CustomData);
KVR_ELEMENT(CustomDataItem);
KVR_ELEMENT(CustomProperties);
KVR_ELEMENT(CustomProperty);
KVR_ATTRIBUTE(DataId);
KVR_ELEMENT(DefaultCurveColor);
KVR_ELEMENT(DefaultSurfaceColor);
KVR_ELEMENT(DeleteRef);
KVR_ELEMENT_AND_ATTRIBUTE(Description);
KVR_ELEMENT(DiffuseColor);
KVR_ATTRIBUTE(DiffuseFactor);
KVR_ELEMENT(DiffuseTexture);
KVR_ATTRIBUTE(DisplayAngleUnit);
KVR_ATTRIBUTE(DisplayLengthUnit);
KVR_ELEMENT(DisplayRange);
KVR_ATTRIBUTE(DistanceToViewPlane);
KVR_ATTRIBUTE(Eccentricity);
KVR_ELEMENT(Edge);
KVR_ATTRIBUTE(EmbeddedTextureImageSize);
KVR_ATTRIBUTE(EmbeddedTextureImageType);
KVR_ELEMENT(EmissionColor);
KVR_ATTRIBUTE(EmissionFactor);
KVR_ELEMENT(EmissionTexture);
KVR_ELEMENT(EndPoint);
KVR_ATTRIBUTE(EntityId);
KVR_ELEMENT(EntityStyles);
KVR_ELEMENT(EntityTransformation);
KVR_ELEMENT(EntityVisibility);
KVR_ELEMENT(ExtensionData);
KVR_ELEMENT(Face);
KVR_ELEMENT(FarPlane);
KVR_ATTRIBUTE(FileFullPath);
KVR_ELEMENT(FileProperties);
KVR_ATTRIBUTE(FontName);
KVR_ATTRIBUTE(FontSize);
KVR_ATTRIBUTE(FractionAlpha);
KVR_ATTRIBUTE(FractionBlue);
KVR_ATTRIBUTE(FractionGreen);
KVR_ATTRIBUTE(FractionRed);
KVR_ELEMENT(FrontVector);
KVR_ATTRIBUTE(Gap);
KVR_ATTRIBUTE(GenerateGeometry);
KVR_ATTRIBUTE(GenerateMesh);
KVR_ATTRIBUTE(GenerateMeshSegment);
KVR_ATTRIBUTE(GenerateSerializedVitreol);
KVR_ATTRIBUTE(GenerateSubObjectPersistentId);
KVR_ELEMENT(GeometryInfo);
KVR_ELEMENT(GeometryItems);
KVR_ELEMENT(GMKEntity);
KVR_ELEMENT(GroupSet);
KVR_ATTRIBUTE(Height);
KVR_ELEMENT(IAnnotationCallout);
KVR_ELEMENT(IAnnotationCalloutElement);
KVR_ELEMENT(IAssembly);
KVR_ELEMENT(IAssemblyFeatureOverride);
KVR_ELEMENT(IBrep);
KVR_ELEMENT(ICamera);
KVR_ELEMENT(ICurve);
KVR_ELEMENT_AND_ATTRIBUTE(ID);
KVR_ELEMENT(Ids);
KVR_ELEMENT(IExtensionGeometry);
KVR_ELEMENT(IFile);
KVR_ELEMENT(IGeometricSet);
KVR_ELEMENT(IGroup);
KVR_ELEMENT(IInstance);
KVR_ELEMENT(ILayer);
KVR_ELEMENT(ILod);
KVR_ELEMENT(IMaterialTexture);
KVR_ATTRIBUTE(Indentation);
KVR_ELEMENT(IPart);
KVR_ELEMENT(IPoint);
KVR_ELEMENT(IPointCloud);
KVR_ELEMENT(IPolygonMesh);
KVR_ELEMENT(IRenderStyle);
KVR_ATTRIBUTE(IsActive);
KVR_ATTRIBUTE(IsBold);
KVR_ATTRIBUTE(IsDepthFieldDefined);
KVR_ELEMENT(ISectionCamera);
KVR_ATTRIBUTE(IsItalic);
KVR_ELEMENT(ISketch);
KVR_ATTRIBUTE(IsOverlined);
KVR_ATTRIBUTE(IsRoot);
KVR_ATTRIBUTE(IsSingleUnderRoot);
KVR_ATTRIBUTE(IsUnderlined);
KVR_ATTRIBUTE(IsVertical);
KVR_ATTRIBUTE(Items);
KVR_ELEMENT(IText);
KVR_ELEMENT(ITextFragment);
KVR_ELEMENT(ITextLine);
KVR_ELEMENT(IUniverse);
KVR_ELEMENT(IView);
KVR_ELEMENT(IWorkAxis);
KVR_ELEMENT(IWorkPlane);
KVR_ELEMENT(IWorkPoint);
KVR_ATTRIBUTE(Key);
KVR_ATTRIBUTE(Label);
KVR_ATTRIBUTE(LastModificationTime);
KVR_ELEMENT(LayerInfo);
KVR_ELEMENT(LayerSet);
KVR_ATTRIBUTE(LengthUnit);
KVR_ATTRIBUTE(LinearTolerance);
KVR_ATTRIBUTE(LODID);  // Kept: in capitals, unlike "ILod" and "LodSet".
KVR_ELEMENT(LodSet);
KVR_ELEMENT(MassUnit);
KVR_ELEMENT(MaxPoint);
KVR_ELEMENT(MeshInfo);
KVR_ELEMENT(MeshSegmentInfo);
KVR_ELEMENT(MinPoint);
KVR_ELEMENT(ModifiedRef);
KVR_ATTRIBUTE(Name);
KVR_ELEMENT(NearPlane);
KVR_ELEMENT(NetStyles);  // Kept: some owners match it in any case, others exactly.
KVR_ATTRIBUTE(NetVisibility);
KVR_ELEMENT(Normal);
KVR_ATTRIBUTE(ObjectID);  // Kept: in capitals, unlike "RefId" and "TypeId".
KVR_ELEMENT(ObjectRef);
KVR_ELEMENT_AND_ATTRIBUTE(OccurrencePath);
KVR_ELEMENT(Organization);
KVR_ELEMENT(Origin);
KVR_ATTRIBUTE(ParamTolerance);
KVR_ELEMENT(PartNumber);
KVR_ATTRIBUTE(Path);
KVR_ATTRIBUTE(PersistentId);
KVR_ELEMENT(PlaneData);
KVR_ELEMENT(Point);
KVR_ELEMENT(PointCloud);
KVR_ATTRIBUTE(PointCloudCoordinates);
KVR_ATTRIBUTE(PointStyleMarkerSize);
KVR_ATTRIBUTE(PointStyleMarkerType);
KVR_ELEMENT(Preprocessor);
KVR_ATTRIBUTE(ProceduralName);
KVR_ATTRIBUTE(ProcedureU);
KVR_ATTRIBUTE(ProcedureV);
KVR_ATTRIBUTE(ProjectType);
KVR_ELEMENT(Properties);
KVR_ELEMENT(Property);
KVR_ELEMENT(Reference);
KVR_ELEMENT(RefFile);
KVR_ELEMENT(RefFiles);
KVR_ATTRIBUTE(RefId);
KVR_ATTRIBUTE(Reflection);
KVR_ATTRIBUTE(RefPath);
KVR_ATTRIBUTE(RepeatU);
KVR_ATTRIBUTE(RepeatV);
KVR_ELEMENT(Revision);
KVR_ATTRIBUTE(Rolloff);
KVR_ATTRIBUTE(RotateAngle);
KVR_ELEMENT(SatInfo);
KVR_ELEMENT(Scene);
KVR_ATTRIBUTE(ScriptType);
KVR_ELEMENT(SectioningOperations);
KVR_ELEMENT(SendingSystem);
KVR_ATTRIBUTE(ShaderType);
KVR_ATTRIBUTE(Shininess);
KVR_ATTRIBUTE(SketchTypeEnum);
KVR_ELEMENT(SpecularColor);
KVR_ATTRIBUTE(SpecularFactor);
KVR_ELEMENT(SpecularTexture);
KVR_ELEMENT(StartPoint);
KVR_ELEMENT(StyleRef);
KVR_ELEMENT(Styles);  // Kept: some owners match it in any case, others exactly.
KVR_ELEMENT(StyleSet);
KVR_ELEMENT(SubObject);
KVR_ELEMENT(SubObjectPersistentIdInfo);
KVR_ELEMENT(SubObjectPersistentIds);
KVR_ATTRIBUTE(TempFilePath);
KVR_ATTRIBUTE(TextAlignment);
KVR_ELEMENT(TextBackgroundColor);
KVR_ELEMENT(TextColor);
KVR_ATTRIBUTE(TextJustification);
KVR_ELEMENT(TextureCenter);
KVR_ELEMENT(TextureDimensions);
KVR_ATTRIBUTE(TextureFileReference);
KVR_ATTRIBUTE(TextureId);
KVR_ELEMENT(TextureOffset);
KVR_ELEMENT(TextureScale);
KVR_ELEMENT(TextureSet);
KVR_ELEMENT(TextureSizeForScale);
KVR_ATTRIBUTE(TextureType);
KVR_ELEMENT(TimeUnit);
KVR_ELEMENT(Title);
KVR_ELEMENT(Tolerance);  // Kept: some owners match it in any case, others exactly.
KVR_ELEMENT(Transform);
KVR_ATTRIBUTE(Transformation);
KVR_ELEMENT(Transformations);
KVR_ATTRIBUTE(Transparency);
KVR_ELEMENT(TransparencyRGB);
KVR_ATTRIBUTE(Type);
KVR_ATTRIBUTE(TypeId);
KVR_ELEMENT(Unit);
KVR_ELEMENT(UnitAndTolerance);  // Kept: some owners match it in any case, others exactly.
KVR_ELEMENT(UpdatedRef);
KVR_ELEMENT(UpVector);
KVR_ATTRIBUTE(Value);
KVR_ATTRIBUTE(VersionPersistentId);
KVR_ATTRIBUTE(ViewAngle);
KVR_ELEMENT(ViewData);  // Kept: some owners match it in any case, others exactly.
KVR_ELEMENT(ViewMember);
KVR_ELEMENT(ViewMemberChild);
KVR_ELEMENT(ViewSet);
KVR_ATTRIBUTE(ViewWindowHeightForParallelCamera);
KVR_ELEMENT(Visibilities);
KVR_ATTRIBUTE(Visibility);
KVR_ATTRIBUTE(VitreolAssetDefinitionId);
KVR_ATTRIBUTE(VitreolAssetInstanceVersionGUID);
KVR_ATTRIBUTE(VitreolLibraryId);
KVR_ELEMENT(VitreolMaterialInfo);
KVR_ELEMENT(VitreolStyleInfo);
KVR_ATTRIBUTE(Width);
KVR_ELEMENT(WorkPoint);
KVR_ATTRIBUTE(X);
KVR_ATTRIBUTE(Y);
KVR_ATTRIBUTE(Z);

#undef KVR_ELEMENT
#undef KVR_ATTRIBUTE
#undef KVR_ELEMENT_AND_ATTRIBUTE

}  // namespace Names

/// The extension of the property file beside a scene file.
inline constexpr FormatName kPropertyFileExtension(u".kvrproperty", ".kvrproperty");

}  // namespace KVR
