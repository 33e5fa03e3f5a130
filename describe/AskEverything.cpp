#include "describe/AskEverything.h"

#include "describe/ReferenceWalk.h"
#include "describe/Tell.h"
#include "framework/api/Exception.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

namespace
{

// What is asked of a scene as a whole; reaches its root.
void AskScene(IProducer& producer, Telling& telling, ReferenceWalk& walk)
{
    Tell(telling, producer.QueryFile());
    // A scene without a root throws as for an item that is not there.
    Telling root = telling;
    root.isBeyond = true;
    TellObject(TableOf<IProducer>::kTable, &producer, root);
    try
    {
        walk.Reach(producer.RootObjectId().Id());
    }
    catch (GeneralException const&)
    {
    }
    IUniverse const* const universe = producer.LoadUniverse();
    Tell(telling, universe);
    telling.properties = universe ? universe->PropertyDatabaseOf() : nullptr;
}

}  // namespace

void AskEverything(IProducer& producer, std::span<UTF8String const> ids, std::span<std::string const> extensionTypeIds,
                   AnswerVisitor& to,
                   std::function<void(UTF8String const& id, IObject* object, Interface const* table)> const& met)
{
    Telling telling{.to = to, .extensionTypeIds = extensionTypeIds, .everything = true};
    ReferenceWalk walk(producer);
    AskScene(producer, telling, walk);
    for (UTF8String const& id : ids)
        walk.Reach(id);
    while (walk.Next())
    {
        DescribedObject const described = walk.Object() ? DescribedObject::Of(*walk.Object()) : DescribedObject{};
        met(walk.Id(), walk.Object(), described.interface);
        if (described.interface)
            TellObject(*described.interface, described.object, telling);
    }
}

}  // namespace KVR
