#pragma once

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace KVR
{

/// The answer of a getter; nothing when it throws. What it throws ends here whatever it is, since one broken answer
/// must not cost the reader of a dump all others. References are answered as such, so that long lists are not copied.
template <class Getter>
auto Ask(Getter&& getter)
{
    using Answer = std::invoke_result_t<Getter>;
    using Kept = std::conditional_t<std::is_reference_v<Answer>,
                                    std::reference_wrapper<std::remove_reference_t<Answer>>, Answer>;
    try
    {
        return std::optional<Kept>(std::forward<Getter>(getter)());
    }
    catch (...)
    {
        return std::optional<Kept>();
    }
}

}  // namespace KVR
