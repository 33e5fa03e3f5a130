#include "host/MeshArguments.h"

#include <CLI/CLI.hpp>
#include <numbers>
#include <string_view>

#include "host/Command.h"
#include "host/NumberRange.h"

namespace KVR
{

namespace
{

constexpr double kDegreesOfRadian = 180.0 / std::numbers::pi;

// Finer ones would take more memory than there is, and say nothing about models that are exact to a micrometre.
constexpr NumberRange kLengths{1e-6, 1e6};
constexpr NumberRange kPercentages{1e-4, 100};
constexpr NumberRange kDegrees{0.1, 180};

std::optional<Deflection> DeflectionOf(std::string_view text)
{
    Deflection deflection;
    deflection.isFraction = text.ends_with('%');
    if (deflection.isFraction)
        text.remove_suffix(1);
    std::optional<double> const number = (deflection.isFraction ? kPercentages : kLengths).Read(text);
    if (!number)
        return {};
    deflection.value = deflection.isFraction ? *number / 100.0 : *number;
    return deflection;
}

std::string ProblemOfDeflection(std::string const& text)
{
    return DeflectionOf(text) ? std::string()
                              : text + " is no length, a " + kLengths.Text() + ", and no percentage, a " +
                                    kPercentages.Text() + " before %";
}

}  // namespace

void MeshArguments::AddTo(CLI::App& command)
{
    command
        .add_option("--deflection", m_deflection,
                    "How far triangles may be from bodies, and lines from curves: a length in their unit, or a "
                    "percentage of the diagonal of the box around them")
        ->type_name("LENGTH")
        ->check(&ProblemOfDeflection)
        ->capture_default_str();
    kDegrees.Check(
        *command
             .add_option("--angle", m_angle,
                         "The greatest angle between neighbouring triangles of a body, in degrees, 28.6 unless given")
             ->type_name("DEGREES"));
    command.add_flag("--relative", m_isRelative,
                     "Take the percentage of --deflection of the size of each edge, and not of the box");
}

MeshQuality MeshArguments::Quality() const
{
    MeshQuality quality;
    quality.deflection = DeflectionOf(m_deflection).value();
    if (m_angle)
        quality.angle = *m_angle / kDegreesOfRadian;
    quality.isRelative = m_isRelative;
    if (m_isRelative && !quality.deflection.isFraction)
        throw ArgumentError("--relative takes a --deflection that is a percentage");
    return quality;
}

}  // namespace KVR
