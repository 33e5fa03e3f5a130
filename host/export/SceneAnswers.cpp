#include "host/export/SceneAnswers.h"

#include <algorithm>
#include <cmath>

#include "framework/api/kvr_api.h"
#include "host/export/LengthUnit.h"

namespace KVR
{

namespace
{

double Fraction(double value)
{
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

}  // namespace

std::string NameOf(IObject const& object)
{
    std::string name = Utf8Of(object.Label());
    return name.empty() ? object.Id().Value() : name;
}

std::string Utf8Of(UTF16String const& text)
{
    return UTF8String(text).Value();
}

std::optional<double> MetresOf(IUnit const& object)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    if (object.LengthUnit(unit) != kIsValueSpecified_Yes)
        return std::nullopt;
    return MetresOf(unit);
}

std::optional<PlainColor> ColorOf(IProducer& producer, IdSet const& styles)
{
    for (unsigned long long i = 0; i < styles.Size(); ++i)
    {
        auto const* const style = dynamic_cast<IRenderStyle const*>(producer.Load(styles.At(i)));
        if (!style)
            continue;
        Color color;
        bool isThere = style->DiffuseColor(color) == kIsValueSpecified_Yes;
        if (auto const* const vitreol = dynamic_cast<IVitreolRenderStyle const*>(style); !isThere && vitreol)
            isThere = vitreol->BestFitDiffuseColor(color) == kIsValueSpecified_Yes;
        if (!isThere)
            continue;
        double transparency = 0.0;
        bool const isSaid = style->Transparency(transparency) == kIsValueSpecified_Yes;
        return PlainColor{Fraction(color.Red()), Fraction(color.Green()), Fraction(color.Blue()),
                          isSaid ? 1.0 - Fraction(transparency) : Fraction(color.Alpha())};
    }
    return std::nullopt;
}

Matrix3d Product(Matrix3d const& first, Matrix3d const& second)
{
    Matrix3d product;
    for (int row = 0; row < Matrix3d::kDimension; ++row)
    {
        for (int column = 0; column < Matrix3d::kDimension; ++column)
        {
            double sum = 0.0;
            for (int i = 0; i < Matrix3d::kDimension; ++i)
                sum += first.Element(row, i) * second.Element(i, column);
            product.SetElement(row, column, sum);
        }
    }
    return product;
}

}  // namespace KVR
