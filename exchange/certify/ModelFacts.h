#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "exchange/certify/Bulk.h"

namespace KVR::Certification
{

/// What a model, a scene or a file holds, as one reader of its own sees it. Lengths are in millimetres, names UTF-8.
struct ModelFacts
{
    /// A component where it occurs.
    struct Occurrence
    {
        /// The names from the root to here, with slashes between them.
        std::string path;
        /// That of the instance; of a root the component's.
        std::string name;
        /// What tells it from other components of the same facts, its name, and the number of the part.
        std::string component;
        std::string componentName;
        std::string number;
        /// What is stated of the component: names and values.
        std::set<std::string> properties;
        /// The units that its shapes are stated in.
        std::set<std::string> units;
        bool isPart = false;
        /// Whether it is hidden, or something above it is.
        bool isHidden = false;
        unsigned long long solids = 0;
        unsigned long long faces = 0;
        unsigned long long triangles = 0;
        /// Of its own shapes, hidden ones, too.
        Bulk bodies;
        /// Of its own triangles that are shown.
        Bulk mesh;
    };
    /// Something by its name: how often it is there, and what belongs to it.
    struct Entry
    {
        double count = 0.0;
        /// Added up.
        std::vector<double> numbers;

        void Add(Entry const& other);
    };
    using Table = std::map<std::string, Entry>;

    /// Each before what is below it. Of several with one path all are there.
    std::vector<Occurrence> occurrences;
    /// By what is listed; a table that is missing has no place in it. See the names below.
    std::map<std::string, Table> tables;
    /// Whether there are shapes, and triangles; without, there is no place for them.
    bool hasBodies = false;
    bool hasMesh = false;

    void Add(char const* table, std::string const& name, std::vector<double> const& numbers = {}, double count = 1.0);
    /// The name of something that belongs to something else, an occurrence by its path or a view, and what stands
    /// before and behind the sign that joins them; without one all stands behind.
    static std::string Joined(std::string const& owner, std::string const& name) { return owner + kJoint + name; }
    static std::pair<std::string, std::string> Parted(std::string const& joined);
    static constexpr char kJoint = '\x1F';
    /// As JSON. Of throws std::exception for a text that Text did not give.
    std::string Text() const;
    static ModelFacts Of(std::string const& text);
};

// The tables.

/// By path and "#rrggbbaa" in sRGB: the area that is seen in it, of bodies.
inline constexpr char kTable_Colors[] = "colours";
/// The same for the length of lines.
inline constexpr char kTable_LineColors[] = "line colours";
/// The same for the area of triangles.
inline constexpr char kTable_DrawnColors[] = "drawn colours";
/// By name: members that are geometry or components.
inline constexpr char kTable_Layers[] = "layers";
/// By name: layers without such members.
inline constexpr char kTable_OtherLayers[] = "layers of other things";
/// By the path of what they belong to: pieces of geometry that are not shown.
inline constexpr char kTable_Hidden[] = "hidden";
/// By name: the eye, the direction and what is up.
inline constexpr char kTable_Views[] = "views";
/// By name: planes that cut what a view shows; normal and distance from the origin.
inline constexpr char kTable_Cuts[] = "section planes";
/// By view and what it shows: notes by kind, type and value, drawings by name, components.
inline constexpr char kTable_ViewMembers[] = "view members";
/// By kind and type, datums by their letter.
inline constexpr char kTable_Notes[] = "notes";
/// The same with the numbers.
inline constexpr char kTable_NoteValues[] = "note values";
/// Texts that nothing else in the model says.
inline constexpr char kTable_NoteTexts[] = "note texts";
/// By component and value: made of what occurrences say by whoever compares them. Here it tells that there is a place.
inline constexpr char kTable_Properties[] = "properties";
/// By path, of what has shapes: made in the same way.
inline constexpr char kTable_Units[] = "units";
/// By the id that the model gives a face: its area, and its centre in the component times that. The ids hold within one
/// model and its scene.
inline constexpr char kTable_FaceIds[] = "faces by id";
/// By view: what it shows that is drawn with triangles alone, which no scene has. There is no such table without one.
inline constexpr char kTable_Drawings[] = "tessellated drawings";
/// Between the normals of a mesh and its triangles, by path: the area-weighted sum of degrees.
inline constexpr char kTable_Normals[] = "normals";

/// "#rrggbbaa" of a colour in fractions of sRGB.
std::string ColorText(double red, double green, double blue, double alpha);

}  // namespace KVR::Certification
