#pragma once

#include <map>
#include <set>
#include <string>

#include "exchange/certify/ModelFacts.h"

namespace KVR::Certification
{

/// Occurrences by their paths, in the structure of the facts that others are compared with: what stands below one of
/// its parts, or beside them, counts for the nearest occurrence that it knows. A part of a model that a reader divides
/// is one part so. Single roots above that of the others are left out.
struct FoldedFacts
{
    struct Node
    {
        unsigned long long count = 0;
        bool isPart = false;
        bool isHidden = false;
        std::set<std::string> names;
        std::set<std::string> componentNames;
        std::set<std::string> components;
        /// Those of the parts, with the names of the components.
        std::set<std::string> numbers;
        std::set<std::string> properties;
        std::set<std::string> units;
        unsigned long long solids = 0;
        unsigned long long faces = 0;
        unsigned long long triangles = 0;
        Bulk bodies;
        Bulk mesh;
    };

    /// With the structure of `first`, which may be the same.
    FoldedFacts(ModelFacts const& facts, ModelFacts const& first);

    /// Whether there is more than one part without a name.
    bool hasStructure = false;
    std::map<std::string, Node> nodes;
    /// Of each component what is stated of it, by its name in the first facts.
    ModelFacts::Table Properties(FoldedFacts const& first) const;
    /// The table with the keys of a table by path, or by path and name, folded in the same way; empty for a missing
    /// one.
    ModelFacts::Table ByPath(ModelFacts const& facts, char const* table) const;

private:
    bool IsBelowRoot(std::string const& path) const;
    bool IsAboveRoot(std::string const& path) const;
    std::string FoldedPath(std::string const& path) const;
    void FindRoot(ModelFacts const& facts, ModelFacts const& first);

    std::set<std::string> m_known;
    /// What stands before all paths, and is left out.
    std::string m_root;
    /// The first path of the first facts.
    std::string m_top;
};

}  // namespace KVR::Certification
