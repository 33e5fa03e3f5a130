#include "exchange/source/Failure.h"

#include "framework/api/Exception.h"

namespace KVR
{

Failure Failure::Of(std::exception const& exception)
{
    Failure failure;
    if (auto const* file = dynamic_cast<FileException const*>(&exception))
    {
        failure.type = "FileException";
        failure.fileName = UTF8String(file->FileName()).View();
        failure.errorCode = file->ErrorCode();
    }
    else if (auto const* general = dynamic_cast<GeneralException const*>(&exception))
    {
        failure.type = "GeneralException";
        failure.message = general->Message().View();
    }
    else
    {
        failure.type = "StandardException";
        failure.message = exception.what();
    }
    ComponentRoleEnum reporter = kComponentRole_Unknown;
    auto const* own = dynamic_cast<Exception const*>(&exception);
    if (own && own->Reporter(reporter) == kIsValueSpecified_Yes)
        failure.reporter = reporter;
    return failure;
}

}  // namespace KVR
