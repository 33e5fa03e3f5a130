#include "framework/kernel/KernelMessages.h"

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <Standard_ConstructionError.hxx>
#include <Standard_DomainError.hxx>
#include <Standard_NoSuchObject.hxx>
#include <Standard_NullObject.hxx>
#include <Standard_NumericError.hxx>
#include <Standard_OutOfMemory.hxx>
#include <Standard_RangeError.hxx>
#include <utility>

namespace KVR
{

std::string KernelFailureText(Standard_Failure const& failure)
{
    // The first row that the failure is of, counts: a kind stands before the one that it is derived from.
    std::pair<Handle(Standard_Type), char const*> const kTexts[] = {
        {STANDARD_TYPE(Standard_OutOfMemory), "there is not enough memory for it"},
        {STANDARD_TYPE(Standard_ConstructionError), "it has a curve or surface that cannot be built"},
        {STANDARD_TYPE(Standard_RangeError), "it has a number that is out of its range"},
        {STANDARD_TYPE(Standard_NumericError), "it has numbers that cannot be computed with"},
        {STANDARD_TYPE(Standard_NullObject), "it lacks something that it names"},
        {STANDARD_TYPE(Standard_NoSuchObject), "it lacks something that it names"},
        {STANDARD_TYPE(Standard_DomainError), "it contradicts itself"},
    };
    for (auto const& [type, text] : kTexts)
        if (failure.DynamicType()->SubType(type))
            return text;
    return "it is more than Open CASCADE can work with";
}

void SilenceKernel()
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
}

}  // namespace KVR
