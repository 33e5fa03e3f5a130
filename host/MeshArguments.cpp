#include "host/MeshArguments.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "host/Command.h"

namespace KVR
{

namespace
{

constexpr double kDegreesOfRadian = 180.0 / std::numbers::pi;

Deflection DeflectionOf(std::string const& text)
{
    Deflection deflection;
    deflection.isFraction = text.ends_with('%');
    std::size_t const length = text.size() - (deflection.isFraction ? 1 : 0);
    auto const [end, error] = std::from_chars(text.data(), text.data() + length, deflection.value);
    if (error != std::errc() || end != text.data() + length || !(deflection.value > 0.0) ||
        !std::isfinite(deflection.value))
        throw std::invalid_argument("a deflection is a length above 0, or a percentage of the diagonal such as 0.1%");
    if (deflection.isFraction)
        deflection.value /= 100.0;
    return deflection;
}

std::string ProblemOfDeflection(std::string const& text)
{
    try
    {
        DeflectionOf(text);
        return {};
    }
    catch (std::invalid_argument const& error)
    {
        return error.what();
    }
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
    command
        .add_option("--angle", m_angle,
                    "The greatest angle between neighbouring triangles of a body, in degrees, 28.6 unless given")
        ->type_name("DEGREES");
    command.add_flag("--relative", m_isRelative,
                     "Take the percentage of --deflection of the size of each edge, and not of the box");
}

MeshQuality MeshArguments::Quality() const
{
    MeshQuality quality;
    quality.deflection = DeflectionOf(m_deflection);
    if (m_angle)
        quality.angle = *m_angle / kDegreesOfRadian;
    quality.isRelative = m_isRelative;
    if (m_isRelative && !quality.deflection.isFraction)
        throw ArgumentError("--relative takes a --deflection that is a percentage");
    return quality;
}

}  // namespace KVR
