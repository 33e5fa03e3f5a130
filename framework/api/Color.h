#pragma once

namespace KVR
{

/// A colour by the fractions of its components, 0 to 1 by convention; values outside are kept as they are. Opaque
/// black until set.
class Color
{
public:
    /// Sets the three components and makes the colour opaque.
    void SetFractionalRGB(double red, double green, double blue) { SetFractionalRGBA(red, green, blue, 1.0); }
    /// Sets all four components; nothing is clamped.
    void SetFractionalRGBA(double red, double green, double blue, double alpha)
    {
        m_red = red;
        m_green = green;
        m_blue = blue;
        m_alpha = alpha;
    }
    /// The red component.
    double Red() const { return m_red; }
    /// The green component.
    double Green() const { return m_green; }
    /// The blue component.
    double Blue() const { return m_blue; }
    /// The opacity: 1 is opaque, 0 is not seen.
    double Alpha() const { return m_alpha; }

private:
    double m_red = 0.0;
    double m_green = 0.0;
    double m_blue = 0.0;
    double m_alpha = 1.0;
};

}  // namespace KVR
