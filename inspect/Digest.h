#pragma once

#include <array>
#include <compare>
#include <string>
#include <vector>

#include "inspect/Export.h"

namespace KVR
{

class IProducer;

/// XXH3 with 128 bits, its bytes in the order of the canonical form. It tells apart what differs by accident; it is no
/// protection against who wants two scenes to have one digest.
struct SceneDigest
{
    std::array<unsigned char, 16> bytes{};

    /// 32 hexadecimal digits in lower case.
    KVR_INSPECT_API std::string Text() const;

    friend auto operator<=>(SceneDigest const&, SceneDigest const&) = default;
};

/// The digest of what one object answers.
struct ObjectDigest
{
    std::string id;
    /// The interface's name, "IPart"; empty for an id that is named but has no object, whose digest is then zeros.
    std::string className;
    SceneDigest digest;
};

/// The digests of a scene.
struct SceneDigests
{
    /// Of all that the scene serves.
    SceneDigest whole;
    /// Of what belongs to the scene as a whole: default colours, directions, custom data.
    SceneDigest universe;
    /// By the bytes of their ids, each id once.
    std::vector<ObjectDigest> objects;
};

/// Digests what a producer serves after its BeginProcess: what it says of the file and the scene as a whole, and every
/// answer of every object that is reached from the root, as a dump has them. Numbers count by their value, texts by
/// their characters, bodies and curves of the kernel by their geometry instead of what is measured of it; objects by
/// their ids, in whatever order they were reached. Two scenes have one digest when they serve the same, however their
/// files are written and called. Of extension data, which cannot be listed, those types count that the program itself
/// writes, and those named. The bytes of images, which stand in files apart from the scene, do not count. Nothing but
/// the digests is kept. Digests are for the same version of this library. Throws GeneralException for a scene without a
/// root, std::bad_alloc, and what the producer throws in LoadUniverse.
KVR_INSPECT_API SceneDigests DigestScene(IProducer& producer, std::vector<std::string> const& extensionTypeIds = {});

}  // namespace KVR
