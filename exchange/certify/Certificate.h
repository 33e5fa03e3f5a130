#pragma once

#include <string>
#include <vector>

#include "exchange/certify/ModelFacts.h"

namespace KVR
{

/// What of a model is the same in its scene and in what is exported from that.
class Certificate
{
public:
    struct Stage
    {
        /// "source", "scene", "STEP", "GLB".
        std::string name;
        ModelFacts facts;
    };
    struct Row
    {
        std::string name;
        /// One for each stage; empty where the stage has no place for it.
        std::vector<std::string> values;
        /// How far the stages are apart: for numbers relative, for lengths relative to the diagonal of the box; 1 where
        /// names differ.
        double difference = 0.0;
        bool isGood = true;
    };

    explicit Certificate(std::vector<Stage> stages);

    bool IsGood() const noexcept;
    std::vector<Row> const& Rows() const noexcept { return m_rows; }

    std::string Table() const;
    std::string Json(std::string const& model, std::vector<std::string> const& remarks) const;

private:
    std::vector<Stage> m_stages;
    std::vector<Row> m_rows;
};

}  // namespace KVR
