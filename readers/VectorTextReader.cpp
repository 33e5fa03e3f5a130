#include "readers/VectorTextReader.h"

#include "framework/api/StringUtil.h"
#include "readers/Ignored.h"

namespace KVR
{

namespace
{
double NumberOf(UTF8String const& text)
{
    double value = 0.0;
    Ignored(StringUtil::ToDouble(text, value));
    return value;
}
}  // namespace

bool ReadVectorText(UTF8String const& text, double& x, double& y, double& z)
{
    IdSet const pieces = StringUtil::Split(text, ",", false);
    if (pieces.Size() != 3)
        return false;
    x = NumberOf(pieces.At(0));
    y = NumberOf(pieces.At(1));
    z = NumberOf(pieces.At(2));
    return true;
}

}  // namespace KVR
