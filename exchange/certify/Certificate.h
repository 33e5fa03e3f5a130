#pragma once

#include <string>
#include <vector>

#include "exchange/CertifyModel.h"
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
    using Row = CertificateRow;

    explicit Certificate(std::vector<Stage> const& stages);

    bool IsGood() const noexcept;
    std::vector<Row> const& Rows() const noexcept { return m_rows; }

private:
    std::vector<Row> m_rows;
};

}  // namespace KVR
