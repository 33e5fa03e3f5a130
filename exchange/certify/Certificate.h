#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "exchange/CertifyModel.h"
#include "exchange/certify/FoldedFacts.h"
#include "exchange/certify/ModelFacts.h"

namespace KVR::Certification
{

/// What of a model is the same in its scene and in what is exported from that. Each thing is compared with what the
/// first stage says that has a place for it.
class Certificate
{
public:
    struct Stage
    {
        /// "source", "scene", "STEP", "GLB".
        std::string name;
        ModelFacts facts;
    };
    using Row = CertificateRow;

    explicit Certificate(std::vector<Stage> stages);

    bool IsGood() const noexcept;
    std::vector<Row> const& Rows() const noexcept { return m_rows; }
    /// Of each stage what it has no place for by design: "not in GLB: 192 hidden".
    std::vector<std::string> const& Absences() const noexcept { return m_absences; }

private:
    using Node = FoldedFacts::Node;
    /// Compares the entries of two tables: how far they are apart, 1 for one that is missing.
    using Compare = std::function<double(ModelFacts::Entry const&, ModelFacts::Entry const&)>;
    /// The table of a stage; nothing when it has no place for it.
    using Ask = std::function<std::optional<ModelFacts::Table>(std::size_t stage)>;

    void AddTable(char const* name, Ask const& ask, Compare const& compare, double tolerance, bool mayHaveMore = false);
    void AddTableOf(char const* name, Compare const& compare, double tolerance, bool mayHaveMore = false);
    void AddTotal(char const* name, std::function<std::optional<std::vector<double>>(std::size_t stage)> const& ask,
                  bool areLengths, std::optional<double> tolerance = {});
    void AddStructure();
    void AddOrganisation();
    void AddNotes();
    void AddColors();
    /// Single faces, told by the ids that the model gives them.
    void AddFaces();
    void AddShapes();
    void AddMeshes();
    /// Measures of bodies or of meshes: in all, and by path.
    void AddBulk(bool isOfMeshes);
    /// Of a model of shapes, whether meshes leave nothing of them out.
    void AddBodiesInMeshes();
    /// By path, of nodes that are shown or that all stages have a place for.
    ModelFacts::Table ByPath(std::size_t stage, std::function<std::vector<double>(Node const&)> const& ask) const;
    /// A table by path and name; by name alone when a stage has no structure.
    ModelFacts::Table ByPathAndName(std::size_t stage, char const* name) const;
    bool Has(std::size_t stage, char const* table) const;
    bool HasPlaceForHidden(std::size_t stage) const;
    /// Finds the paths of which nothing is shown.
    void FindUnseen();
    void AddAbsences();

    std::vector<Stage> m_stages;
    std::vector<FoldedFacts> m_folded;
    double m_diagonal = 0.0;
    /// Paths that formats without a place for what is hidden may leave out.
    std::set<std::string> m_unseen;
    std::vector<Row> m_rows;
    std::vector<std::string> m_absences;
};

}  // namespace KVR::Certification
