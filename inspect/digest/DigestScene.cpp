#include <algorithm>

#include "describe/Ask.h"
#include "describe/ReferenceWalk.h"
#include "describe/Tell.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"
#include "inspect/Digest.h"
#include "inspect/digest/AnswerDigest.h"
#include "inspect/digest/ExtensionTypeIds.h"

namespace KVR
{

namespace
{

// Begins every digest; to be counted up when the form that is digested changes.
constexpr std::string_view kForm = "kvr scene digest 1";

SceneDigest WholeOf(SceneDigests const& digests, FileQueryResult const* query, UTF8String const& rootId)
{
    AnswerDigest whole;
    whole.Text(kForm);
    Tell(Telling{whole}, query);
    Tell(Telling{whole}, rootId);
    auto const add = [&](SceneDigest const& digest) { whole.Bytes(digest.bytes.data(), digest.bytes.size()); };
    add(digests.universe);
    whole.Unsigned(digests.objects.size());
    for (ObjectDigest const& object : digests.objects)
    {
        whole.Text(object.id);
        whole.Text(object.className);
        add(object.digest);
    }
    return whole.Take();
}

}  // namespace

std::string SceneDigest::Text() const
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (unsigned char const byte : bytes)
        text.append({kDigits[byte >> 4U], kDigits[byte & 15U]});
    return text;
}

SceneDigests DigestScene(IProducer& producer, std::vector<std::string> const& extensionTypeIds)
{
    UTF8String const rootId = producer.RootObjectId().Id();
    std::vector<std::string> const typeIds = WithOwnTypeIds(extensionTypeIds);
    AnswerDigest digest;
    IUniverse const* const universe = producer.LoadUniverse();
    Telling const telling{
        .to = digest, .properties = universe ? universe->PropertyDatabaseOf() : nullptr, .extensionTypeIds = typeIds};
    SceneDigests digests;
    Tell(telling, universe);
    digests.universe = digest.Take();
    ReferenceWalk walk(producer);
    walk.Reach(rootId);
    while (walk.Next())
    {
        ObjectDigest& entry = digests.objects.emplace_back();
        entry.id = walk.Id().View();
        DescribedObject const described = walk.Object() ? DescribedObject::Of(*walk.Object()) : DescribedObject{};
        if (!described.interface)
            continue;
        entry.className = described.interface->name;
        TellObject(*described.interface, described.object, telling);
        digest.AddShapes(*walk.Object());
        entry.digest = digest.Take();
    }
    std::sort(digests.objects.begin(), digests.objects.end(),
              [](ObjectDigest const& a, ObjectDigest const& b) { return a.id < b.id; });
    digests.whole = WholeOf(digests, producer.QueryFile(), rootId);
    return digests;
}

}  // namespace KVR
