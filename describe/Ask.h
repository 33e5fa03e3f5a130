#pragma once

#include <functional>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

namespace KVR
{

/// The answer of a getter; nothing when it throws, and `onThrow` is called inside the handler then: what it throws goes
/// on, and so does std::bad_alloc in any case. References are answered as such, so that long lists are not copied.
template <class Getter, class OnThrow>
auto Ask(Getter&& getter, OnThrow&& onThrow)
{
    using Answer = std::invoke_result_t<Getter>;
    using Kept = std::conditional_t<std::is_reference_v<Answer>,
                                    std::reference_wrapper<std::remove_reference_t<Answer>>, Answer>;
    try
    {
        return std::optional<Kept>(std::forward<Getter>(getter)());
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (...)
    {
        std::forward<OnThrow>(onThrow)();
        return std::optional<Kept>();
    }
}

/// The same where nobody wants to know. What else a getter throws ends here whatever it is, since one broken answer
/// must not cost the reader all others.
template <class Getter>
auto Ask(Getter&& getter)
{
    return Ask(std::forward<Getter>(getter), [] {});
}

}  // namespace KVR
