#include "host/check/Baseline.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/Command.h"
#include "host/check/CheckedScene.h"

namespace KVR
{

Baseline::Baseline(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw ArgumentError(path + ": the baseline cannot be read");
    try
    {
        nlohmann::json const json = nlohmann::json::parse(file);
        for (nlohmann::json const& scene : json.at("Scenes"))
            for (nlohmann::json const& finding : scene.at("Findings"))
                ++m_counts[finding.at("Fingerprint").get<std::string>()];
    }
    catch (nlohmann::json::exception const&)
    {
        throw ArgumentError(path + ": it is no baseline, which is what kvr check --json prints");
    }
}

void Baseline::TakeKnown(CheckedScene& scene)
{
    if (m_counts.empty())
        return;
    auto const isKnown = [&](Finding const& finding)
    {
        auto const known = m_counts.find(FingerprintOf(finding));
        if (known == m_counts.end() || known->second == 0)
            return false;
        --known->second;
        return true;
    };
    // In order, which std::erase_if does not promise.
    std::vector<Finding> left;
    for (Finding& finding : scene.result.findings)
        if (!isKnown(finding))
            left.push_back(std::move(finding));
    scene.known += scene.result.findings.size() - left.size();
    scene.result.findings = std::move(left);
}

}  // namespace KVR
