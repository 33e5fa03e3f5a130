#pragma once

namespace KVR
{

// Element names that the libraries around a scene share: each is its stem and the word "Ref".
inline constexpr char16_t kStyleRef[] = u"StyleRef";
inline constexpr char16_t kChildRef[] = u"ChildRef";
inline constexpr char16_t kObjectRef[] = u"ObjectRef";
inline constexpr char16_t kAddRef[] = u"AddRef";
inline constexpr char16_t kDeleteRef[] = u"DeleteRef";
inline constexpr char16_t kModifiedRef[] = u"ModifiedRef";
inline constexpr char16_t kUpdatedRef[] = u"UpdatedRef";

/// The extension of the property file beside a scene file.
inline constexpr wchar_t kPropertyFileExtension[] = L".kvrproperty";

}  // namespace KVR
