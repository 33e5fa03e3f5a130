#include "bench/CloudGenerator.h"

#include <random>

#include "bench/SceneFile.h"

namespace KVR::Bench
{

void WriteCloud(std::filesystem::path const& path, std::size_t points, int decimals)
{
    std::mt19937_64 random(20240301);
    auto const uniform = [&] { return (static_cast<double>(random()) / 0x1p64 - 0.5) * 4000.0; };
    SceneFile file(path);
    file.Put("<Scene><IPointCloud ID=\"cloud\" Label=\"scan\"><PointCloud PointCloudCoordinates=\"");
    for (std::size_t i = 0; i < points; ++i)
        file.Put("{0:.{3}f} {1:.{3}f} {2:.{3}f} ", uniform(), uniform(), uniform(), decimals);
    file.Put("\"/></IPointCloud></Scene>\n");
    file.Close();
}

}  // namespace KVR::Bench
