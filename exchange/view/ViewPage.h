#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace KVR
{

class Output;

/// The page that a viewer file is made of: a text with three places for what a scene has. Texts live as long as the
/// program.
struct ViewPage
{
    /// Whether this build has one.
    static bool IsThere() noexcept;

    /// Up to the title; from there to the geometry; from there to the scene; the rest. Throws std::runtime_error when
    /// the build has no page, or one without all places.
    static ViewPage Parts();

    std::string_view untilTitle;
    std::string_view untilGeometry;
    std::string_view untilScene;
    std::string_view rest;
};

/// A text as the title of a page: escaped for HTML, without control and direction marks, cut where it is long.
std::string TitleText(std::string_view text);

/// Writes bytes as gzip in base64, without line ends.
class PackedText
{
public:
    /// Into `out`, which must outlive it.
    explicit PackedText(Output& out);
    ~PackedText();
    PackedText(PackedText const&) = delete;
    PackedText& operator=(PackedText const&) = delete;

    void Put(std::string_view bytes);
    /// Writes what is held back.
    void Finish();
    /// The number of characters written so far.
    unsigned long long Size() const noexcept;

private:
    class Stream;
    std::unique_ptr<Stream> m_stream;
};

}  // namespace KVR
