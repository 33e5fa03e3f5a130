#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A scene of about 6 kB that uses every element that is read, with a mark "@" at every place where a node may stand.
std::string_view MarkedFullScene();
/// The same without the marks.
std::string FullScene();
/// The side files that it names, written beside it.
void WriteSideFiles(TestScene& scene);
void WriteSideFiles(TempFolder const& folder);
/// The ids of its objects, and some that it names without having them.
std::vector<std::string> FullSceneIds();

/// Runs BeginProcess; whether it took the scene. A refusal must be a FileException of code 0, or std::logic_error says
/// what was wrong with it; any other exception goes on.
bool Opens(XMLProducer& producer);
bool Opens(TestScene& scene);

/// `count` copies of a text, one behind the other.
std::string Repeated(std::string_view text, unsigned long long count);
/// The text with every occurrence of `what` replaced.
std::string Replaced(std::string_view text, std::string_view what, std::string_view by);

}  // namespace KVR::Test
