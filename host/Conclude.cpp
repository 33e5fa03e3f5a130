#include "host/Conclude.h"

#include "exchange/ConvertModel.h"
#include "host/LongWork.h"
#include "output/SafeText.h"

namespace KVR
{

ExitStatus Conclude(ConvertResult const& result, std::string const& source, std::string const& target, bool isQuiet)
{
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (isQuiet)
        return kExit_Good;
    if (result.imported)
        for (std::string const& remark : result.imported->remarks)
            Complain(Escaped(source) + ": " + Escaped(remark));
    for (std::string const& remark : result.exported.remarks)
        Complain(Escaped(target) + ": " + remark);
    return kExit_Good;
}

}  // namespace KVR
