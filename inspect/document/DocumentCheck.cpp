#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/DocumentTally.h"
#include "inspect/document/DocumentWalk.h"
#include "inspect/document/DropChain.h"
#include "inspect/document/ReachCheck.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/ValueCheck.h"

namespace KVR
{

namespace
{

// Values of the property file. Its path is the scene's with another extension.
void CheckPropertyValues(SceneCheck& check)
{
    for (PropertyRecord const& property : check.Record().Properties())
    {
        if (!property.misread)
            continue;
        Finding* const finding =
            ValueCheck(check).AddIn(check.PropertyFile(), property.name, property.value, *property.misread);
        if (!finding)
            continue;
        finding->line = property.line;
        finding->column = property.column;
        finding->objectId = property.objectId;
    }
}

}  // namespace

DocumentTally CheckDocument(SceneCheck& check)
{
    DocumentTally tally;
    if (!check.Root())
        return tally;
    DocumentWalk(check, tally).Run();
    CheckDropped(check);
    CheckKinds(check);
    CheckIds(check);
    CheckReach(check);
    CheckPropertyValues(check);
    return tally;
}

}  // namespace KVR
